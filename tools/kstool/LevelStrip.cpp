#include "LevelStrip.h"

#include "view/drawLevel.h"

#include <QPainter>

namespace LevelStrip {

namespace {

struct PositionMarker {
    LevelRecord::HeaderByte x;
    LevelRecord::HeaderByte y;
    QColor colour;
};

// The editor's marker colours; later entries are drawn over earlier ones on a shared cell.
const PositionMarker Markers[] = {
    {LevelRecord::TakeX, LevelRecord::TakeY, QColor(0, 0, 192)},
    {LevelRecord::PutX, LevelRecord::PutY, QColor(128, 128, 255)},
    {LevelRecord::FinishX, LevelRecord::FinishY, QColor(0, 192, 0)},
    {LevelRecord::StartX, LevelRecord::StartY, QColor(128, 255, 128)},
};

} // namespace

void outlineCell(QPainter &painter, QPoint topLeft, const QColor &colour) {
    constexpr int Size = Tileset::CellSize;
    constexpr int Line = 2;
    painter.fillRect(QRect(topLeft, QSize(Size, Line)), colour);
    painter.fillRect(QRect(topLeft + QPoint(0, Size - Line), QSize(Size, Line)), colour);
    painter.fillRect(QRect(topLeft, QSize(Line, Size)), colour);
    painter.fillRect(QRect(topLeft + QPoint(Size - Line, 0), QSize(Line, Size)), colour);
}

QImage paint(const Levelset &levelset, const QList<int> &indexes, bool markers) {
    const int count = int(indexes.size());
    QImage strip(count * ViewSide + (count - 1) * Gap, ViewSide, QImage::Format_RGB32);
    strip.fill(GapColour);
    QPainter painter(&strip);
    QImage view;
    for (int place = 0; place < count; ++place) {
        const LevelRecord &level = levelset.levels[indexes[place]];
        drawLevel(level, view);
        painter.drawImage(levelOrigin(place), view);
        if (!markers)
            continue;
        painter.setClipRect(QRect(levelOrigin(place), QSize(ViewSide, ViewSide)));
        for (const PositionMarker &marker : Markers)
            outlineCell(painter, cellOrigin(place, level.header[marker.x], level.header[marker.y]),
                        marker.colour);
        painter.setClipping(false);
    }
    return strip;
}

} // namespace LevelStrip
