#include "CommandLine.h"
#include "Commands.h"
#include "DrawingModule.h"

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool diff OLD NEW [-o CHANGES.png] [--scale K]\n"
    "\n"
    "Compares two levelset files as the editor reads them and prints what differs, one\n"
    "line each, in file order: the tag, level count, reserved bytes and passcodes, then per\n"
    "level its header values and its changed cells, for example\n"
    "\n"
    "  level 2: passcode \"      \" -> \"ABC123\"\n"
    "  level 1: size 12 x 8 -> 14 x 8\n"
    "  level 2: time 99 -> 120\n"
    "  level 1: block to put type solid wall 89 -> white key 55\n"
    "  level 1: start (0, 0) -> (4, 3)\n"
    "  level 1: cell (3, 4) floor 0 -> solid wall 89\n"
    "  level 1: 15 more cells changed, within (2, 3) to (20, 7)\n"
    "  level 3: added, 14 x 8\n"
    "  level 4: removed\n"
    "\n"
    "Only what a file holds is compared: cells outside a level's size and levels past the\n"
    "count never show. A level's cells are those inside NEW's size; a cell OLD's level did\n"
    "not hold counts as floor 0, as the editor shows it after widening. After 20 changed\n"
    "cells in a level the rest are summed up in one line. A file the reader has to repair\n"
    "(see kstool check) is compared as read, and the repair is named on standard error.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH  also write a PNG: every level either file has, side by side as\n"
    "                     kstool render lays them out (NEW's level, or OLD's where NEW\n"
    "                     removed it), each changed cell outlined in magenta, and under\n"
    "                     each level its changes\n"
    "  --scale K          enlarge the picture K times, K from 1 to 8 (default 1)\n"
    "\n"
    "Exit status: 0 no difference, 1 different, 2 trouble (a file that cannot be read, a\n"
    "picture that cannot be written, wrong usage).\n");

} // namespace

int runDiff(const QStringList &arguments) {
    const QString command = QStringLiteral("diff");
    const auto [line, done] =
        parseCommand(command, arguments,
                     {{QStringLiteral("--output"), QStringLiteral("-o"), true},
                      {QStringLiteral("--scale"), QString(), true}},
                     Help);
    if (done)
        return *done;
    if (line.positional.size() != 2)
        return usageError(command, QStringLiteral("give two levelset files, OLD and NEW"));
    const std::optional<int> scale = scaleOption(line);
    if (!scale)
        return usageError(command, ScaleError);

    std::optional<ReadFile> files[2];
    for (int i = 0; i < 2; ++i) {
        const QString &path = line.positional[i];
        QString error;
        files[i] = readWholeLevelset(path, error);
        if (!files[i])
            return fail(Trouble, error);
        if (!files[i]->repairs.isEmpty())
            printError(QStringLiteral("kstool: %1: compared as the editor reads it: %2\n")
                           .arg(path, files[i]->repairs.join(QStringLiteral("; "))));
    }
    const WholeLevelset &older = files[0]->levelset;
    const WholeLevelset &newer = files[1]->levelset;
    const LevelsetChanges changes = compareLevelsets(older, newer);

    const QString output = line.value(QStringLiteral("--output"));
    if (!output.isEmpty()) {
        const QString error =
            writeChangesPicture(shownLevels(older, newer, changes), changes.levels, *scale, output);
        if (!error.isEmpty())
            return fail(Trouble, error);
    }
    if (changes.lines.isEmpty())
        return Success;
    printOut(changes.lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    return Different;
}
