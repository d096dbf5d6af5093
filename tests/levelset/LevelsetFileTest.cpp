#include "levelset/LevelsetFile.h"
#include "LevelsetBytes.h"

#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTest>
#include <random>

using namespace LevelsetBytes;

namespace {

const QString AbcPath = QStringLiteral("/levels/zkstlabc.kst");

Levelset readBytes(const QByteArray &bytes, ReadReport *report = nullptr) {
    Levelset levelset;
    const ReadReport result = readLevelset(levelset, bytes);
    if (report)
        *report = result;
    return levelset;
}

Levelset fullLevelset() {
    Levelset levelset;
    levelset.levelCount = Levelset::MaxLevels;
    for (LevelRecord &level : levelset.levels) {
        level.header[LevelRecord::Width] = 32;
        level.header[LevelRecord::Height] = 32;
        for (int i = 0; i < int(level.tiles.size()); ++i)
            level.tiles[i] = std::uint8_t(i % 178);
    }
    return levelset;
}

QByteArray fileContents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

class LevelsetFileTest : public QObject {
    Q_OBJECT
private slots:
    void freshLevelsetIsTheListedBytes_data();
    void freshLevelsetIsTheListedBytes();
    void cellsAreStoredRowByRow();
    void cellsOutsideTheLevelAreNotStored();
    void levelsBeyondTheCountAreNotStored();
    void fullLevelsetHasTheLargestSize();
    void tagCharactersWithoutLatin1FormBecomeQuestionMarks();

    void foreignValuesSurviveReadAndWrite();
    void anyTagLoadsTheSameLevels();
    void readerKeepsDefaultsOfRecordsNotInTheFile();
    void countOf9FillsLevels0To7();
    void wideLevelKeepsTheCellsReadBeforeColumn32();
    void truncatedGridReadsMissingCellsAsZero();

    void badFiles_data();
    void badFiles();
    void noiseKeepsInvariantsAndWritesStably();

