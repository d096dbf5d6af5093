#include "view/Tileset.h"

namespace {

QImage loadTileset() {
    QImage image(QStringLiteral(":/images/tileset.bmp"));
    if (image.width() != Tileset::CellSize * Tileset::Columns ||
        image.height() != Tileset::CellSize * Tileset::Rows) {
        // Without its artwork the editor still runs: every cell shows as an empty grey tile.
        image = QImage(Tileset::CellSize * Tileset::Columns, Tileset::CellSize * Tileset::Rows,
                       QImage::Format_RGB32);
        image.fill(qRgb(192, 192, 192));
    }
    return image.convertToFormat(QImage::Format_RGB32);
}

} // namespace

const QImage &Tileset::image() {
    static const QImage tileset = loadTileset();
    return tileset;
}
