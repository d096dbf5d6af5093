#include "analysis/HolesAndGuards.h"

#include "analysis/TileCatalogue.h"
#include "levelset/Levelset.h"

#include <algorithm>

namespace {

bool breaksLimits(const LevelRecord &level) {
    int holes = 0;
    int guards = 0;
    const int height = std::min(level.height(), int(LevelRecord::GridSize));
    const int width = std::min(level.width(), int(LevelRecord::GridSize));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint8_t tile = level.tile(x, y);
            holes += isAlienHole(tile);
            guards += tile == Tile::SecurityGuard;
        }
    return holes > MaxAlienHoles || guards > MaxSecurityGuards;
}

} // namespace

int checkHolesAndGuards(const Levelset &levelset) {
    const int levels = std::min<int>(levelset.levelCount, Levelset::MaxLevels);
    for (int i = 0; i < levels; ++i)
        if (breaksLimits(levelset.levels[i]))
            return i + 1;
    return 0;
}

QString holesAndGuardsMessage(int level) {
    return QStringLiteral("Either too many Alien Holes or Security Guards on Level ") +
           QString::number(level);
}
