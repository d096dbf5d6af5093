#include "ReferenceSheet.h"

namespace {
constexpr int Cell = 16;
constexpr int Zoom = 4;
constexpr int Columns = 8;
constexpr int Rows = 32;
constexpr int Margin = 8;
constexpr int Caption = PixelFont::Height + 3;
constexpr int PitchX = Cell * Zoom + Margin;
constexpr int PitchY = Caption + Cell * Zoom + Margin;
} // namespace

QImage referenceSheet(const QImage &tileset, const PixelFont &font) {
    QImage sheet(Margin + Columns * PitchX, Margin + Rows * PitchY, QImage::Format_RGB32);
    sheet.fill(qRgb(72, 80, 96));
    for (int id = 0; id < Columns * Rows; ++id) {
        const int left = Margin + PitchX * (id % Columns);
        const int top = Margin + PitchY * (id / Columns);
        font.draw(QByteArray::number(id), left, top, 1,
                  [&sheet](int x, int y) { sheet.setPixel(x, y, qRgb(255, 255, 255)); });
        const int sourceLeft = Cell * (id % Columns);
        const int sourceTop = Cell * (id / Columns);
        for (int y = 0; y < Cell * Zoom; ++y)
            for (int x = 0; x < Cell * Zoom; ++x)
                sheet.setPixel(left + x, top + Caption + y,
                               tileset.pixel(sourceLeft + x / Zoom, sourceTop + y / Zoom));
    }
    return sheet;
}
