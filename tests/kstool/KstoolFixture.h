#pragma once

#include "levelset/LevelsetFile.h"
#include "support/FileSizeLimit.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <random>

struct KstoolRun {
    int exitCode = -1; // -1 when the program crashed or hung
    QString out;
    QString err;
};

// An empty folder of its own where the real kstool program, built beside the tests, runs.
class KstoolFolder {
public:
    QString path(const QString &name) const { return dir.filePath(name); }

    void write(const QString &name, const QByteArray &bytes) const {
        QFile file(path(name));
        QVERIFY2(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
                 qPrintable(name));
    }

    QByteArray read(const QString &name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool exists(const QString &name) const { return QFile::exists(path(name)); }

    // fileSizeLimit, when not 0, is the size kstool's writes fail at (see FileSizeLimit.h).
    KstoolRun run(const QStringList &arguments, rlim_t fileSizeLimit = 0) const {
        QProcess process;
        process.setWorkingDirectory(dir.path());
        if (fileSizeLimit > 0)
            process.setChildProcessModifier([fileSizeLimit] { limitFileSize(fileSizeLimit); });
        process.start(QStringLiteral(KSTOOL_PATH), arguments);
        KstoolRun run;
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
            return run;
        run.exitCode = process.exitCode();
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

private:
    QTemporaryDir dir;
};

// Levelset files: real ones from the editor's writer, and broken ones made by changing a real
// one's bytes where the format puts each field.
namespace TestLevelsets {

inline constexpr int CountOffset = 7;
inline constexpr int FirstLevel = 52;

inline QByteArray fileOf(const Levelset &levelset, const QString &name = "zkstlabc.kst") {
    return writeLevelset(levelset, QStringLiteral("/levels/") + name);
}

inline QByteArray fresh() {
    return fileOf(Levelset());
}

// Three levels of different sizes, passcodes with lower case and a byte no editor types,
// reserved bytes, header values no editor command writes, and a few objects.
inline Levelset varied() {
    Levelset levelset;
    levelset.levelCount = 3;
    levelset.reserved1 = 17;
    levelset.reserved2 = 250;
    levelset.storePasscode(0, QStringLiteral("ABC123"));
    levelset.storePasscode(1, QStringLiteral("low\\q"));
    levelset.passcodes[5][2] = '\x01';
    LevelRecord &first = levelset.levels[0];
    first.tile(3, 1) = 89;
    first.tile(11, 7) = 168;
    LevelRecord &second = levelset.levels[1];
    second.header[LevelRecord::Width] = 32;
    second.header[LevelRecord::Height] = 20;
    second.header[LevelRecord::LevelType] = 2;
    second.header[LevelRecord::AlienType] = 0;
    second.header[LevelRecord::StartX] = 40;
    second.header[LevelRecord::Time] = 255;
    for (int x = 0; x < 32; ++x)
        second.tile(x, 19) = std::uint8_t(x + 140);
    LevelRecord &third = levelset.levels[2];
    third.header[LevelRecord::Width] = 13;
    third.header[LevelRecord::Height] = 9;
    third.tile(12, 8) = 177;
    return levelset;
}

inline QByteArray withByte(QByteArray bytes, int offset, int value) {
    bytes[offset] = char(value);
    return bytes;
}

// A file whose count byte says count and which holds that many default levels.
inline QByteArray withLevels(int count) {
    Levelset levelset;
    levelset.levelCount = std::uint8_t(std::min(count, 8));
    const QByteArray bytes = fileOf(levelset);
    const QByteArray level = bytes.mid(FirstLevel, LevelRecord::HeaderSize + 12 * 8);
    return withByte(bytes + level.repeated(std::max(count - 8, 0)), CountOffset, count);
}

// holes alien holes (both pictures) and guards guards on the given level of three.
inline QByteArray withObjects(int levelIndex, int holes, int guards) {
    Levelset levelset;
    levelset.levelCount = 3;
    LevelRecord &level = levelset.levels[levelIndex];
    for (int cell = 0; cell < holes + guards; ++cell)
        level.tile(cell % 12, cell / 12) = cell >= holes ? 75 : cell % 2 ? 70 : 69;
    return fileOf(levelset);
}

// 1 MiB of noise whose count byte says 200 and whose first level is 20 x 40.
inline QByteArray noise() {
    std::mt19937 generator(7);
    QByteArray bytes(1024 * 1024, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return char(generator()); });
    bytes[CountOffset] = char(200);
    bytes[FirstLevel + LevelRecord::Height] = 40;
    bytes[FirstLevel + LevelRecord::Width] = 20;
    return bytes;
}

inline QByteArray eightFullLevels() {
    Levelset levelset;
    levelset.levelCount = 8;
    for (LevelRecord &level : levelset.levels) {
        level.header[LevelRecord::Width] = level.header[LevelRecord::Height] = 32;
        for (int i = 0; i < 32 * 32; ++i)
            level.tiles[i] = std::uint8_t(i % 178);
    }
    return fileOf(levelset);
}

struct NamedFile {
    const char *name;
    QByteArray bytes;
    bool mappable; // holds a complete level, which a Tiled map can carry
};

// Every kind of file the tools must take without losing a byte.
inline QList<NamedFile> corpus() {
    return {
        {"fresh", fresh(), true},
        {"varied", fileOf(varied()), true},
        {"eight full levels", eightFullLevels(), true},
        {"empty", QByteArray(), false},
        {"truncated header", fresh().left(30), false},
        {"truncated grid", fresh().chopped(10), false},
        {"count 0", withByte(fresh(), CountOffset, 0), false},
        {"count 9", withLevels(9), true},
        {"count 255", withByte(fresh(), CountOffset, 255), true},
        {"width 33", withByte(fresh(), FirstLevel + LevelRecord::Width, 33), false},
        {"height 0", withByte(fresh(), FirstLevel + LevelRecord::Height, 0), true},
        {"noise", noise(), false},
        {"trailing bytes", fresh() + QByteArray("\x00\xffxyz", 5), true},
        {"11 holes on level 3", withObjects(2, 11, 0), true},
    };
}

} // namespace TestLevelsets
