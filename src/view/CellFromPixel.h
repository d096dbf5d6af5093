#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

// The cell under a pointer position, for one axis of the level view or the palette: the
// position is taken in whole pixels (halves to even) and divided by 16, truncating toward zero,
// so -15..-1 still fall into cell 0 and -16 is the first to give -1.
inline std::int16_t cellFromPixel(double pixel) {
    constexpr double Limit = 16.0 * 32767.0; // keeps every quotient a 16-bit number
    if (std::isnan(pixel))
        return 0;
    const double whole = std::nearbyint(std::clamp(pixel, -Limit, Limit));
    return static_cast<std::int16_t>(static_cast<int>(whole) / 16);
}
