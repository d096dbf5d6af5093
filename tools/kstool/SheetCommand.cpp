#include "CommandLine.h"
#include "Commands.h"
#include "PngOutput.h"
#include "TextPainting.h"

#include "analysis/TileCatalogue.h"
#include "view/Tileset.h"

#include <QFont>
#include <QPainter>

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool sheet -o OUT.png\n"
    "\n"
    "Draws the tileset reference sheet: every tile id 0..177 at four times its size with\n"
    "its number and its name in the tile catalogue, and one entry for the grey ids\n"
    "178..255, which stand for no tile.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH  the PNG file to write (required)\n"
    "\n"
    "Exit status: 0 written, 1 the write failed, 2 wrong usage.\n");

constexpr int Zoom = 4;
constexpr int TileSide = Tileset::CellSize * Zoom;
constexpr int Columns = 6;
constexpr int EntryWidth = 280;
constexpr int EntryHeight = TileSide + 12;
constexpr int Margin = 16;
constexpr int TitleHeight = 40;
const QColor Frame(160, 160, 160);

struct Entry {
    int id;         // the tile shown
    QString number; // "54", or a range
    QString name;
};

QList<Entry> entries() {
    QList<Entry> list;
    for (int id = 0; id < Tile::PlaceableCount; ++id)
        list.append({id, QString::number(id), tileName(id)});
    list.append({Tile::PlaceableCount, QStringLiteral("%1..255").arg(Tile::PlaceableCount),
                 tileName(Tile::PlaceableCount)});
    return list;
}

QImage drawSheet() {
    const QList<Entry> list = entries();
    const int rows = int((list.size() + Columns - 1) / Columns);
    QImage sheet(2 * Margin + Columns * EntryWidth, 2 * Margin + TitleHeight + rows * EntryHeight,
                 QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(20);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(Margin, Margin, sheet.width(), TitleHeight),
                     Qt::AlignLeft | Qt::AlignTop,
                     QStringLiteral("Kestrix tiles: id and name (ids 0..177 can be placed)"));

    const QFont numberFont = font;
    font.setPixelSize(14);
    font.setBold(false);
    const QFont nameFont = font;
    for (int i = 0; i < list.size(); ++i) {
        const Entry &entry = list[i];
        const QPoint origin(Margin + (i % Columns) * EntryWidth,
                            Margin + TitleHeight + (i / Columns) * EntryHeight);
        const QRect tile(origin, QSize(TileSide, TileSide));
        // A frame so that white tiles stand out from the page.
        painter.setPen(Frame);
        painter.drawRect(tile.adjusted(-1, -1, 0, 0));
        painter.drawImage(
            tile, Tileset::image(),
            QRect(Tileset::cellOrigin(entry.id), QSize(Tileset::CellSize, Tileset::CellSize)));
        const QRect text(origin + QPoint(TileSide + 10, 4),
                         QSize(EntryWidth - TileSide - 16, TileSide));
        painter.setPen(Qt::black);
        painter.setFont(numberFont);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, entry.number);
        painter.setFont(nameFont);
        painter.drawText(text.adjusted(0, 26, 0, 0),
                         Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, entry.name);
    }
    return sheet;
}

} // namespace

int runSheet(const QStringList &arguments) {
    const QString command = QStringLiteral("sheet");
    const auto [line, done] = parseCommand(
        command, arguments, {{QStringLiteral("--output"), QStringLiteral("-o"), true}}, Help);
    if (done)
        return *done;
    if (!line.positional.isEmpty())
        return usageError(command,
                          QStringLiteral("unexpected argument %1").arg(line.positional.first()));
    const QString output = line.value(QStringLiteral("--output"));
    if (output.isEmpty())
        return usageError(command, QStringLiteral("name the picture to write with -o OUT.png"));
    if (Tileset::image().isNull())
        return fail(InputProblem, QStringLiteral("the tileset image is missing from this build"));
    const auto application = startTextPainting();
    const QString error = writePng(drawSheet(), output);
    return error.isEmpty() ? Success : fail(InputProblem, error);
}
