#include "TilesetImage.h"

namespace {
constexpr int Cell = 16;
constexpr int Columns = 8;
constexpr int Rows = 32;
constexpr int DotsPerMetreAt96Dpi = 3780;
} // namespace

QImage tilesetImage(const TileSprites &tiles) {
    QImage image(Cell * Columns, Cell * Rows, QImage::Format_RGB32);
    image.fill(NoTileGrey);
    image.setDotsPerMeterX(DotsPerMetreAt96Dpi);
    image.setDotsPerMeterY(DotsPerMetreAt96Dpi);
    for (int id = 0; id < TileSprites::Count; ++id) {
        const int left = Cell * (id % Columns);
        const int top = Cell * (id / Columns);
        for (int y = 0; y < Cell; ++y)
            for (int x = 0; x < Cell; ++x)
                image.setPixel(left + x, top + y,
                               tiles.black(id, x / 2, y / 2) ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
    return image;
}
