#include "view/drawLevel.h"

#include "analysis/TileCatalogue.h"
#include "levelset/LevelRecord.h"
#include "view/Tileset.h"

#include <QImage>
#include <array>
#include <cstring>

namespace {

constexpr int Cell = Tileset::CellSize;
constexpr int Cells = LevelRecord::GridSize;
constexpr int ViewSide = Cell * Cells;
constexpr std::size_t CellRowBytes = Cell * sizeof(quint32);
const QRgb Grey = qRgb(192, 192, 192);

bool fitsTileset(const QImage &tileset) {
    return tileset.format() == QImage::Format_RGB32 && tileset.width() == Cell * Tileset::Columns &&
           tileset.height() == Cell * Tileset::Rows;
}

} // namespace

void drawLevel(const LevelRecord &level, QImage &target) {
    drawLevel(level, target, Tileset::image());
}

void drawLevel(const LevelRecord &level, QImage &target, const QImage &tileset) {
    if (target.format() != QImage::Format_RGB32 || target.width() != ViewSide ||
        target.height() != ViewSide)
        target = QImage(ViewSide, ViewSide, QImage::Format_RGB32);
    if (!fitsTileset(tileset)) {
        target.fill(Grey);
        return;
    }

    // bits() and constBits() once: scanLine() would check for sharing on every one of the
    // 16384 copies.
    uchar *const targetBits = target.bits();
    const uchar *const tileBits = tileset.constBits();
    const qsizetype targetStride = target.bytesPerLine();
    const qsizetype tileStride = tileset.bytesPerLine();

    for (int y = 0; y < Cells; ++y) {
        // The first pixel row of each cell's source block in this row of cells.
        std::array<const uchar *, Cells> source;
        for (int x = 0; x < Cells; ++x) {
            const int id = level.contains(x, y) ? level.tile(x, y) : Tile::OutsideLevel;
            const QPoint origin = Tileset::cellOrigin(id);
            source[x] = tileBits + origin.y() * tileStride + origin.x() * sizeof(quint32);
        }
        for (int row = 0; row < Cell; ++row) {
            uchar *out = targetBits + (y * Cell + row) * targetStride;
            const qsizetype in = row * tileStride;
            for (int x = 0; x < Cells; ++x, out += CellRowBytes)
                std::memcpy(out, source[x] + in, CellRowBytes);
        }
    }
}