    void saveWritesTheBytesAndReadsBack();
    void savingSmallOverLargeLeavesTheNewSize();
    void failedSaveLeavesTheOldFile_data();
    void failedSaveLeavesTheOldFile();
    void unreadableFileLeavesLevelsetUnchanged_data();
    void unreadableFileLeavesLevelsetUnchanged();
    void endlessFileIsNotReadWhole();
};

void LevelsetFileTest::freshLevelsetIsTheListedBytes_data() {
    QTest::addColumn<QString>("path");
    QTest::newRow("windows form") << "c:\\levels\\zkstlabc.kst";
    QTest::newRow("posix form") << "/levels/zkstlabc.kst";
}

void LevelsetFileTest::freshLevelsetIsTheListedBytes() {
    QFETCH(QString, path);
    QByteArray expected = "KST0ABC";
    expected += QByteArray("\x01\x00\x00", 3);
    expected += QByteArray(42, '\x20');
    expected += QByteArray("\x08\x0C\x00\x63\x01\x00\x02\x00\x59\x00\x00\x03\x0B\x07\x00\x00", 16);
    expected += QByteArray(96, '\0');
    QCOMPARE(expected.size(), 164);
    QCOMPARE(writeLevelset(Levelset(), path), expected);
}

void LevelsetFileTest::cellsAreStoredRowByRow() {
    Levelset levelset;
    levelset.levels[0].tile(3, 1) = 0xAB;
    levelset.levels[0].tile(1, 3) = 0xCD;
    const QByteArray bytes = writeLevelset(levelset, AbcPath);
    QCOMPARE(quint8(bytes.at(83)), 0xAB);
    QCOMPARE(quint8(bytes.at(52 + 16 + 3 * 12 + 1)), 0xCD);
    QCOMPARE(bytes.count('\xAB'), 1);
}

void LevelsetFileTest::cellsOutsideTheLevelAreNotStored() {
    Levelset levelset;
    levelset.levels[0].tile(12, 0) = 5; // first column outside a 12-column level
    levelset.levels[0].tile(0, 8) = 5;  // first row outside an 8-row level
    levelset.levels[0].tile(31, 31) = 5;
    const QByteArray bytes = writeLevelset(levelset, AbcPath);
    QCOMPARE(bytes.size(), 164);
    QVERIFY(!bytes.contains('\x05'));

    const Levelset reopened = readBytes(bytes);
    QCOMPARE(reopened.levels[0].tile(12, 0), 0);
    QCOMPARE(reopened.levels[0].tile(31, 31), 0);
}

void LevelsetFileTest::levelsBeyondTheCountAreNotStored() {
    Levelset levelset;
    levelset.levelCount = 2;
    levelset.levels[1].header[LevelRecord::Width] = 20;
    levelset.levels[2].tile(0, 0) = 7;
    const QByteArray bytes = writeLevelset(levelset, AbcPath);
    QCOMPARE(bytes.size(), 52 + (16 + 96) + (16 + 8 * 20));
    QCOMPARE(bytes.at(7), '\x02');
}

void LevelsetFileTest::fullLevelsetHasTheLargestSize() {
    QCOMPARE(writeLevelset(fullLevelset(), AbcPath).size(), 8372);
    QCOMPARE(LevelsetFileMaxSize, 8372);
}

void LevelsetFileTest::tagCharactersWithoutLatin1FormBecomeQuestionMarks() {
    const QByteArray bytes =
        writeLevelset(Levelset(), QString::fromUtf8("/a/zkstl\xe2\x82\xac\xc3\xa9z.kst"));
    QCOMPARE(bytes.left(8), QByteArray("KST0?\xc9Z\x01"));
    QCOMPARE(bytes.size(), 164);

    const QByteArray wide = writeLevelset(Levelset(), QString::fromUtf8("/a/zkstl\xf0\x9f\x98\x80"
                                                                        "ab.kst"));
    QCOMPARE(wide.left(8), QByteArray("KST0?AB\x01"));
    QCOMPARE(wide.size(), 164);
}

void LevelsetFileTest::foreignValuesSurviveReadAndWrite() {
    QByteArray file = prologue(2);
    file[8] = char(7);   // reserved1
    file[9] = char(200); // reserved2
    file.replace(10, 12, "abcdef\xe9\0xyz!", 12);
    QByteArray level0 = record(9, 13, 0x42);
    level0[LevelRecord::LevelType + 0] = char(2);
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
}

void LevelsetFileTest::anyTagLoadsTheSameLevels() {
    const QByteArray levels = record(10, 14, 0x33) + record(8, 12, 0x44);
    const Levelset proper = readBytes(prologue(2, "KST0ABC") + levels);
    const Levelset foreign = readBytes(prologue(2, QByteArray("\xff\0junk!", 7)) + levels);
    QCOMPARE(writeLevelset(foreign, AbcPath), writeLevelset(proper, AbcPath));
}

void LevelsetFileTest::readerKeepsDefaultsOfRecordsNotInTheFile() {
    Levelset levelset;
    levelset.levels[0].tile(20, 20) = 9; // outside the level the file brings
    readLevelset(levelset, prologue(1) + record(8, 12, 1));
    QCOMPARE(levelset.levels[0].tile(20, 20), 9);
    QCOMPARE(levelset.levels[0].tile(11, 7), 1);
    for (int i = 1; i < Levelset::MaxLevels; ++i) {
        LevelRecord fresh;
        fresh.reset();
        QCOMPARE(levelset.levels[i].header, fresh.header);
    }
}

void LevelsetFileTest::countOf9FillsLevels0To7() {
    QByteArray file = prologue(9);
    for (int i = 0; i < 9; ++i)
        file += record(8, 12, std::uint8_t(i + 1));
    ReadReport report;
    const Levelset levelset = readBytes(file, &report);
    QVERIFY(report.countOver8);
    QCOMPARE(levelset.levelCount, 8);
    for (int i = 0; i < 8; ++i)
        QCOMPARE(levelset.levels[i].tile(11, 7), i + 1);
}

void LevelsetFileTest::wideLevelKeepsTheCellsReadBeforeColumn32() {
    QByteArray file = prologue(2) + record(8, 33, 0);
    for (int x = 0; x < 33; ++x)
        file[52 + 16 + x] = char(x + 1);
    file += record(8, 12, 9);
    ReadReport report;
    const Levelset levelset = readBytes(file, &report);
    QCOMPARE(report.oversizeLevel, 0);
    QCOMPARE(levelset.levels[0].width(), 32);
    QCOMPARE(levelset.levels[0].height(), 8);
    QCOMPARE(levelset.levels[0].tile(31, 0), 32);
    QCOMPARE(levelset.levels[0].tile(0, 1), 0); // reading stopped before row 1
    QCOMPARE(levelset.levels[1].tile(0, 0), 0); // and before level 1
    QCOMPARE(levelset.levelCount, 2);
}

void LevelsetFileTest::truncatedGridReadsMissingCellsAsZero() {
    const QByteArray file = (prologue(1) + record(8, 12, 6)).left(52 + 16 + 50);
    ReadReport report;
    const Levelset levelset = readBytes(file, &report);
    QVERIFY(report.shortFile);
    QCOMPARE(levelset.levels[0].tile(1, 4), 6); // cell 49
    QCOMPARE(levelset.levels[0].tile(2, 4), 0); // cell 50 was missing
}

void LevelsetFileTest::badFiles_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("shortFile");
    QTest::addColumn<bool>("countZero");
    QTest::addColumn<bool>("countOver8");
    QTest::addColumn<int>("oversizeLevel");
    QTest::addColumn<bool>("trailingBytes");
    QTest::addColumn<QList<int>>("undersize");
    QTest::addColumn<int>("levelCount");

