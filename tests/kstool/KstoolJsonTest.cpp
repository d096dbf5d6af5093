// kstool export and import through JSON: lossless for every file, readable, and strict about
// what it takes back.
#include "KstoolRun.h"
#include "TestLevelsets.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using namespace TestLevelsets;

class KstoolJsonTest : public QObject {
    Q_OBJECT

private slots:
    // Every test starts in an empty folder of its own.
    void init() {
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(folder->isValid());
    }

    void roundTripIsByteExact_data();
    void roundTripIsByteExact();
    void exportNamesEveryField();
    void exportKeepsWhatTheLevelsDoNotExplain();
    void handEditsReachTheirCells();
    void refusals_data();
    void refusals();
    void refusesNineLevels();
    void unreadableInput();

private:
    QString path(const QString &name) const { return folder->filePath(name); }
    QString exported(const QByteArray &bytes);
    std::unique_ptr<QTemporaryDir> folder;
};

QString KstoolJsonTest::exported(const QByteArray &bytes) {
    writeBytes(path("zkstlsrc.kst"), bytes);
    const KstoolRun run = runKstool({"export", "zkstlsrc.kst", "-o", "out.json"}, folder->path());
    if (run.exitCode != 0)
        qWarning() << run.err;
    return QString::fromUtf8(readBytes(path("out.json")));
}

void KstoolJsonTest::roundTripIsByteExact_data() {
    QTest::addColumn<QByteArray>("bytes");
    for (const NamedFile &file : corpus())
        QTest::newRow(file.name) << file.bytes;
}

void KstoolJsonTest::roundTripIsByteExact() {
    QFETCH(QByteArray, bytes);
    writeBytes(path("zkstlsrc.kst"), bytes);

    KstoolRun run = runKstool({"export", "zkstlsrc.kst", "-o", "out.json"}, folder->path());
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.err.isEmpty());
    run = runKstool({"import", "out.json", "-o", "zkstldst.kst"}, folder->path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(readBytes(path("zkstldst.kst")), bytes);
}

void KstoolJsonTest::exportNamesEveryField() {
    const QJsonObject root = QJsonDocument::fromJson(exported(fileOf(varied())).toUtf8()).object();
    QCOMPARE(root["tag"].toString(), "KST0ABC");
    QCOMPARE(root["reserved1"].toInt(), 17);
    QCOMPARE(root["reserved2"].toInt(), 250);
    const QJsonArray codes = root["passcodes"].toArray();
    QCOMPARE(codes.size(), 7);
    QCOMPARE(codes[0].toString(), "ABC123");
    QCOMPARE(codes[1].toString(), "low\\q ");
    QCOMPARE(codes[5].toString(), QStringLiteral("  \x01   "));
    QVERIFY2(!root.contains("levelCount"), "a count the levels explain is not repeated");
    QVERIFY(!root.contains("trailing"));

    const QJsonArray levels = root["levels"].toArray();
    QCOMPARE(levels.size(), 3);
    const QJsonObject second = levels[1].toObject();
    QCOMPARE(second["width"].toInt(), 32);
    QCOMPARE(second["height"].toInt(), 20);
    QCOMPARE(second["levelType"].toInt(), 2);
    QCOMPARE(second["alienType"].toInt(), 0);
    QCOMPARE(second["startX"].toInt(), 40);
    QCOMPARE(second["time"].toInt(), 255);
    const QJsonArray rows = second["tiles"].toArray();
    QCOMPARE(rows.size(), 20);
    const QStringList lastRow = rows[19].toString().split(' ', Qt::SkipEmptyParts);
    QCOMPARE(lastRow.size(), 32);
    for (int x = 0; x < 32; ++x)
        QCOMPARE(lastRow[x].toInt(), 140 + x);
    // Row 1 of the first level holds the wall at column 3: rows run downward, columns across.
    QCOMPARE(
        levels[0].toObject()["tiles"].toArray()[1].toString().split(' ', Qt::SkipEmptyParts)[3],
        "89");
}

