// kstool export and import through JSON: lossless for every file, readable, and strict about
// what it takes back.
#include "KstoolFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace TestLevelsets;

namespace {

QByteArray exported(const KstoolFolder &folder, const QByteArray &bytes) {
    folder.write("zkstlsrc.kst", bytes);
    const KstoolRun run = folder.run({"export", "zkstlsrc.kst", "-o", "out.json"});
    [&] { QVERIFY2(run.exitCode == 0 && run.err.isEmpty(), qPrintable(run.err)); }();
    return folder.read("out.json");
}

QJsonObject exportedObject(const KstoolFolder &folder, const QByteArray &bytes) {
    return QJsonDocument::fromJson(exported(folder, bytes)).object();
}

// A row of the levels' "tiles", split into its ids.
QStringList rowOf(const QJsonObject &level, int y) {
    return level["tiles"].toArray()[y].toString().split(' ', Qt::SkipEmptyParts);
}

} // namespace

class KstoolJsonTest : public QObject {
    Q_OBJECT
private slots:
    void roundTripIsByteExact_data() {
        QTest::addColumn<QByteArray>("bytes");
        for (const NamedFile &file : corpus())
            QTest::newRow(file.name) << file.bytes;
    }
    void roundTripIsByteExact() {
        QFETCH(QByteArray, bytes);
        const KstoolFolder folder;
        exported(folder, bytes);
        const KstoolRun run = folder.run({"import", "out.json", "-o", "zkstldst.kst"});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QCOMPARE(folder.read("zkstldst.kst"), bytes);
    }

    void exportNamesEveryField() {
        const QJsonObject root = exportedObject(KstoolFolder(), fileOf(varied()));
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
        const std::pair<const char *, int> fields[] = {{"width", 32},    {"height", 20},
                                                       {"levelType", 2}, {"alienType", 0},
                                                       {"startX", 40},   {"time", 255}};
        for (const auto &[field, value] : fields)
            QCOMPARE(second[field].toInt(), value);
        QCOMPARE(second["tiles"].toArray().size(), 20);
        const QStringList lastRow = rowOf(second, 19);
        QCOMPARE(lastRow.size(), 32);
        for (int x = 0; x < 32; ++x)
            QCOMPARE(lastRow[x].toInt(), 140 + x);
        // Row 1 of the first level holds the wall at column 3: rows run downward, columns across.
        QCOMPARE(rowOf(levels[0].toObject(), 1)[3], "89");
    }

    void exportKeepsWhatTheLevelsDoNotExplain() {
        const KstoolFolder folder;
        QJsonObject root = exportedObject(folder, withLevels(9));
        QCOMPARE(root["levels"].toArray().size(), 8);
        QCOMPARE(root["levelCount"].toInt(), 9);
        QVERIFY(root["trailing"].isArray());

        root = exportedObject(folder, fresh().left(30));
        QCOMPARE(root["truncated"].toBool(), true);
        QVERIFY(!root.contains("levels"));
        QCOMPARE(root["trailing"].toArray().size(), 1);
        QVERIFY(root["trailing"].toArray()[0].toString().startsWith("4b 53 54 30 41 42 43 01"));
    }

    void handEditsReachTheirCells() {
        const KstoolFolder folder;
        QJsonObject root = exportedObject(folder, fresh());
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
        folder.write("edited.json", QJsonDocument(root).toJson());

        const KstoolRun run = folder.run({"import", "edited.json", "-o", "zkstlq7z.kst"});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        const QByteArray bytes = folder.read("zkstlq7z.kst");
        QCOMPARE(bytes.size(), 52 + 2 * (16 + 96));
        QCOMPARE(bytes.left(7), "KST0Q7Z");
        QCOMPARE(int(bytes[CountOffset]), 2);
        QCOMPARE(quint8(bytes[FirstLevel + LevelRecord::Time]), 120);
        QCOMPARE(int(bytes[FirstLevel + 16 + 2 * 12 + 7]), 75); // row 2, column 7
        QCOMPARE(bytes.mid(FirstLevel + 112, 112), bytes.mid(FirstLevel, 112));
    }