    const QByteArray valid = prologue(1) + record(8, 12);
    QByteArray nine = prologue(9);
    QByteArray full255 = prologue(255);
    for (int i = 0; i < 9; ++i)
        nine += record(8, 12);
    for (int i = 0; i < 8; ++i)
        full255 += record(8, 12);

    // file                          short  zero   over8  oversz trail  undersize    count
    QTest::newRow("valid") << valid << false << false << false << -1 << false << QList<int>{} << 1;
    QTest::newRow("empty") << QByteArray() << true << true << false << -1 << false << QList<int>{}
                           << 1;
    QTest::newRow("truncated tag")
        << QByteArray("KST0A") << true << true << false << -1 << false << QList<int>{} << 1;
    QTest::newRow("truncated passcodes")
        << prologue(1).left(30) << true << false << false << -1 << false << QList<int>{0} << 1;
    QTest::newRow("truncated header")
        << valid.left(52 + 1) << true << false << false << -1 << false << QList<int>{0} << 1;
    QTest::newRow("truncated grid") << valid.left(valid.size() - 1) << true << false << false << -1
                                    << false << QList<int>{} << 1;
    QTest::newRow("count 0") << prologue(0) << false << true << false << -1 << false << QList<int>{}
                             << 1;
    QTest::newRow("count 0 with a record")
        << prologue(0) + record(8, 12) << false << true << false << -1 << true << QList<int>{} << 1;
    QTest::newRow("count 9") << nine << false << false << true << -1 << true << QList<int>{} << 8;
    QTest::newRow("count 255") << full255 << false << false << true << -1 << false << QList<int>{}
                               << 8;
    QTest::newRow("count 255, two records")
        << prologue(255) + record(8, 12) + record(8, 12) << true << false << true << -1 << false
        << QList<int>{2, 3, 4, 5, 6, 7} << 8;
    QTest::newRow("width 33") << prologue(1) + record(8, 33) << false << false << false << 0 << true
                              << QList<int>{} << 1;
    QTest::newRow("height 33") << prologue(1) + record(33, 12) << false << false << false << 0
                               << true << QList<int>{} << 1;
    QTest::newRow("width 255, height 0") << prologue(2) + record(0, 255) + record(8, 12) << false
                                         << false << false << 0 << true << QList<int>{0} << 2;
    QTest::newRow("second level width 40") << prologue(3) + record(8, 12) + record(8, 40) << false
                                           << false << false << 1 << true << QList<int>{} << 3;
    QTest::newRow("height 0") << prologue(1) + record(0, 12) << false << false << false << -1
                              << false << QList<int>{0} << 1;
    QTest::newRow("width 11") << prologue(2) + record(8, 12) + record(8, 11) << false << false
                              << false << -1 << false << QList<int>{1} << 2;
    QTest::newRow("trailing byte")
        << valid + 'x' << false << false << false << -1 << true << QList<int>{} << 1;
}

void LevelsetFileTest::badFiles() {
    QFETCH(QByteArray, file);
    QFETCH(bool, shortFile);
    QFETCH(bool, countZero);
    QFETCH(bool, countOver8);
    QFETCH(int, oversizeLevel);
    QFETCH(bool, trailingBytes);
    QFETCH(QList<int>, undersize);
    QFETCH(int, levelCount);

    ReadReport report;
    const Levelset levelset = readBytes(file, &report);
    verifyInvariants(levelset);
    QCOMPARE(report.shortFile, shortFile);
    QCOMPARE(report.countZero, countZero);
    QCOMPARE(report.countOver8, countOver8);
    QCOMPARE(report.oversizeLevel, oversizeLevel);
    QCOMPARE(report.trailingBytes, trailingBytes);
    QCOMPARE(report.undersizeLevels, undersize);
    QCOMPARE(int(levelset.levelCount), levelCount);
    const bool clean = !shortFile && !countZero && !countOver8 && oversizeLevel < 0 &&
                       !trailingBytes && undersize.isEmpty();
    QCOMPARE(report.clean(), clean);
    QCOMPARE(report.summary().isEmpty(), clean);

    // Whatever was repaired, the result is a levelset this editor writes and reads back as is.
    const QByteArray written = writeLevelset(levelset, AbcPath);
    QCOMPARE(writeLevelset(readBytes(written), AbcPath), written);
}

