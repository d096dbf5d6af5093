#include "ByteText.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "Findings.h"

#include "analysis/ObjectCounts.h"
#include "analysis/TileCatalogue.h"
#include "levelset/LevelsetFile.h"

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool info FILE\n"
    "\n"
    "Reads a levelset file as the editor's Open does and prints its tag, its levels with\n"
    "their size, time, objectives, level and alien type, positions, block types and\n"
    "passcodes, and for each level the editor's three counts (doors, enemies, pick-ups).\n"
    "Whatever the reader had to stop at or repair is listed under \"Findings\".\n"
    "\n"
    "Exit status: 0 shown and clean, 1 shown with findings or not readable, 2 wrong usage.\n");

QString typeName(int value, int first, const char *firstName, const char *secondName) {
    if (value == first)
        return QStringLiteral("%1 (%2)").arg(value).arg(QLatin1String(firstName));
    if (value == first + 1)
        return QStringLiteral("%1 (%2)").arg(value).arg(QLatin1String(secondName));
    return QStringLiteral("%1 (not a type the editor sets)").arg(value);
}

QString position(const LevelRecord &level, LevelRecord::HeaderByte x, LevelRecord::HeaderByte y) {
    const int column = level.header[x];
    const int row = level.header[y];
    QString text = QStringLiteral("(%1, %2)").arg(column).arg(row);
    if (!level.contains(column, row))
        text += QStringLiteral(" outside the level");
    return text;
}

QString tile(int id) {
    const QString name = tileName(id);
    return name.isEmpty() ? QString::number(id) : QStringLiteral("%1 (%2)").arg(id).arg(name);
}

QString countLine(const CountReport &report) {
    return QStringLiteral("  %1: %2\n")
        .arg(report.title, QString(report.text).replace(QLatin1Char('\r'), QStringLiteral(", ")));
}

QString levelText(const Levelset &levelset, int index) {
    const LevelRecord &level = levelset.levels[index];
    QString text = QStringLiteral("\nLevel %1: %2 x %3\n")
                       .arg(index + 1)
                       .arg(level.width())
                       .arg(level.height());
    if (index > 0)
        text += QStringLiteral("  Passcode: \"%1\"\n")
                    .arg(escapedBytes(QByteArrayView(levelset.passcodes[index - 1].data(),
                                                     Levelset::PasscodeLength)));
    text += QStringLiteral("  Time: %1\n").arg(level.header[LevelRecord::Time]);
    text += QStringLiteral("  Objectives: %1\n").arg(level.header[LevelRecord::Objectives]);
    text += QStringLiteral("  Level type: %1\n")
                .arg(typeName(level.header[LevelRecord::LevelType], 0, "Normal", "Hatchery"));
    text += QStringLiteral("  Alien type: %1\n")
                .arg(typeName(level.header[LevelRecord::AlienType], 3, "Normal", "Strong"));
    text += QStringLiteral("  Start: %1\n")
                .arg(position(level, LevelRecord::StartX, LevelRecord::StartY));
    text += QStringLiteral("  Finish: %1\n")
                .arg(position(level, LevelRecord::FinishX, LevelRecord::FinishY));
    text += QStringLiteral("  Block to put: %1, type %2\n")
                .arg(position(level, LevelRecord::PutX, LevelRecord::PutY),
                     tile(level.header[LevelRecord::PutType]));
    text += QStringLiteral("  Block to take: %1, type %2\n")
                .arg(position(level, LevelRecord::TakeX, LevelRecord::TakeY),
                     tile(level.header[LevelRecord::TakeType]));
    text += countLine(countDoors(level)) + countLine(countEnemies(level)) +
            countLine(countPickups(level));
    return text;
}

} // namespace

int runInfo(const QStringList &arguments) {
    const auto [line, done] = parseCommand(QStringLiteral("info"), arguments, {}, Help);
    if (done)
        return *done;
    if (line.positional.size() != 1)
        return usageError(QStringLiteral("info"), QStringLiteral("give exactly one file"));

    const QString path = line.positional.first();
    QString reason;
    const std::optional<QByteArray> bytes = readWholeFile(path, reason);
    if (!bytes)
        return fail(InputProblem, path + QStringLiteral(": ") + reason);
    Levelset levelset;
    const ReadReport report = readLevelset(levelset, *bytes);
    const QStringList findings = readerFindings(report, *bytes, levelset) + limitFindings(levelset);

    QString text = QStringLiteral("File: %1\n").arg(path);
    text += QStringLiteral("Tag: \"%1\"\n").arg(escapedBytes(bytes->left(7)));
    text += QStringLiteral("Levels: %1\n").arg(levelset.levelCount);
    text +=
        QStringLiteral("Reserved bytes: %1, %2\n").arg(levelset.reserved1).arg(levelset.reserved2);
    for (const QString &finding : findings)
        text += QStringLiteral("Finding: %1\n").arg(finding);
    for (int index = 0; index < levelset.levelCount; ++index)
        text += levelText(levelset, index);
    printOut(text);
    return findings.isEmpty() ? Success : InputProblem;
}
