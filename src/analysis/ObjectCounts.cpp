#include "analysis/ObjectCounts.h"

#include "analysis/TileCatalogue.h"
#include "levelset/LevelRecord.h"

#include <QStringList>
#include <algorithm>
#include <initializer_list>
#include <vector>

namespace {

// One line of a report: its label and what each listed tile adds to its total.
struct Worth {
    std::uint8_t tile;
    int amount;
};
struct CountLine {
    const char *label;
    std::initializer_list<Worth> worths;
};

CountReport count(const LevelRecord &level, const char *title,
                  std::initializer_list<CountLine> lines) {
    // A tile belongs to at most one line, so one lookup per cell is enough.
    std::array<int, 256> lineOf;
    std::array<int, 256> amountOf{};
    lineOf.fill(-1);
    int index = 0;
    for (const CountLine &line : lines) {
        for (const Worth &worth : line.worths) {
            lineOf[worth.tile] = index;
            amountOf[worth.tile] = worth.amount;
        }
        ++index;
    }

    std::vector<int> totals(lines.size(), 0);
    const int height = std::min(level.height(), int(LevelRecord::GridSize));
    const int width = std::min(level.width(), int(LevelRecord::GridSize));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint8_t tile = level.tile(x, y);
            if (lineOf[tile] >= 0)
                totals[lineOf[tile]] += amountOf[tile];
        }

    QStringList text;
    index = 0;
    for (const CountLine &line : lines)
        text << QString::fromLatin1(line.label) + QString::number(totals[index++]);
    return {QString::fromLatin1(title), text.join(QLatin1Char('\r'))};
}

Worth one(std::uint8_t tile) {
    return {tile, 1};
}

} // namespace

CountReport countDoors(const LevelRecord &level) {
    using namespace Tile;
    return count(level, "Doors",
                 {
                     {"Normal Doors: ", {one(NormalDoor), one(NormalDoor + 1)}},
                     {"Security Doors: ", {one(SecurityDoor), one(SecurityDoor + 1)}},
                     {"White Doors: ", {one(WhiteDoor), one(WhiteDoor + 1)}},
                     {"Checkered Doors: ", {one(CheckeredDoor), one(CheckeredDoor + 1)}},
                     {"Black Doors: ", {one(BlackDoor), one(BlackDoor + 1)}},
                 });
}

CountReport countEnemies(const LevelRecord &level) {
    using namespace Tile;
    return count(level, "Enemies",
                 {
                     {"Holes: ", {one(AlienHole), one(AlienHoleOther)}},
                     {"Worms: ", {one(Worm)}},
                     {"Face Huggers: ", {one(FaceHugger)}},
                     {"Normal Aliens: ", {one(NormalAlien)}},
                     {"Strong Aliens: ", {one(StrongAlien)}},
                     {"Security Guards: ", {one(SecurityGuard)}},
                 });
}

CountReport countPickups(const LevelRecord &level) {
    using namespace Tile;
    return count(level, "Pick-ups",
                 {
                     {"Credits: ", {{SmallCredits, 10}, {LargeCredits, 100}}},
                     {"Ammo: ", {{Ammo, 20}}},
                     {"Key Passes: ", {one(KeyPass)}},
                     {"White Keys: ", {one(WhiteKey)}},
                     {"Checkered Keys: ", {one(CheckeredKey)}},
                     {"Black Keys: ", {one(BlackKey)}},
                     {"First Aids: ", {one(FirstAid)}},
                     {"Invincibilities: ", {one(Invincibility)}},
                     {"Extra Lives: ", {one(ExtraLife)}},
                 });
}