void LevelsetFileTest::noiseKeepsInvariantsAndWritesStably() {
    std::mt19937 generator(1234);
    QByteArray noise(1 << 20, Qt::Uninitialized);
    for (char &c : noise)
        c = char(generator());
    for (int start : {0, 52, 1000, 77777}) {
        ReadReport report;
        const Levelset levelset = readBytes(noise.mid(start), &report);
        verifyInvariants(levelset);
        QVERIFY(!report.clean());
        const QByteArray written = writeLevelset(levelset, AbcPath);
        QCOMPARE(writeLevelset(readBytes(written), AbcPath), written);
    }
}

void LevelsetFileTest::saveWritesTheBytesAndReadsBack() {
    QTemporaryDir dir;
    const QString path = dir.filePath("zkstlful.kst");
    const Levelset levelset = fullLevelset();
    QCOMPARE(saveLevelsetFile(levelset, path), QString());
    QCOMPARE(fileContents(path), writeLevelset(levelset, path));

    Levelset reopened;
    const std::optional<ReadReport> report = readLevelsetFile(reopened, path);
    QVERIFY(report && report->clean());
    QCOMPARE(reopened.levels, levelset.levels);
}

void LevelsetFileTest::savingSmallOverLargeLeavesTheNewSize() {
    QTemporaryDir dir;
    const QString path = dir.filePath("zkstlabc.kst");
    QCOMPARE(saveLevelsetFile(fullLevelset(), path), QString());
    QCOMPARE(QFileInfo(path).size(), 8372);
    QCOMPARE(saveLevelsetFile(Levelset(), path), QString());
    QCOMPARE(fileContents(path), writeLevelset(Levelset(), path));
}

void LevelsetFileTest::failedSaveLeavesTheOldFile_data() {
    QTest::addColumn<QString>("relativePath");
    QTest::addColumn<QString>("existing"); // a file made before the save, "" for none
    QTest::newRow("missing folder") << "missing/zkstlabc.kst"
                                    << "";
    QTest::newRow("path through a regular file") << "plain/zkstlabc.kst"
                                                 << "plain";
    QTest::newRow("target is a folder") << "folder.kst"
                                        << "";
    // The temporary neighbour of a 250-byte name passes the 255-byte limit.
    QTest::newRow("temporary name too long") << QString(250, u'k') << QString(250, u'k');
}

void LevelsetFileTest::failedSaveLeavesTheOldFile() {
    QFETCH(QString, relativePath);
    QFETCH(QString, existing);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("folder.kst"));
    const QByteArray old = "old contents\n";
    if (!existing.isEmpty())
        writeFile(dir.filePath(existing), old);

    const QString path = dir.filePath(relativePath);
    const QString reason = saveLevelsetFile(fullLevelset(), path);
    const QString prefix = "Could not write " + path + ": ";
    QVERIFY2(reason.startsWith(prefix), qPrintable(reason));
    QVERIFY(reason.size() > prefix.size());
    QVERIFY2(!reason.endsWith(QSaveFile().errorString()), qPrintable(reason)); // names a cause
    if (!existing.isEmpty())
        QCOMPARE(fileContents(dir.filePath(existing)), old);
    QVERIFY(QFileInfo(dir.filePath("folder.kst")).isDir());
    // Nothing is left behind next to the target either.
    QStringList expected = {"folder.kst"};
    if (!existing.isEmpty())
        expected << existing;
    expected.sort();
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
             expected);
}

void LevelsetFileTest::unreadableFileLeavesLevelsetUnchanged_data() {
    QTest::addColumn<QString>("relativePath");
    QTest::newRow("missing file") << "zkstlnot.kst";
    QTest::newRow("folder") << "folder";
    QTest::newRow("through a regular file") << "plain/zkstlabc.kst";
}

void LevelsetFileTest::unreadableFileLeavesLevelsetUnchanged() {
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

void LevelsetFileTest::endlessFileIsNotReadWhole() {
    if (!QFileInfo::exists("/dev/zero"))
        QSKIP("no /dev/zero here");
    Levelset levelset;
    const std::optional<ReadReport> report = readLevelsetFile(levelset, "/dev/zero");
    QVERIFY(report);
    QVERIFY(report->countZero);
    QVERIFY(report->trailingBytes);
    verifyInvariants(levelset);
}

QTEST_APPLESS_MAIN(LevelsetFileTest)
#include "LevelsetFileTest.moc"
