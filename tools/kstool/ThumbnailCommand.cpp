#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "PngOutput.h"

#include "levelset/LevelsetFile.h"
#include "view/Tileset.h"
#include "view/drawLevel.h"

#include <algorithm>

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool thumbnail FILE -o OUT.png [--size N]\n"
    "\n"
    "Paints the first level of the levelset file FILE for a file manager's preview: the cells\n"
    "inside the level exactly as the editor's level view paints them, without the grey cells\n"
    "around them. Every cell becomes a square of the same whole number of pixels, the largest\n"
    "of 16 x 1, 16 x 2, 16 x 3, ... or 16 / 2, 16 / 4, 16 / 8, 16 / 16 with which the level\n"
    "fits within N x N. There is no smoothing: an enlarged pixel is repeated, and a reduced\n"
    "cell keeps the pixel at the centre of each block it merges (of the middle four, the\n"
    "top-left one), as ImageMagick's -sample does.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH  the PNG file to write (required)\n"
    "  --size N           the largest width and height, N from 32 to 1024 (default 128)\n"
    "\n"
    "A file that does not hold its whole first level is broken, and nothing is written for\n"
    "it: a file that cannot be read, whose level count is 0, that ends before the first\n"
    "level's last cell, or whose first level is wider or higher than 32 or has no cell.\n"
    "The editor would show defaults, zeros or a cut level there, which is not what the file\n"
    "holds. What lies after the first level does not change the picture and is not checked.\n"
    "\n"
    "Exit status: 0 written, 1 FILE broken or the write failed, 2 wrong usage.\n");

constexpr int Cell = Tileset::CellSize;
constexpr int DefaultSize = 128;
constexpr int MinSize = Cell * 2; // 32 columns at one pixel each
constexpr int MaxSize = 1024;     // the largest freedesktop thumbnail

// Why the file does not hold its whole first level, or an empty string.
QString whyBroken(const QByteArray &bytes, const ReadReport &report, const LevelRecord &first) {
    // A file too short to hold the count reads it as 0: its shortness is the fault.
    if (report.countZero && bytes.size() >= LevelsetFilePrologueSize)
        return QStringLiteral("its level count is 0");
    const qsizetype end = LevelsetFilePrologueSize + LevelRecord::HeaderSize +
                          qsizetype(first.width()) * first.height();
    if (bytes.size() < end)
        return QStringLiteral("it ends before its first level does");
    if (report.oversizeLevel == 0)
        return QStringLiteral("its first level is larger than 32 x 32");
    if (first.width() == 0 || first.height() == 0)
        return QStringLiteral("its first level has no cell");
    return {};
}

// The side of one cell: the largest whole multiple of the editor's 16 pixels, or whole
// fraction of them, with which `cells` cells fit in `size` pixels.
int cellSide(int cells, int size) {
    if (cells * Cell <= size)
        return size / (cells * Cell) * Cell;
    int side = Cell / 2;
    while (side > 1 && cells * side > size)
        side /= 2;
    return side;
}

QImage thumbnail(const LevelRecord &level, int size) {
    QImage view;
    drawLevel(level, view);
    const int side = cellSide(std::max(level.width(), level.height()), size);
    QImage image(level.width() * side, level.height() * side, QImage::Format_RGB32);
    // Each thumbnail pixel takes the view pixel under its centre; a centre that falls between
    // pixels takes the one above and to the left of it.
    const auto source = [side](int i) { return ((2 * i + 1) * Cell - 1) / (2 * side); };
    for (int y = 0; y < image.height(); ++y) {
        const auto *in = reinterpret_cast<const QRgb *>(view.constScanLine(source(y)));
        auto *out = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            out[x] = in[source(x)];
    }
    return image;
}

} // namespace

int runThumbnail(const QStringList &arguments) {
    const QString command = QStringLiteral("thumbnail");
    const auto [line, done] =
        parseCommand(command, arguments,
                     {{QStringLiteral("--output"), QStringLiteral("-o"), true},
                      {QStringLiteral("--size"), QString(), true}},
                     Help);
    if (done)
        return *done;
    if (line.positional.size() != 1)
        return usageError(command, QStringLiteral("give exactly one levelset file"));
    const QString output = line.value(QStringLiteral("--output"));
    if (output.isEmpty())
        return usageError(command, QStringLiteral("name the picture to write with -o OUT.png"));
    int size = DefaultSize;
    if (line.has(QStringLiteral("--size"))) {
        const std::optional<int> value =
            wholeNumber(line.value(QStringLiteral("--size")), MinSize, MaxSize);
        if (!value)
            return usageError(command, QStringLiteral("--size takes a whole number from %1 to %2")
                                           .arg(MinSize)
                                           .arg(MaxSize));
        size = *value;
    }

    const QString path = line.positional.first();
    QString reason;
    const std::optional<QByteArray> bytes = readWholeFile(path, reason);
    if (!bytes)
        return fail(InputProblem, QStringLiteral("%1: no thumbnail: %2").arg(path, reason));
    Levelset levelset;
    const ReadReport report = readLevelset(levelset, *bytes);
    const QString broken = whyBroken(*bytes, report, levelset.levels[0]);
    if (!broken.isEmpty())
        return fail(InputProblem, QStringLiteral("%1: no thumbnail: %2").arg(path, broken));
    if (Tileset::image().isNull())
        return fail(InputProblem, QStringLiteral("the tileset image is missing from this build"));

    const QString error = writePng(thumbnail(levelset.levels[0], size), output);
    return error.isEmpty() ? Success : fail(InputProblem, error);
}
