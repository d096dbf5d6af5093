#pragma once

#include "SourceError.h"

#include <QByteArray>
#include <array>
#include <cstdint>
#include <optional>

// The 8 x 8 one-bit sprites of the placeable tiles, ids 0..177, as read from tiles.txt.
struct TileSprites {
    static constexpr int Count = 178;
    static constexpr int Size = 8;

    // One byte a row, top row first; bit 7 is the leftmost pixel, a set bit is black.
    using Sprite = std::array<std::uint8_t, Size>;
    std::array<Sprite, Count> sprites{};

    bool black(int id, int x, int y) const { return (sprites[id][y] >> (7 - x)) & 1; }
};

// Reads the sprite text: "#" lines are comments, "# <id>: <name>" opens tile <id> (ids 0..177
// in order), followed by 8 rows of 8 characters, "X" black and "." white; blank lines are
// skipped. Anything else is refused with the line it was found on.
std::optional<TileSprites> parseTileSprites(const QByteArray &text, SourceError &error);
