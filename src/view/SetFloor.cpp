#include "view/SetFloor.h"

#include "levelset/LevelRecord.h"

#include <cstdint>

namespace {
constexpr std::uint8_t NormalFloor = 0;
constexpr std::uint8_t HatcheryFloor = 1;
} // namespace

int setFloor(LevelRecord &level) {
    std::uint8_t from = 0;
    std::uint8_t to = 0;
    switch (level.header[LevelRecord::LevelType]) {
    case 0:
        from = HatcheryFloor;
        to = NormalFloor;
        break;
    case 1:
        from = NormalFloor;
        to = HatcheryFloor;
        break;
    default:
        return 0;
    }
    int changed = 0;
    for (std::uint8_t &cell : level.tiles) {
        if (cell == from) {
            cell = to;
            ++changed;
        }
    }
    return changed;
}
