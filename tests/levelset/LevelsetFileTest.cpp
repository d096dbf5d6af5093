#include "levelset/LevelsetFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <cerrno>
#include <random>

namespace {

const QString AbcPath = QStringLiteral("/levels/zkstlabc.kst");
const QByteArray DefaultHeader("\x08\x0C\x00\x63\x01\x00\x02\x00\x59\x00\x00\x03\x0B\x07\x00\x00",
                               16);

// Files built byte by byte, the way another program might have written them.
QByteArray prologue(int levelCount, const QByteArray &tag = "KST0ABC") {
    return tag + char(levelCount) + QByteArray(2, '\0') + QByteArray(42, ' ');
}

QByteArray record(int height, int width, std::uint8_t fill = 0) {
    return char(height) + (char(width) + DefaultHeader.mid(2)) +
           QByteArray(height * width, char(fill));
}

Levelset readBytes(const QByteArray &bytes, ReadReport *report = nullptr) {
    Levelset levelset;
    const ReadReport result = readLevelset(levelset, bytes);
    if (report)
        *report = result;
    return levelset;
}

// What the rest of the editor relies on after any read, and a result that writes and reads
// back as it stands.
void verifyInvariantsAndStableWrite(const Levelset &levelset) {
    QVERIFY(levelset.levelCount >= 1 && levelset.levelCount <= Levelset::MaxLevels);
    QCOMPARE(levelset.currentLevel, 0);
    for (const LevelRecord &level : levelset.levels)
        QVERIFY(level.width() <= LevelRecord::GridSize && level.height() <= LevelRecord::GridSize);
    const QByteArray written = writeLevelset(levelset, AbcPath);
    QCOMPARE(writeLevelset(readBytes(written), AbcPath), written);
}

// The report's findings in short words, so a table row can name them.
QString findings(const ReadReport &report) {
    QStringList words;
    const std::pair<bool, const char *> flags[] = {{report.shortFile, "short"},
                                                   {report.countZero, "count 0"},
                                                   {report.countOver8, "count over 8"},
                                                   {report.trailingBytes, "trailing"}};
    for (const auto &[set, word] : flags)
        if (set)
            words << word;
    if (report.oversizeLevel >= 0)
        words << QStringLiteral("oversize %1").arg(report.oversizeLevel);
    for (int level : report.undersizeLevels)
        words << QStringLiteral("undersize %1").arg(level);
    return words.join(", ");
}

Levelset fullLevelset() {
    Levelset levelset;
    levelset.levelCount = Levelset::MaxLevels;
    for (LevelRecord &level : levelset.levels) {
        level.header[LevelRecord::Width] = level.header[LevelRecord::Height] = 32;
        for (int i = 0; i < int(level.tiles.size()); ++i)
            level.tiles[i] = std::uint8_t(i % 178);
    }
    return levelset;
}

// Any byte anywhere, except the count and sizes, which stay within the model's bounds (sizes
// may fall under the editor's minimum, as a file can bring).
Levelset randomLevelset(std::mt19937 &generator) {
    auto byte = [&] { return std::uint8_t(generator()); };
    Levelset levelset;
    levelset.levelCount = std::uint8_t(1 + generator() % 8);
    levelset.reserved1 = byte();
    levelset.reserved2 = byte();
    for (Levelset::Passcode &code : levelset.passcodes)
        std::generate(code.begin(), code.end(), [&] { return char(byte()); });
    for (LevelRecord &level : levelset.levels) {
        std::generate(level.header.begin(), level.header.end(), byte);
        level.header[LevelRecord::Height] = std::uint8_t(generator() % 33);
        level.header[LevelRecord::Width] = std::uint8_t(generator() % 33);
        std::generate(level.tiles.begin(), level.tiles.end(), byte);
    }
    levelset.currentLevel = std::int16_t(generator() % levelset.levelCount);
    return levelset;
}

QByteArray fileContents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

} // namespace

