#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "PngOutput.h"

#include "levelset/LevelsetFile.h"
#include "view/Tileset.h"
#include "view/drawLevel.h"

#include <QColor>
#include <QPainter>

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool render FILE -o OUT.png [--level N] [--scale K] [--markers]\n"
    "\n"
    "Paints levels of the levelset file FILE exactly as the editor's level view does: the\n"
    "whole 32 x 32 grid of 16 x 16 tiles, 512 x 512 pixels, with the cells outside the\n"
    "level plain grey. Without --level every level is painted, side by side from left to\n"
    "right, one 16-pixel dark gap between two levels.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH  the PNG file to write (required)\n"
    "  --level N          paint only level N (1 is the first)\n"
    "  --scale K          enlarge every pixel to K x K, K from 1 to 8 (default 1)\n"
    "  --markers          outline the start (light green), finish (green), block to put\n"
    "                     (light blue) and block to take (blue) cells, as the editor does\n"
    "\n"
    "Exit status: 0 written, 1 FILE unreadable or a write failed, 2 wrong usage (also a\n"
    "level the levelset does not have).\n");

constexpr int ViewSide = Tileset::CellSize * LevelRecord::GridSize;
constexpr int Gap = Tileset::CellSize;
const QColor GapColour(64, 64, 64);
constexpr int MaxScale = 8;

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

// A 16 x 16 outline, 2 pixels wide, inside the cell so it never reaches a neighbour.
void drawMarker(QPainter &painter, QPoint topLeft, const QColor &colour) {
    constexpr int Size = Tileset::CellSize;
    constexpr int Line = 2;
    painter.fillRect(QRect(topLeft, QSize(Size, Line)), colour);
    painter.fillRect(QRect(topLeft + QPoint(0, Size - Line), QSize(Size, Line)), colour);
    painter.fillRect(QRect(topLeft, QSize(Line, Size)), colour);
    painter.fillRect(QRect(topLeft + QPoint(Size - Line, 0), QSize(Line, Size)), colour);
}

QImage renderLevels(const Levelset &levelset, const QList<int> &indexes, bool markers) {
    const int count = int(indexes.size());
    QImage sheet(count * ViewSide + (count - 1) * Gap, ViewSide, QImage::Format_RGB32);
    sheet.fill(GapColour);
    QPainter painter(&sheet);
    QImage view;
    for (int i = 0; i < count; ++i) {
        const LevelRecord &level = levelset.levels[indexes[i]];
        drawLevel(level, view);
        const QPoint origin(i * (ViewSide + Gap), 0);
        painter.drawImage(origin, view);
        if (!markers)
            continue;
        painter.setClipRect(QRect(origin, QSize(ViewSide, ViewSide)));
        for (const PositionMarker &marker : Markers)
            drawMarker(painter,
                       origin + Tileset::CellSize *
                                    QPoint(level.header[marker.x], level.header[marker.y]),
                       marker.colour);
        painter.setClipping(false);
    }
    return sheet;
}

} // namespace

int runRender(const QStringList &arguments) {
    const QString command = QStringLiteral("render");
    const CommandLine line =
        CommandLine::parse(arguments, {{QStringLiteral("--output"), QStringLiteral("-o"), true},
                                       {QStringLiteral("--level"), QString(), true},
                                       {QStringLiteral("--scale"), QString(), true},
                                       {QStringLiteral("--markers"), QString(), false}});
    if (!line.error.isEmpty())
        return usageError(command, line.error);
    if (line.has(QStringLiteral("--help"))) {
        printOut(Help);
        return Success;
    }
    if (line.positional.size() != 1)
        return usageError(command, QStringLiteral("give exactly one levelset file"));
    const QString output = line.value(QStringLiteral("--output"));
    if (output.isEmpty())
        return usageError(command, QStringLiteral("name the picture to write with -o OUT.png"));
    int scale = 1;
    if (line.has(QStringLiteral("--scale"))) {
        const std::optional<int> value =
            wholeNumber(line.value(QStringLiteral("--scale")), 1, MaxScale);
        if (!value)
            return usageError(
                command, QStringLiteral("--scale takes a whole number from 1 to %1").arg(MaxScale));
        scale = *value;
    }

    const QString path = line.positional.first();
    QString reason;
    const std::optional<QByteArray> bytes = readWholeFile(path, reason);
    if (!bytes)
        return fail(InputProblem, path + QStringLiteral(": ") + reason);
    Levelset levelset;
    readLevelset(levelset, *bytes);

    QList<int> indexes;
    if (line.has(QStringLiteral("--level"))) {
        const std::optional<int> level =
            wholeNumber(line.value(QStringLiteral("--level")), 1, levelset.levelCount);
        if (!level)
            return usageError(command,
                              QStringLiteral("--level takes a level from 1 to %1; %2 has %1")
                                  .arg(levelset.levelCount)
                                  .arg(path));
        indexes << *level - 1;
    } else {
        for (int index = 0; index < levelset.levelCount; ++index)
            indexes << index;
    }
    if (Tileset::image().isNull())
        return fail(InputProblem, QStringLiteral("the tileset image is missing from this build"));

    QImage image = renderLevels(levelset, indexes, line.has(QStringLiteral("--markers")));
    if (scale > 1)
        image = image.scaled(image.size() * scale, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    const QString error = writePng(image, output);
    return error.isEmpty() ? Success : fail(InputProblem, error);
}
