#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "JsonFormat.h"
#include "LevelsetDump.h"
#include "TmxFormat.h"

#include "levelset/LevelsetName.h"

#include <QFileInfo>

namespace {

const QString ExportHelp = QStringLiteral(
    "Usage: kstool export FILE -o OUT.json\n"
    "       kstool export FILE -o OUT.tmx\n"
    "       kstool export FILE --stdout\n"
    "\n"
    "Writes the levelset file FILE in another form; the output's extension picks it.\n"
    "\n"
    "  .json  one readable, diffable JSON file holding every byte of FILE: tag, level\n"
    "         count, reserved bytes, passcodes, each level's named header values and its\n"
    "         rows of tile ids, and any bytes past the last level. Import gives back FILE\n"
    "         byte for byte.\n"
    "  .tmx   one Tiled map per level, OUT-1.tmx, OUT-2.tmx, ..., with the tileset image\n"
    "         OUT-tileset.png beside them. The header values and passcode are map\n"
    "         properties; map 1 also carries the levelset-wide bytes. Needs at least one\n"
    "         level and only tile ids 0..177. Maps of an earlier export under the same\n"
    "         name past the new last level are removed.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH   the file to write\n"
    "  --stdout            print the JSON form to standard output instead, as git's\n"
    "                      textconv wants it: git config diff.kst.textconv \"kstool export "
    "--stdout\"\n"
    "\n"
    "Exit status: 0 written, 1 FILE unreadable or not expressible, or a write failed,\n"
    "2 wrong usage.\n");

const QString ImportHelp = QStringLiteral(
    "Usage: kstool import IN.json -o zkstlNNN.kst\n"
    "       kstool import IN.tmx -o zkstlNNN.kst\n"
    "\n"
    "Writes a levelset file from an export; the input's extension picks the format.\n"
    "The output's name must have the editor's form zkstl???.kst.\n"
    "\n"
    "  .json  as written by export. Without a \"tag\" the tag is made from the output's\n"
    "         name, as the editor's save makes it; without \"levelCount\" the count is the\n"
    "         number of levels.\n"
    "  .tmx   the maps of an export: IN-1.tmx names the series IN-1.tmx, IN-2.tmx, ...\n"
    "         (at most 8) as far as it goes, and so does IN.tmx when no such file exists;\n"
    "         any other map is read alone as a levelset of one level. The map's size is the\n"
    "         level's size; every cell must hold a tile id 0..177 within the 32 x 32 grid.\n"
    "         Header values the map does not give are those of a new level.\n"
    "\n"
    "The input is checked completely before anything is written; a refused input names\n"
    "the level and the field or cell at fault and leaves the output untouched.\n"
    "\n"
    "Options:\n"
    "  -o, --output PATH   the levelset file to write (required)\n"
    "\n"
    "Exit status: 0 written, 1 input refused or a write failed, 2 wrong usage.\n");

const QList<OptionSpec> Options{{QStringLiteral("--output"), QStringLiteral("-o"), true}};
const OptionSpec StdoutOption{QStringLiteral("--stdout"), QString(), false};

enum class Format { Json, Tmx, Unknown };

Format formatOf(const QString &path) {
    if (path.endsWith(QLatin1String(".json"), Qt::CaseInsensitive))
        return Format::Json;
    if (path.endsWith(QLatin1String(".tmx"), Qt::CaseInsensitive))
        return Format::Tmx;
    return Format::Unknown;
}

} // namespace

int runExport(const QStringList &arguments) {
    const QString command = QStringLiteral("export");
    const auto [line, done] =
        parseCommand(command, arguments, Options + QList{StdoutOption}, ExportHelp);
    if (done)
        return *done;
    if (line.positional.size() != 1)
        return usageError(command, QStringLiteral("give exactly one levelset file"));
    const QString output = line.value(QStringLiteral("--output"));
    const bool toStdout = line.has(StdoutOption.name);
    if (output.isEmpty() == !toStdout)
        return usageError(command, QStringLiteral("name the output with -o OUT.json or -o "
                                                  "OUT.tmx, or give --stdout"));
    const Format format = toStdout ? Format::Json : formatOf(output);
    if (format == Format::Unknown)
        return usageError(command,
                          QStringLiteral("%1: the output must end in .json or .tmx").arg(output));

    const QString input = line.positional.first();
    QString reason;
    const std::optional<QByteArray> bytes = readWholeFile(input, reason);
    if (!bytes)
        return fail(InputProblem, input + QStringLiteral(": ") + reason);
    const LevelsetDump dump = LevelsetDump::fromBytes(*bytes);

    if (toStdout) {
        printOut(QString::fromUtf8(levelsetToJson(dump)));
        return Success;
    }
    if (format == Format::Json) {
        const QString error = writeWholeFile(output, levelsetToJson(dump));
        return error.isEmpty() ? Success : fail(InputProblem, error);
    }
    const QString problem = tmxExportProblem(dump);
    if (!problem.isEmpty())
        return fail(InputProblem, input + QStringLiteral(": ") + problem);
    const QString error = exportTmx(dump, output);
    return error.isEmpty() ? Success : fail(InputProblem, error);
}

int runImport(const QStringList &arguments) {
    const QString command = QStringLiteral("import");
    const auto [line, done] = parseCommand(command, arguments, Options, ImportHelp);
    if (done)
        return *done;
    if (line.positional.size() != 1)
        return usageError(command, QStringLiteral("give exactly one input, IN.json or IN.tmx"));
    const QString output = line.value(QStringLiteral("--output"));
    if (output.isEmpty())
        return usageError(command,
                          QStringLiteral("name the levelset to write with -o zkstlNNN.kst"));
    // The rule looks at the name after the last separator, so a bare name needs its folder.
    if (!isValidLevelsetFileName(QFileInfo(output).absoluteFilePath()))
        return usageError(command,
                          QStringLiteral("%1: a levelset file is named zkstl???.kst").arg(output));
    const QString input = line.positional.first();
    const Format format = formatOf(input);
    if (format == Format::Unknown)
        return usageError(command,
                          QStringLiteral("%1: the input must end in .json or .tmx").arg(input));

    const QByteArray defaultTag = levelsetTag(output).toLatin1();
    ImportResult result;
    if (format == Format::Json) {
        QString reason;
        const std::optional<QByteArray> json = readWholeFile(input, reason);
        if (!json)
            return fail(InputProblem, input + QStringLiteral(": ") + reason);
        result = levelsetFromJson(*json, defaultTag);
        if (!result.dump)
            return fail(InputProblem, input + QStringLiteral(": ") + result.error);
    } else {
        result = importTmx(input, defaultTag);
        if (!result.dump)
            return fail(InputProblem, result.error);
    }
    const QString error = writeWholeFile(output, result.dump->toBytes());
    return error.isEmpty() ? Success : fail(InputProblem, error);
}
