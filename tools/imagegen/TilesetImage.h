#pragma once

#include "TileSprites.h"

#include <QImage>

// The tileset: 8 x 32 cells of 16 x 16, cell of id t at (16 (t mod 8), 16 (t div 8)). Ids
// below TileSprites::Count show their sprite with every pixel doubled, black (0, 0, 0) on white
// (255, 255, 255); the other cells are plain grey (192, 192, 192). 96 dots per inch.
QImage tilesetImage(const TileSprites &tiles);

inline constexpr QRgb NoTileGrey = 0xffc0c0c0;
