#include "ReaderCheck.h"

#include "levelset/LevelsetFile.h"
#include "levelset/LevelsetName.h"

#include <cstdio>
#include <cstdlib>

namespace {

const QString TagPath = QStringLiteral("/fuzz/zkstlfuz.kst");

QString invariantViolation(const Levelset &levelset) {
    if (levelset.levelCount < 1 || levelset.levelCount > Levelset::MaxLevels)
        return QStringLiteral("level count %1").arg(levelset.levelCount);
    if (levelset.currentLevel != 0)
        return QStringLiteral("current level %1").arg(levelset.currentLevel);
    for (int i = 0; i < Levelset::MaxLevels; ++i) {
        const LevelRecord &level = levelset.levels[i];
        if (level.width() > LevelRecord::GridSize || level.height() > LevelRecord::GridSize)
            return QStringLiteral("level %1 is %2 x %3")
                .arg(i)
                .arg(level.width())
                .arg(level.height());
    }
    if (levelset.levelsetPath != UntitledPath)
        return QStringLiteral("the reader changed the path");
    return {};
}

bool repairedNothing(const ReadReport &report) {
    return !report.shortFile && !report.countZero && !report.countOver8 &&
           report.oversizeLevel < 0 && !report.trailingBytes;
}

} // namespace

QString readerViolation(QByteArrayView bytes) {
    Levelset levelset;
    const ReadReport report = readLevelset(levelset, bytes);
    if (QString broken = invariantViolation(levelset); !broken.isEmpty())
        return broken;
    if (report.clean() != (repairedNothing(report) && report.undersizeLevels.isEmpty()))
        return QStringLiteral("clean() disagrees with the findings");
    if (report.clean() != report.summary().isEmpty())
        return QStringLiteral("summary() disagrees with clean()");

    const QByteArray written = writeLevelset(levelset, TagPath);
    // Without repairs the file is at least as long as its prologue, so it has a tag to skip.
    if (repairedNothing(report) &&
        QByteArrayView(written).sliced(LevelsetTagLength) != bytes.sliced(LevelsetTagLength))
        return QStringLiteral("a file read without repairs was not written back as it was");

    Levelset reread;
    const ReadReport second = readLevelset(reread, written);
    if (!repairedNothing(second))
        return QStringLiteral("the written file needed repairs: %1").arg(second.summary());
    if (second.undersizeLevels != report.undersizeLevels)
        return QStringLiteral("the undersize levels changed after writing");
    if (writeLevelset(reread, TagPath) != written)
        return QStringLiteral("write, read, write is not stable");
    return {};
}

void checkReader(QByteArrayView bytes) {
    const QString broken = readerViolation(bytes);
    if (broken.isEmpty())
        return;
    std::fprintf(stderr, "reader check failed: %s\n", qPrintable(broken));
    std::abort();
}