class LevelsetFileTest : public QObject {
    Q_OBJECT
private slots:
    void freshLevelsetIsTheListedBytes_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<bool>("withCells");
        QTest::newRow("windows form")
            << "c:\\levels\\zkstlabc.kst" << QByteArray("KST0ABC") << false;
        QTest::newRow("posix form") << AbcPath << QByteArray("KST0ABC") << false;
        QTest::newRow("cells row by row, none outside") << AbcPath << QByteArray("KST0ABC") << true;
        // One byte for each character, '?' for one without a Latin-1 form.
        QTest::newRow("euro sign")
            << "/a/zkstl\u20ac\u00e9z.kst" << QByteArray("KST0?\xc9Z") << false;
        QTest::newRow("outside the BMP")
            << "/a/zkstl\U0001F600ab.kst" << QByteArray("KST0?AB") << false;
    }
    void freshLevelsetIsTheListedBytes() {
        QFETCH(QString, path);
        QFETCH(QByteArray, tag);
        QFETCH(bool, withCells);
        QByteArray expected = tag + QByteArray("\x01\x00\x00", 3) + QByteArray(42, ' ') +
                              DefaultHeader + QByteArray(96, '\0');
        QCOMPARE(expected.size(), 164);
        Levelset levelset;
        if (withCells) {
            levelset.levels[0].tile(3, 1) = 0xAB;
            levelset.levels[0].tile(1, 3) = 0xCD;
            // the first column and row outside a 12 x 8 level, and the far corner
            levelset.levels[0].tile(12, 0) = levelset.levels[0].tile(0, 8) = 5;
            levelset.levels[0].tile(31, 31) = 5;
            expected[83] = '\xAB';
            expected[52 + 16 + 3 * 12 + 1] = '\xCD';
        }
        const QByteArray bytes = writeLevelset(levelset, path);
        QCOMPARE(bytes, expected);
        QCOMPARE(readBytes(bytes).levels[0].tile(12, 0), 0);
    }

    void sizeFollowsCountAndLevelSizes() {
        Levelset levelset;
        levelset.levelCount = 2;
        levelset.levels[1].header[LevelRecord::Width] = 20;
        levelset.levels[2].tile(0, 0) = 7; // beyond the count
        const QByteArray bytes = writeLevelset(levelset, AbcPath);
        QCOMPARE(bytes.size(), 52 + (16 + 96) + (16 + 8 * 20));
        QCOMPARE(bytes.at(7), '\x02');
        QCOMPARE(writeLevelset(fullLevelset(), AbcPath).size(), 8372);
        QCOMPARE(LevelsetFileMaxSize, 8372);
    }

    void foreignValuesSurviveReadAndWrite() {
        QByteArray file = prologue(2);
        file[8] = char(7);   // reserved1
        file[9] = char(200); // reserved2
        file.replace(10, 12, "abcdef\xe9\0xyz!", 12);
        QByteArray level0 = record(9, 13, 0x42);
        level0[LevelRecord::LevelType] = char(2);
        level0[LevelRecord::AlienType] = char(0);
        level0[LevelRecord::FinishX] = char(200); // far outside the level
        level0[LevelRecord::PutType] = char(255);
        level0[LevelRecord::Time] = char(0);
        QByteArray level1 = record(32, 32, 0xFF);
        level1[LevelRecord::Objectives] = char(255);
        file += level0 + level1;

        ReadReport report;
        const Levelset levelset = readBytes(file, &report);
        QVERIFY2(report.clean(), qPrintable(report.summary()));
        QCOMPARE(levelset.passcode(0), QStringLiteral("abcdef"));
        QCOMPARE(writeLevelset(levelset, AbcPath), file);
        // The tag a file brings plays no part in what it loads.
        const QByteArray foreignTag = QByteArray("\xff\0junk!", 7) + file.mid(7);
        QCOMPARE(writeLevelset(readBytes(foreignTag), AbcPath), file);
    }

    void readerKeepsDefaultsOfRecordsNotInTheFile() {
        Levelset levelset;
        levelset.levels[0].tile(20, 20) = 9; // outside the level the file brings
        readLevelset(levelset, prologue(1) + record(8, 12, 1));
        QCOMPARE(levelset.levels[0].tile(20, 20), 9);
        QCOMPARE(levelset.levels[0].tile(11, 7), 1);
        for (int i = 1; i < Levelset::MaxLevels; ++i)
            QCOMPARE(levelset.levels[i].header, Levelset().levels[0].header);
    }

    void countOf9FillsLevels0To7() {
        QByteArray file = prologue(9);
        for (int i = 0; i < 9; ++i)
            file += record(8, 12, std::uint8_t(i + 1));
        const Levelset levelset = readBytes(file);
        QCOMPARE(levelset.levelCount, 8);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(levelset.levels[i].tile(11, 7), i + 1);
    }

    void wideLevelKeepsTheCellsReadBeforeColumn32() {
        QByteArray file = prologue(2) + record(8, 33, 0);
        for (int x = 0; x < 33; ++x)
            file[52 + 16 + x] = char(x + 1);
        const Levelset levelset = readBytes(file + record(8, 12, 9));
        QCOMPARE(levelset.levels[0].width(), 32);
        QCOMPARE(levelset.levels[0].height(), 8);
        QCOMPARE(levelset.levels[0].tile(31, 0), 32);
        QCOMPARE(levelset.levels[0].tile(0, 1), 0); // reading stopped before row 1
        QCOMPARE(levelset.levels[1].tile(0, 0), 0); // and before level 1
        QCOMPARE(levelset.levelCount, 2);
    }

    void truncatedGridReadsMissingCellsAsZero() {
        const Levelset levelset = readBytes((prologue(1) + record(8, 12, 6)).left(52 + 16 + 50));
        QCOMPARE(levelset.levels[0].tile(1, 4), 6); // cell 49
        QCOMPARE(levelset.levels[0].tile(2, 4), 0); // cell 50 was missing
    }

    void badFiles_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("findings");
        QTest::addColumn<int>("levelCount");
        const auto row = [](const char *name, const QByteArray &file, const char *findings,
                            int levelCount = 1) {
            QTest::newRow(name) << file << QString(findings) << levelCount;
        };
        const QByteArray level = record(8, 12);
        const QByteArray valid = prologue(1) + level;
        row("valid", valid, "");
        row("empty", {}, "short, count 0");
        row("truncated tag", "KST0A", "short, count 0");
        row("truncated passcodes", prologue(1).left(30), "short, undersize 0");
        row("truncated header", valid.left(53), "short, undersize 0");
        row("truncated grid", valid.chopped(1), "short");
        row("count 0", prologue(0), "count 0");
        row("count 0 with a record", prologue(0) + level, "count 0, trailing");
        row("count 9", prologue(9) + level.repeated(9), "count over 8, trailing", 8);
        row("count 255", prologue(255) + level.repeated(8), "count over 8", 8);
        row("count 255, two records", prologue(255) + level + level,
            "short, count over 8, undersize 2, undersize 3, undersize 4, undersize 5, "
            "undersize 6, undersize 7",
            8);
        row("width 33", prologue(1) + record(8, 33), "trailing, oversize 0");
        row("height 33", prologue(1) + record(33, 12), "trailing, oversize 0");
        row("width 255, height 0", prologue(2) + record(0, 255) + level,
            "trailing, oversize 0, undersize 0", 2);
        row("second level width 40", prologue(3) + level + record(8, 40), "trailing, oversize 1",
            3);
        row("height 0", prologue(1) + record(0, 12), "undersize 0");
        row("width 11", prologue(2) + level + record(8, 11), "undersize 1", 2);
        row("trailing byte", valid + 'x', "trailing");
    }
    void badFiles() {
        QFETCH(QByteArray, file);
        QFETCH(QString, findings);
        QFETCH(int, levelCount);
        ReadReport report;
        const Levelset levelset = readBytes(file, &report);
        verifyInvariantsAndStableWrite(levelset);
        QCOMPARE(int(levelset.levelCount), levelCount);
        QCOMPARE(::findings(report), findings);
        QCOMPARE(report.clean(), findings.isEmpty());
        QCOMPARE(report.summary().isEmpty(), findings.isEmpty());
    }

    void noiseKeepsInvariantsAndWritesStably() {
        std::mt19937 generator(1234);
        QByteArray noise(1 << 20, Qt::Uninitialized);
        std::generate(noise.begin(), noise.end(), [&] { return char(generator()); });
        for (int start : {0, 52, 1000, 77777}) {
            ReadReport report;
            verifyInvariantsAndStableWrite(readBytes(noise.mid(start), &report));
            QVERIFY(!report.clean());
        }
    }

    // Thousands of random levelsets written, read back and written again give the same bytes.
    void writeReadWriteIsStable() {
        std::mt19937 generator(20261122u);
        for (int round = 0; round < 3000; ++round) {
            const Levelset original = randomLevelset(generator);
            const QByteArray written = writeLevelset(original, AbcPath);
            ReadReport report;
            const Levelset reread = readBytes(written, &report);
            QVERIFY(!report.shortFile && !report.trailingBytes && report.oversizeLevel < 0);
            QVERIFY(!report.countZero && !report.countOver8);
            QCOMPARE(writeLevelset(reread, AbcPath), written);
        }
    }

    void everyCutOfAValidFileKeepsTheInvariants() {
        std::mt19937 generator(7u);
        for (int round = 0; round < 200; ++round) {
            const QByteArray written = writeLevelset(randomLevelset(generator), AbcPath);
            const qsizetype cut = qsizetype(generator() % std::uint32_t(written.size()));
            ReadReport report;
            verifyInvariantsAndStableWrite(readBytes(written.left(cut), &report));
            QVERIFY2(report.shortFile, qPrintable(QStringLiteral("cut at %1").arg(cut)));
        }
    }

    void saveWritesTheBytesAndSmallOverLargeLeavesTheNewSize() {
        QTemporaryDir dir;
        const QString path = dir.filePath("zkstlful.kst");
        const Levelset full = fullLevelset();
        QVERIFY(saveLevelsetFile(full, path).ok());
        QCOMPARE(fileContents(path), writeLevelset(full, path));
        Levelset reopened;
        const std::optional<ReadReport> report = readLevelsetFile(reopened, path);
        QVERIFY(report && report->clean());
        QCOMPARE(reopened.levels, full.levels);

        QVERIFY(saveLevelsetFile(Levelset(), path).ok());
        QCOMPARE(fileContents(path), writeLevelset(Levelset(), path));
    }

    void failedSaveLeavesTheOldFile_data() {
        QTest::addColumn<QString>("relativePath");
        QTest::addColumn<QString>("existing"); // a file made before the save, "" for none
        QTest::addColumn<int>("expectedError");
        QTest::newRow("missing folder") << "missing/zkstlabc.kst" << QString() << ENOENT;
        QTest::newRow("path through a regular file") << "plain/zkstlabc.kst"
                                                     << "plain" << ENOTDIR;
        QTest::newRow("target is a folder") << "folder.kst" << QString() << EISDIR;
    }
    void failedSaveLeavesTheOldFile() {
        QFETCH(QString, relativePath);
        QFETCH(QString, existing);
        QFETCH(int, expectedError);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir("folder.kst"));
        const QByteArray old = "old contents\n";
        QStringList expectedEntries = {"folder.kst"};
        if (!existing.isEmpty()) {
            writeFile(dir.filePath(existing), old);
            expectedEntries << existing;
        }

        const QString path = dir.filePath(relativePath);
        const ReplaceResult result = saveLevelsetFile(fullLevelset(), path);
        QVERIFY(!result.ok() && !result.inPlace);
        QCOMPARE(result.failure, qt_error_string(expectedError));
        if (!existing.isEmpty())
            QCOMPARE(fileContents(dir.filePath(existing)), old);
        // Nothing is left behind next to the target either.
        expectedEntries.sort();
        QCOMPARE(QDir(dir.path())
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name),
                 expectedEntries);
        QVERIFY(QFileInfo(dir.filePath("folder.kst")).isDir());
    }

    void unreadableFileLeavesLevelsetUnchanged_data() {
        QTest::addColumn<QString>("relativePath");
        QTest::newRow("missing file") << "zkstlnot.kst";
        QTest::newRow("folder") << "folder";
        QTest::newRow("through a regular file") << "plain/zkstlabc.kst";
    }
    void unreadableFileLeavesLevelsetUnchanged() {
        QFETCH(QString, relativePath);
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir("folder"));
        writeFile(dir.filePath("plain"), "x");
        Levelset levelset = fullLevelset();
        levelset.levelsetPath = "/somewhere/zkstlkep.kst";
        const QByteArray before = writeLevelset(levelset, AbcPath);
        QVERIFY(!readLevelsetFile(levelset, dir.filePath(relativePath)));
        QCOMPARE(writeLevelset(levelset, AbcPath), before);
        QCOMPARE(levelset.levelsetPath, QStringLiteral("/somewhere/zkstlkep.kst"));
    }

    void endlessFileIsNotReadWhole() {
        if (!QFileInfo::exists("/dev/zero"))
            QSKIP("no /dev/zero here");
        Levelset levelset;
        const std::optional<ReadReport> report = readLevelsetFile(levelset, "/dev/zero");
        QVERIFY(report && report->countZero && report->trailingBytes);
        verifyInvariantsAndStableWrite(levelset);
    }
};

QTEST_APPLESS_MAIN(LevelsetFileTest)
#include "LevelsetFileTest.moc"
