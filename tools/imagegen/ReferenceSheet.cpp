#include "ReferenceSheet.h"

namespace {
constexpr int Cell = 16;
constexpr int Zoom = 4;
constexpr int Columns = 8;
constexpr int Rows = 32;
constexpr int Margin = 12;
// The id sits on a dark strip joined to the top of its cell, so it cannot be read as the
// caption of the cell above.
constexpr int Caption = PixelFont::Height + 4;
constexpr int PitchX = Cell * Zoom + Margin;
constexpr int PitchY = Caption + Cell * Zoom + Margin;
constexpr QRgb Background = 0xff485060;
constexpr QRgb Strip = 0xff202430;
constexpr QRgb Ink = 0xffffffff;
} // namespace

QImage referenceSheet(const QImage &tileset, const PixelFont &font) {
    QImage sheet(Margin + Columns * PitchX, Margin + Rows * PitchY, QImage::Format_RGB32);
    sheet.fill(Background);
    for (int id = 0; id < Columns * Rows; ++id) {
        const int left = Margin + PitchX * (id % Columns);
        const int top = Margin + PitchY * (id / Columns);
        for (int y = 0; y < Caption; ++y)
            for (int x = 0; x < Cell * Zoom; ++x)
                sheet.setPixel(left + x, top + y, Strip);
        font.draw(QByteArray::number(id), left + 2, top + 2, 1,
                  [&sheet](int x, int y) { sheet.setPixel(x, y, Ink); });
        const int sourceLeft = Cell * (id % Columns);
        const int sourceTop = Cell * (id / Columns);
        for (int y = 0; y < Cell * Zoom; ++y)
            for (int x = 0; x < Cell * Zoom; ++x)
                sheet.setPixel(left + x, top + Caption + y,
                               tileset.pixel(sourceLeft + x / Zoom, sourceTop + y / Zoom));
    }
    return sheet;
}