void KstoolJsonTest::exportKeepsWhatTheLevelsDoNotExplain() {
    QJsonObject root = QJsonDocument::fromJson(exported(withLevels(9)).toUtf8()).object();
    QCOMPARE(root["levels"].toArray().size(), 8);
    QCOMPARE(root["levelCount"].toInt(), 9);
    QVERIFY(root["trailing"].isArray());

    root = QJsonDocument::fromJson(exported(fresh().left(30)).toUtf8()).object();
    QCOMPARE(root["truncated"].toBool(), true);
    QVERIFY(!root.contains("levels"));
    QCOMPARE(root["trailing"].toArray().size(), 1);
    QVERIFY(root["trailing"].toArray()[0].toString().startsWith("4b 53 54 30 41 42 43 01"));
}

void KstoolJsonTest::handEditsReachTheirCells() {
    QJsonObject root = QJsonDocument::fromJson(exported(fresh()).toUtf8()).object();
    QJsonArray levels = root["levels"].toArray();
    QJsonObject level = levels[0].toObject();
    QJsonArray rows = level["tiles"].toArray();
    rows[2] = QStringLiteral("0 0 0 0 0 0 0 75 0 0 0 0"); // spacing is free
    level["tiles"] = rows;
    level["time"] = 120;
    levels[0] = level;
    levels.append(level); // a second level, counted without a "levelCount"
    root["levels"] = levels;
    root.remove("tag"); // the tag then comes from the output's name, as the editor makes it
    writeBytes(path("edited.json"), QJsonDocument(root).toJson());

    const KstoolRun run =
        runKstool({"import", "edited.json", "-o", "zkstlq7z.kst"}, folder->path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QByteArray bytes = readBytes(path("zkstlq7z.kst"));
    QCOMPARE(bytes.size(), 52 + 2 * (16 + 96));
    QCOMPARE(bytes.left(7), "KST0Q7Z");
    QCOMPARE(int(bytes[CountOffset]), 2);
    QCOMPARE(quint8(bytes[FirstLevel + LevelRecord::Time]), 120);
    QCOMPARE(int(bytes[FirstLevel + 16 + 2 * 12 + 7]), 75); // row 2, column 7
    QCOMPARE(bytes.mid(FirstLevel + 112, 112), bytes.mid(FirstLevel, 112));
}

void KstoolJsonTest::refusals_data() {
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("message");

    const QString row0 = QStringLiteral("  0") + QStringLiteral("   0").repeated(11);
    QTest::newRow("not JSON") << "\"levels\": ["
                              << "\"levels\": [["
                              << "not valid JSON: ";
    QTest::newRow("another format") << "\"kestrix-levelset\""
                                    << "\"tiled\""
                                    << "not a levelset export";
    QTest::newRow("a later version") << "\"version\": 1"
                                     << "\"version\": 2"
                                     << "\"version\" must be 1";
    QTest::newRow("time over 255") << "\"time\": 99"
                                   << "\"time\": 256"
                                   << "level 1: \"time\" must be a whole number 0..255";
    QTest::newRow("negative") << "\"objectives\": 0"
                              << "\"objectives\": -1"
                              << "level 1: \"objectives\" must be a whole number 0..255";
    QTest::newRow("fraction") << "\"putX\": 1"
                              << "\"putX\": 1.5"
                              << "level 1: \"putX\" must be a whole number 0..255";
    QTest::newRow("number as text") << "\"putX\": 1"
                                    << "\"putX\": \"1\""
                                    << "level 1: \"putX\" must be a whole number 0..255";
    QTest::newRow("missing field") << "\"startY\": 0,\n"
                                   << ""
                                   << "level 1: \"startY\" is missing";
    QTest::newRow("misspelt field") << "\"time\": 99"
                                    << "\"tme\": 99"
                                    << "level 1: unknown field \"tme\"";
    QTest::newRow("wider than the grid") << "\"width\": 12"
                                         << "\"width\": 33"
                                         << "level 1: 33 x 8 does not fit the 32 x 32 grid";
    QTest::newRow("more rows than tiles") << "\"height\": 8"
                                          << "\"height\": 9"
                                          << "level 1: \"tiles\" must be an array of 9 rows";
    QTest::newRow("short row") << row0 << row0.chopped(4)
                               << "level 1, row 0: holds 11 tile ids; the width is 12";
    QTest::newRow("word for an id") << row0 << QStringLiteral("0 0 0 x") + row0.mid(15)
                                    << "level 1, cell (3, 0): \"x\" is not a tile id 0..255";
    QTest::newRow("id over 255") << row0 << QStringLiteral("256") + row0.mid(3)
                                 << "level 1, cell (0, 0): \"256\" is not a tile id 0..255";
    QTest::newRow("long passcode") << "\"ABC123\""
                                   << "\"ABC1234\""
                                   << "the passcode of level 2 has 7 characters; at most 6";
    QTest::newRow("passcode beyond Latin-1") << "\"ABC123\""
                                             << "\"ABC\u20ac\""
                                             << "not a one-byte (Latin-1) character";
    QTest::newRow("eight passcodes") << "\"passcodes\": ["
                                     << "\"passcodes\": [\"\", "
                                     << "\"passcodes\" must be an array of 7 strings";
    QTest::newRow("short tag") << "\"KST0ABC\""
                               << "\"KST0AB\""
                               << "\"tag\" must be exactly 7 characters, not 6";
    QTest::newRow("broken hex") << "\n}\n"
                                << ",\n  \"trailing\": [\"0g\"]\n}\n"
                                << "\"trailing\" must hold pairs of hex digits";
    QTest::newRow("odd hex") << "\n}\n"
                             << ",\n  \"trailing\": [\"0a f\"]\n}\n"
                             << "\"trailing\" must hold pairs of hex digits";
    QTest::newRow("count over a byte") << "\n}\n"
                                       << ",\n  \"levelCount\": 300\n}\n"
                                       << "\"levelCount\" must be a whole number 0..255";
}

void KstoolJsonTest::refusals() {
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, message);
    QString json = exported(fileOf(varied()));
    const qsizetype at = json.indexOf(from);
    QVERIFY2(at >= 0, qPrintable(from));
    json.replace(at, from.size(), to);
    writeBytes(path("bad.json"), json.toUtf8());
    const QByteArray before("an earlier file");
    writeBytes(path("zkstlout.kst"), before);

    const KstoolRun run = runKstool({"import", "bad.json", "-o", "zkstlout.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.startsWith("kstool: bad.json: "), qPrintable(run.err));
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QCOMPARE(readBytes(path("zkstlout.kst")), before);
}

void KstoolJsonTest::refusesNineLevels() {
    QJsonObject root = QJsonDocument::fromJson(exported(withLevels(8)).toUtf8()).object();
    QJsonArray levels = root["levels"].toArray();
    levels.append(levels[0]);
    root["levels"] = levels;
    writeBytes(path("nine.json"), QJsonDocument(root).toJson());

    const KstoolRun run = runKstool({"import", "nine.json", "-o", "zkstlout.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("holds 9 levels; a levelset holds at most 8"), qPrintable(run.err));
    QVERIFY(!QFile::exists(path("zkstlout.kst")));
}

void KstoolJsonTest::unreadableInput() {
    KstoolRun run = runKstool({"export", "missing.kst", "-o", "out.json"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.err.contains("missing.kst: cannot read"));
    QVERIFY(!QFile::exists(path("out.json")));

    run = runKstool({"import", "missing.json", "-o", "zkstlout.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.err.contains("missing.json: cannot read"));

    // A folder that is a regular file: the write fails and says so.
    writeBytes(path("zkstlsrc.kst"), fresh());
    writeBytes(path("plain"), "x");
    run = runKstool({"export", "zkstlsrc.kst", "-o", "plain/out.json"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("cannot write plain/out.json"), qPrintable(run.err));
}

QTEST_GUILESS_MAIN(KstoolJsonTest)
#include "KstoolJsonTest.moc"
