#include "CommandLine.h"
#include "Commands.h"
#include "Files.h"
#include "Findings.h"

#include "levelset/LevelsetFile.h"

namespace {

const QString Help = QStringLiteral(
    "Usage: kstool check FILE...\n"
    "\n"
    "Reads each levelset file as the editor's Open does and prints one line per file:\n"
    "\"FILE: ok\", or FILE followed by everything the reader had to stop at or repair\n"
    "(short file, level count 0 or over 8, a level over 32 x 32 or under 12 x 8, trailing\n"
    "bytes) and every level over 10 alien holes or 5 security guards, which the editor\n"
    "refuses to save.\n"
    "\n"
    "Exit status: 0 every file is clean, 1 a file has a finding or cannot be read,\n"
    "2 wrong usage.\n");

} // namespace

int runCheck(const QStringList &arguments) {
    const auto [line, done] = parseCommand(QStringLiteral("check"), arguments, {}, Help);
    if (done)
        return *done;
    if (line.positional.isEmpty())
        return usageError(QStringLiteral("check"), QStringLiteral("no file to check"));

    int status = Success;
    QString report;
    for (const QString &path : line.positional) {
        QString reason;
        const std::optional<QByteArray> bytes = readWholeFile(path, reason);
        QStringList findings;
        if (!bytes) {
            findings << reason;
        } else {
            Levelset levelset;
            const ReadReport read = readLevelset(levelset, *bytes);
            findings << readerFindings(read, *bytes, levelset) << limitFindings(levelset);
        }
        if (findings.isEmpty()) {
            report += path + QStringLiteral(": ok\n");
        } else {
            report += path + QStringLiteral(": ") + findings.join(QStringLiteral("; ")) +
                      QLatin1Char('\n');
            status = InputProblem;
        }
    }
    printOut(report);
    return status;
}
