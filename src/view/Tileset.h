#pragma once

#include <QImage>

// The tileset image, 8 x 32 cells of 16 x 16, loaded once and held in the pixel format the
// views draw in, so painting never converts.
class Tileset {
public:
    static constexpr int CellSize = 16;
    static constexpr int Columns = 8;
    static constexpr int Rows = 32;

    static const QImage &image();

    // Top-left pixel of the cell of tile id.
    static QPoint cellOrigin(int id) {
        return {CellSize * (id % Columns), CellSize * (id / Columns)};
    }
};