    // The export of the varied levelset with one piece of text replaced.
    void refusals_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QString &from, const QString &to,
                            const QString &message) {
            QTest::newRow(name) << from << to << message;
        };
        const QString row0 = "  0" + QStringLiteral("   0").repeated(11);
        const QString end = "\n}\n";
        const QString level1 = "level 1: \"%1\" must be a whole number 0..255";
        row("not JSON", "\"levels\": [", "\"levels\": [[", "not valid JSON: ");
        row("another format", "\"kestrix-levelset\"", "\"tiled\"", "not a levelset export");
        row("a later version", "\"version\": 1", "\"version\": 2", "\"version\" must be 1");
        row("time over 255", "\"time\": 99", "\"time\": 256", level1.arg("time"));
        row("negative", "\"objectives\": 0", "\"objectives\": -1", level1.arg("objectives"));
        row("fraction", "\"putX\": 1", "\"putX\": 1.5", level1.arg("putX"));
        row("number as text", "\"putX\": 1", "\"putX\": \"1\"", level1.arg("putX"));
        row("missing field", "\"startY\": 0,\n", "", "level 1: \"startY\" is missing");
        row("misspelt field", "\"time\": 99", "\"tme\": 99", "level 1: unknown field \"tme\"");
        row("wider than the grid", "\"width\": 12", "\"width\": 33",
            "level 1: 33 x 8 does not fit the 32 x 32 grid");
        row("more rows than tiles", "\"height\": 8", "\"height\": 9",
            "level 1: \"tiles\" must be an array of 9 rows");
        row("short row", row0, row0.chopped(4),
            "level 1, row 0: holds 11 tile ids; the width is 12");
        row("word for an id", row0, "0 0 0 x" + row0.mid(15),
            "level 1, cell (3, 0): \"x\" is not a tile id 0..255");
        row("id over 255", row0, "256" + row0.mid(3),
            "level 1, cell (0, 0): \"256\" is not a tile id 0..255");
        row("long passcode", "\"ABC123\"", "\"ABC1234\"",
            "the passcode of level 2 has 7 characters; at most 6");
        row("passcode beyond Latin-1", "\"ABC123\"", "\"ABC\u20ac\"",
            "not a one-byte (Latin-1) character");
        row("eight passcodes", "\"passcodes\": [", "\"passcodes\": [\"\", ",
            "\"passcodes\" must be an array of 7 strings");
        row("short tag", "\"KST0ABC\"", "\"KST0AB\"",
            "\"tag\" must be exactly 7 characters, not 6");
        row("broken hex", end, ",\n  \"trailing\": [\"0g\"]" + end,
            "\"trailing\" must hold pairs of hex digits");
        row("odd hex", end, ",\n  \"trailing\": [\"0a f\"]" + end,
            "\"trailing\" must hold pairs of hex digits");
        row("count over a byte", end, ",\n  \"levelCount\": 300" + end,
            "\"levelCount\" must be a whole number 0..255");
    }
    void refusals() {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, message);
        const KstoolFolder folder;
        QString json = QString::fromUtf8(exported(folder, fileOf(varied())));
        const qsizetype at = json.indexOf(from);
        QVERIFY2(at >= 0, qPrintable(from));
        folder.write("bad.json", json.replace(at, from.size(), to).toUtf8());
        folder.write("zkstlout.kst", "an earlier file");

        const KstoolRun run = folder.run({"import", "bad.json", "-o", "zkstlout.kst"});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.startsWith("kstool: bad.json: ") && run.err.contains(message),
                 qPrintable(run.err));
        QCOMPARE(folder.read("zkstlout.kst"), "an earlier file");
    }

    void refusesNineLevels() {
        const KstoolFolder folder;
        QJsonObject root = exportedObject(folder, withLevels(8));
        QJsonArray levels = root["levels"].toArray();
        levels.append(levels[0]);
        root["levels"] = levels;
        folder.write("nine.json", QJsonDocument(root).toJson());

        const KstoolRun run = folder.run({"import", "nine.json", "-o", "zkstlout.kst"});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains("holds 9 levels; a levelset holds at most 8"),
                 qPrintable(run.err));
        QVERIFY(!folder.exists("zkstlout.kst"));
    }
};

QTEST_GUILESS_MAIN(KstoolJsonTest)
#include "KstoolJsonTest.moc"
