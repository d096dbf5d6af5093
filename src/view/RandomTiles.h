#pragma once

#include "analysis/TileCatalogue.h"

#include <cstdint>
#include <random>

// The random tiles of the right-button modes. The generator starts from the same fixed state
// in every window, so the same strokes always write the same tiles.
class RandomTiles {
public:
    enum Mode { Wall = 1, Inside = 2, Outside = 3 };
    // What a mode without a family gives, the grey id that stands for no tile; no editing
    // command writes it.
    static constexpr std::uint8_t NoTile = Tile::OutsideLevel;

    // A uniform number in [0, 1) with 24 bits of resolution.
    float next();
    // A tile of the family of right-button mode 1 (wall), 2 (inside) or 3 (outside). Any other
    // mode draws no number and gives NoTile.
    std::uint8_t draw(int mode);

    // The tile that mode gives for the number r in [0, 1).
    static std::uint8_t tileFor(int mode, float r);

private:
    std::mt19937 generator_{20260101u};
};
