#pragma once

#include <cstdint>
#include <random>

// The random tiles of the right-button modes. The generator starts from the same fixed state
// in every window, so the same strokes always write the same tiles.
class RandomTiles {
public:
    // A uniform number in [0, 1) with 24 bits of resolution.
    float next();
    // A tile of the family of right-button mode 1 (wall), 2 (inside) or 3 (outside).
    std::uint8_t draw(int mode);

private:
    std::mt19937 generator_{20260101u};
};
