#pragma once

#include "PixelFont.h"
#include "SourceError.h"
#include "TileSprites.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <optional>

// The level scene behind the splash title: rows of tile ids, drawn at the tileset's double size.
struct SplashScene {
    static constexpr int Columns = 13; // 13 x 16 = 208 covers the 200 pixel width
    static constexpr int Rows = 9;     // 9 x 16 = 144 covers the 134 pixel height
    QList<int> ids;                    // row by row
    QPoint cursor{-1, -1};             // the cell framed like the editor's cursor, if any

    int id(int column, int row) const { return ids[row * Columns + column]; }
};

// Reads Rows lines of Columns tile ids (0..177) separated by blanks; "#" lines are comments.
// One id may carry a "*" to frame its cell with the cursor.
std::optional<SplashScene> parseSplashScene(const QByteArray &text, SourceError &error);

// The 200 x 134 splash picture in 8-bit indexed colour: the scene tinted night blue, the title
// drawn over it with the pixel font.
QImage splashImage(const TileSprites &tiles, const PixelFont &font, const SplashScene &scene);
