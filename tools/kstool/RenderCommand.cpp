#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "LevelStrip.h"
#include "PngOutput.h"

#include "levelset/LevelsetFile.h"
#include "view/Tileset.h"

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

} // namespace

int runRender(const QStringList &arguments) {
    const QString command = QStringLiteral("render");
    const auto [line, done] =
        parseCommand(command, arguments,
                     {{QStringLiteral("--output"), QStringLiteral("-o"), true},
                      {QStringLiteral("--level"), QString(), true},
                      {QStringLiteral("--scale"), QString(), true},
                      {QStringLiteral("--markers"), QString(), false}},
                     Help);
    if (done)
        return *done;
    if (line.positional.size() != 1)
        return usageError(command, QStringLiteral("give exactly one levelset file"));
    const QString output = line.value(QStringLiteral("--output"));
    if (output.isEmpty())
        return usageError(command, QStringLiteral("name the picture to write with -o OUT.png"));
    const std::optional<int> scale = scaleOption(line);
    if (!scale)
        return usageError(command, ScaleError);

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

    QImage image = LevelStrip::paint(levelset, indexes, line.has(QStringLiteral("--markers")));
    if (*scale > 1)
        image = image.scaled(image.size() * *scale, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    const QString error = writePng(image, output);
    return error.isEmpty() ? Success : fail(InputProblem, error);
}
