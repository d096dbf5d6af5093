#include "view/SetFloor.h"

#include "analysis/TileCatalogue.h"
#include "levelset/LevelRecord.h"

#include <cstdint>

int setFloor(LevelRecord &level) {
    std::uint8_t from = 0;
    std::uint8_t to = 0;
    switch (level.header[LevelRecord::LevelType]) {
    case 0:
        from = Tile::HatcheryFloor;
        to = Tile::NormalFloor;
        break;
    case 1:
        from = Tile::NormalFloor;
        to = Tile::HatcheryFloor;
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
