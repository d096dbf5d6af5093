#pragma once

#include "levelset/Levelset.h"
#include "view/Tileset.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QPoint>

class QPainter;

// kstool's layout of several levels in one picture: each level's whole 32 x 32 grid as the
// editor's level view paints it, side by side from left to right, a dark 16-pixel gap between
// two.
namespace LevelStrip {

inline constexpr int ViewSide = Tileset::CellSize * LevelRecord::GridSize;
inline constexpr int Gap = Tileset::CellSize;
inline const QColor GapColour(64, 64, 64);

// The top-left corner of the level at place (0 is the leftmost), and of its cell (x, y).
inline QPoint levelOrigin(int place) {
    return {place * (ViewSide + Gap), 0};
}
inline QPoint cellOrigin(int place, int x, int y) {
    return levelOrigin(place) + Tileset::CellSize * QPoint(x, y);
}

// The given levels of the levelset, in the given order; with markers, each level's start,
// finish, block-to-put and block-to-take cells are outlined in the editor's colours.
QImage paint(const Levelset &levelset, const QList<int> &indexes, bool markers);

// A cell's outline, 2 pixels wide, inside the cell so that it never reaches a neighbour: the
// editor's marker shape.
void outlineCell(QPainter &painter, QPoint topLeft, const QColor &colour);

} // namespace LevelStrip
