#include "view/RandomTiles.h"

#include <cmath>

float RandomTiles::next() {
    // The top 24 bits of a 32-bit draw, scaled: every value is exact in a float and below 1.
    return static_cast<float>(generator_() >> 8) * 0x1p-24f;
}

std::uint8_t RandomTiles::draw(int mode) {
    if (mode < Wall || mode > Outside)
        return NoTile;
    return tileFor(mode, next());
}

std::uint8_t RandomTiles::tileFor(int mode, float r) {
    // Double arithmetic: in single precision 12 * r + 86 rounds up to 98 for r close to 1.
    const double x = r;
    switch (mode) {
    case Wall: {
        // 86..88 are raised to 89, so the solid wall comes up four times as often as each
        // detailed wall.
        const int t = static_cast<int>(std::floor(12.0 * x + 86.0));
        return static_cast<std::uint8_t>(t < 89 ? 89 : t);
    }
    case Inside:
        return static_cast<std::uint8_t>(std::floor(4.0 * x + 10.0));
    case Outside:
        return static_cast<std::uint8_t>(std::floor(3.0 * x + 7.0));
    default:
        return NoTile;
    }
}
