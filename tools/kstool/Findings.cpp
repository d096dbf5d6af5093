#include "Findings.h"

#include "LevelsetDump.h"

#include "analysis/HolesAndGuards.h"
#include "analysis/TileCatalogue.h"

namespace {

QString levelSize(const LevelRecord &level) {
    return QStringLiteral("%1 x %2").arg(level.width()).arg(level.height());
}

} // namespace

QStringList readerFindings(const ReadReport &report, const QByteArray &bytes,
                           const Levelset &levelset) {
    if (report.clean())
        return {};
    QStringList findings;
    const LevelsetDump dump = LevelsetDump::fromBytes(bytes);
    if (report.shortFile)
        findings << QStringLiteral("short file (%1 bytes): it ends before its level count and "
                                   "sizes say")
                        .arg(bytes.size());
    if (report.countZero)
        findings << QStringLiteral("level count 0, read as 1");
    if (report.countOver8)
        findings
            << QStringLiteral("level count %1 is over 8; levels 1..8 read").arg(dump.levelCount);
    if (report.oversizeLevel >= 0) {
        // The dump stops at the same record; its raw size bytes begin the leftover bytes.
        const auto raw = [&](int offset) {
            return dump.trailing.size() > offset ? static_cast<std::uint8_t>(dump.trailing[offset])
                                                 : 0;
        };
        findings << QStringLiteral("level %1 is %2 x %3, over 32 x 32; reading stopped there")
                        .arg(report.oversizeLevel + 1)
                        .arg(raw(LevelRecord::Width))
                        .arg(raw(LevelRecord::Height));
    }
    // A level whose size bytes lie past the end was read as 0 x 0; the short file says it.
    const qsizetype sizesInFile = dump.levels.size() + (dump.trailing.size() >= 2 ? 1 : 0);
    for (int index : report.undersizeLevels)
        if (dump.hasPrologue && index < sizesInFile)
            findings << QStringLiteral("level %1 is %2, under 12 x 8")
                            .arg(index + 1)
                            .arg(levelSize(levelset.levels[index]));
    if (report.trailingBytes) {
        if (report.oversizeLevel < 0)
            findings << QStringLiteral("%1 trailing bytes").arg(dump.trailing.size());
        else
            findings << QStringLiteral("bytes left unread after where reading stopped");
    }
    return findings;
}

QStringList limitFindings(const Levelset &levelset) {
    QStringList findings;
    for (int index = 0; index < levelset.levelCount; ++index) {
        const LevelRecord &level = levelset.levels[index];
        int holes = 0;
        int guards = 0;
        for (int y = 0; y < level.height(); ++y)
            for (int x = 0; x < level.width(); ++x) {
                holes += isAlienHole(level.tile(x, y));
                guards += level.tile(x, y) == Tile::SecurityGuard;
            }
        if (holes > MaxAlienHoles)
            findings << QStringLiteral("level %1 has %2 alien holes, at most %3")
                            .arg(index + 1)
                            .arg(holes)
                            .arg(MaxAlienHoles);
        if (guards > MaxSecurityGuards)
            findings << QStringLiteral("level %1 has %2 security guards, at most %3")
                            .arg(index + 1)
                            .arg(guards)
                            .arg(MaxSecurityGuards);
    }
    return findings;
}
