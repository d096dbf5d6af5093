#include "levels/LevelList.h"

#include "levelset/Levelset.h"

bool addLevel(Levelset &levelset) {
    if (levelset.levelCount >= Levelset::MaxLevels)
        return false;
    ++levelset.levelCount;
    return true;
}

bool removeLevel(Levelset &levelset) {
    if (levelset.currentLevel + 1 >= levelset.levelCount)
        return false;
    --levelset.levelCount;
    return true;
}

bool previousLevel(Levelset &levelset) {
    if (levelset.currentLevel <= 0)
        return false;
    --levelset.currentLevel;
    return true;
}

bool nextLevel(Levelset &levelset) {
    if (levelset.currentLevel + 1 >= levelset.levelCount)
        return false;
    ++levelset.currentLevel;
    return true;
}

QString levelLabel(const Levelset &levelset) {
    return QStringLiteral("Level: %1 / %2").arg(levelset.currentLevel + 1).arg(levelset.levelCount);
}
