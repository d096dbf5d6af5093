#pragma once

#include <array>
#include <cstdint>

// One level: 16 header bytes in file order and a 32 x 32 grid of tile ids.
struct LevelRecord {
    enum HeaderByte {
        Height,
        Width,
        Objectives,
        Time,
        PutX,
        PutY,
        TakeX,
        TakeY,
        PutType,
        TakeType,
        LevelType,
        AlienType,
        FinishX,
        FinishY,
        StartX,
        StartY,
        HeaderSize
    };

    static constexpr int GridSize = 32;
    static constexpr int MinWidth = 12;
    static constexpr int MinHeight = 8;

    std::array<std::uint8_t, HeaderSize> header{};
    std::array<std::uint8_t, GridSize * GridSize> tiles{}; // column-major: tiles[y + 32 * x]

    std::uint8_t &tile(int x, int y) { return tiles[y + GridSize * x]; }
    std::uint8_t tile(int x, int y) const { return tiles[y + GridSize * x]; }
    int width() const { return header[Width]; }
    int height() const { return header[Height]; }
    // Signed comparisons: the cursor cell may lie left of or above the view.
    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width() && y < height(); }

    // The default level: 12 x 8, start top-left, finish bottom-right, every cell floor.
    void reset();

    bool operator==(const LevelRecord &) const = default;
};
