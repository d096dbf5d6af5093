// kstool's command line, check and info, run as the real program on real files.
#include "KstoolRun.h"
#include "TestLevelsets.h"

#include <QTemporaryDir>
#include <QTest>
#include <memory>

using namespace TestLevelsets;

class KstoolCheckTest : public QObject {
    Q_OBJECT

private slots:
    // Every test starts in an empty folder of its own.
    void init() {
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(folder->isValid());
    }

    void usage_data();
    void usage();
    void wrongUsageWritesNothing();

    void checkFinds_data();
    void checkFinds();
    void checkReportsEveryFileInOrder();

    void infoShowsTheLevelset();
    void infoListsFindings();

private:
    QString path(const QString &name) const { return folder->filePath(name); }
    std::unique_ptr<QTemporaryDir> folder;
};

void KstoolCheckTest::usage_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("stdoutStart");
    QTest::addColumn<QString>("stderrHas");

    const QString none;
    QTest::newRow("no command") << QStringList{} << 2 << none << "Usage: kstool COMMAND";
    QTest::newRow("general help") << QStringList{"--help"} << 0 << "Usage: kstool COMMAND" << none;
    QTest::newRow("unknown command")
        << QStringList{"frob"} << 2 << none << "unknown command \"frob\"";
    for (const char *command : {"check", "info", "render", "export", "import", "sheet"})
        QTest::newRow(qPrintable(QStringLiteral("%1 --help").arg(QLatin1String(command))))
            << QStringList{QLatin1String(command), "--help"} << 0
            << QStringLiteral("Usage: kstool %1").arg(QLatin1String(command)) << none;
    QTest::newRow("check without a file")
        << QStringList{"check"} << 2 << none << "no file to check";
    QTest::newRow("unknown option")
        << QStringList{"check", "--frob", "a.kst"} << 2 << none << "unknown option --frob";
    QTest::newRow("info of two files")
        << QStringList{"info", "a.kst", "b.kst"} << 2 << none << "give exactly one file";
    QTest::newRow("render without output")
        << QStringList{"render", "zkstlabc.kst"} << 2 << none << "-o OUT.png";
    QTest::newRow("output without value")
        << QStringList{"render", "zkstlabc.kst", "-o"} << 2 << none << "--output needs a value";
    QTest::newRow("scale 0") << QStringList{"render", "zkstlabc.kst", "-o", "r.png", "--scale", "0"}
                             << 2 << none << "--scale takes a whole number from 1 to 8";
    QTest::newRow("scale not a number")
        << QStringList{"render", "zkstlabc.kst", "-o", "r.png", "--scale=big"} << 2 << none
        << "--scale takes";
    QTest::newRow("level the file lacks")
        << QStringList{"render", "zkstlabc.kst", "-o", "r.png", "--level", "2"} << 2 << none
        << "--level takes a level from 1 to 1";
    QTest::newRow("flag given a value")
        << QStringList{"render", "zkstlabc.kst", "-o", "r.png", "--markers=yes"} << 2 << none
        << "--markers takes no value";
    QTest::newRow("option twice") << QStringList{"export", "zkstlabc.kst", "-o",
                                                 "a.json", "--output",     "b.json"}
                                  << 2 << none << "--output given twice";
    QTest::newRow("export to an unknown format")
        << QStringList{"export", "zkstlabc.kst", "-o", "out.xml"} << 2 << none
        << "must end in .json or .tmx";
    QTest::newRow("import to a name the editor refuses")
        << QStringList{"import", "in.json", "-o", "level.kst"} << 2 << none
        << "a levelset file is named zkstl???.kst";
    QTest::newRow("import to a name two characters short")
        << QStringList{"import", "in.json", "-o", "zkstla.kst"} << 2 << none << "zkstl???.kst";
    QTest::newRow("sheet with a stray argument")
        << QStringList{"sheet", "x", "-o", "s.png"} << 2 << none << "unexpected argument x";
}

void KstoolCheckTest::usage() {
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, stdoutStart);
    QFETCH(QString, stderrHas);
    writeBytes(path("zkstlabc.kst"), fresh());

    const KstoolRun run = runKstool(arguments, folder->path());
    QCOMPARE(run.exitCode, exitCode);
    if (!stdoutStart.isEmpty())
        QVERIFY2(run.out.startsWith(stdoutStart), qPrintable(run.out));
    if (!stderrHas.isEmpty())
        QVERIFY2(run.err.contains(stderrHas), qPrintable(run.err));
    if (exitCode == 2 && !arguments.isEmpty() && arguments.first() != QLatin1String("frob"))
        QVERIFY2(run.err.contains(QStringLiteral("--help")), "wrong usage points at the help");
    if (exitCode == 0)
        QVERIFY(run.err.isEmpty());
}

void KstoolCheckTest::wrongUsageWritesNothing() {
    writeBytes(path("zkstlabc.kst"), fresh());
    writeBytes(path("in.json"), "{}");
    const QList<QStringList> calls{
        {"render", "zkstlabc.kst", "-o", "out.png", "--level", "9"},
        {"render", "zkstlabc.kst", "-o", "out.png", "--scale", "9"},
        {"import", "in.json", "-o", "out.png"},
    };
    for (const QStringList &call : calls) {
        QCOMPARE(runKstool(call, folder->path()).exitCode, 2);
        QVERIFY2(!QFile::exists(path("out.png")), qPrintable(call.join(' ')));
    }
}

void KstoolCheckTest::checkFinds_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("line");

    const QString shortFile =
        QStringLiteral("short file (%1 bytes): it ends before its level count "
                       "and sizes say");
    QTest::newRow("fresh levelset") << fresh() << 0 << "ok";
    QTest::newRow("varied levelset") << fileOf(varied()) << 0 << "ok";
    QTest::newRow("empty") << QByteArray() << 1
                           << shortFile.arg(0) + QStringLiteral("; level count 0, read as 1");
    QTest::newRow("truncated header") << fresh().left(30) << 1 << shortFile.arg(30);
    QTest::newRow("truncated grid") << fresh().chopped(10) << 1 << shortFile.arg(154);
    QTest::newRow("count 0") << withByte(fresh(), CountOffset, 0) << 1
                             << "level count 0, read as 1; 112 trailing bytes";
    QTest::newRow("count 9") << withLevels(9) << 1
                             << "level count 9 is over 8; levels 1..8 read; 112 trailing bytes";
    QTest::newRow("count 255") << withByte(fresh(), CountOffset, 255) << 1
                               << shortFile.arg(164) +
                                      QStringLiteral(
                                          "; level count 255 is over 8; levels 1..8 read");
    QTest::newRow("width 33") << withByte(fresh(), FirstLevel + LevelRecord::Width, 33) << 1
                              << "level 1 is 33 x 8, over 32 x 32; reading stopped there; bytes "
                                 "left unread after where reading stopped";
    QTest::newRow("height 0") << withByte(fresh(), FirstLevel + LevelRecord::Height, 0) << 1
                              << "level 1 is 12 x 0, under 12 x 8; 96 trailing bytes";
    QTest::newRow("trailing bytes")
        << fresh() + QByteArray("\x00\xffxyz", 5) << 1 << "5 trailing bytes";
    QTest::newRow("11 holes on level 3")
        << withObjects(2, 11, 0) << 1 << "level 3 has 11 alien holes, at most 10";
    QTest::newRow("6 guards on level 2")
        << withObjects(1, 0, 6) << 1 << "level 2 has 6 security guards, at most 5";
    QTest::newRow("both limits on level 1")
        << withObjects(0, 12, 7) << 1
        << "level 1 has 12 alien holes, at most 10; level 1 has 7 security guards, at most 5";
    QTest::newRow("10 holes and 5 guards are allowed") << withObjects(1, 10, 5) << 0 << "ok";
    Levelset narrow;
    narrow.levelCount = 2;
    narrow.levels[1].header[LevelRecord::Width] = 5;
    QTest::newRow("narrow level 2") << fileOf(narrow) << 1 << "level 2 is 5 x 8, under 12 x 8";
}

void KstoolCheckTest::checkFinds() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, exitCode);
    QFETCH(QString, line);
    writeBytes(path("zkstlabc.kst"), bytes);

    const KstoolRun run = runKstool({"check", "zkstlabc.kst"}, folder->path());
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.out, QStringLiteral("zkstlabc.kst: ") + line + QLatin1Char('\n'));
}

void KstoolCheckTest::checkReportsEveryFileInOrder() {
    writeBytes(path("zkstlaaa.kst"), fresh());
    writeBytes(path("zkstlbbb.kst"), noise());
    writeBytes(path("zkstlccc.kst"), withObjects(2, 11, 0));

    KstoolRun run = runKstool(
        {"check", "zkstlaaa.kst", "zkstlbbb.kst", "missing.kst", "zkstlccc.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0], "zkstlaaa.kst: ok");
    // Reading stops at the first level's row 32, before the count of 200 matters.
    QCOMPARE(lines[1], "zkstlbbb.kst: level 1 is 20 x 40, over 32 x 32; reading stopped there; "
                       "bytes left unread after where reading stopped");
    QCOMPARE(lines[2], "missing.kst: cannot read: No such file or directory");
    QCOMPARE(lines[3], "zkstlccc.kst: level 3 has 11 alien holes, at most 10");

    run = runKstool({"check", "zkstlaaa.kst", "zkstlaaa.kst"}, folder->path());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, "zkstlaaa.kst: ok\nzkstlaaa.kst: ok\n");
}

void KstoolCheckTest::infoShowsTheLevelset() {
    Levelset levelset = varied();
    levelset.levels[0].header[LevelRecord::LevelType] = 1;
    levelset.levels[0].header[LevelRecord::AlienType] = 4;
    levelset.levels[0].header[LevelRecord::Objectives] = 3;
    levelset.levels[0].tile(0, 0) = 69;
    levelset.levels[0].tile(1, 0) = 60;
    levelset.levels[0].tile(2, 0) = 59;
    writeBytes(path("zkstlxyz.kst"), fileOf(levelset, QStringLiteral("zkstlxyz.kst")));

    const KstoolRun run = runKstool({"info", "zkstlxyz.kst"}, folder->path());
    QCOMPARE(run.exitCode, 0);
    const QStringList expected{
        "Tag: \"KST0XYZ\"",
        "Levels: 3",
        "Reserved bytes: 17, 250",
        "Level 1: 12 x 8",
        "  Level type: 1 (Hatchery)",
        "  Alien type: 4 (Strong)",
        "  Objectives: 3",
        "  Block to put: (1, 0), type 89 (solid wall)",
        "  Finish: (11, 7)",
        "  Doors: Normal Doors: 1, Security Doors: 0, White Doors: 0, Checkered Doors: 0, Black "
        "Doors: 0",
        "  Enemies: Holes: 1, Worms: 0, Face Huggers: 0, Normal Aliens: 0, Strong Aliens: 0, "
        "Security Guards: 0",
        "  Pick-ups: Credits: 110, Ammo: 0, Key Passes: 0, White Keys: 0, Checkered Keys: 0, "
        "Black Keys: 0, First Aids: 0, Invincibilities: 0, Extra Lives: 0",
        "Level 2: 32 x 20",
        "  Passcode: \"ABC123\"",
        "  Time: 255",
        "  Level type: 2 (not a type the editor sets)",
        "  Alien type: 0 (not a type the editor sets)",
        "  Start: (40, 0) outside the level",
        // Row 19 runs through ids 140..171.
        "  Doors: Normal Doors: 2, Security Doors: 2, White Doors: 0, Checkered Doors: 0, Black "
        "Doors: 0",
        "Level 3: 13 x 9",
        "  Passcode: \"low\\\\q \"",
    };
    for (const QString &line : expected)
        QVERIFY2(run.out.contains(line + QLatin1Char('\n')), qPrintable(line));
    QVERIFY(!run.out.contains(QStringLiteral("Level 4")));
    QVERIFY(!run.out.contains(QStringLiteral("Finding")));
    // The first level has no passcode; each later level shows its own.
    QCOMPARE(run.out.count(QStringLiteral("Passcode:")), 2);
}

void KstoolCheckTest::infoListsFindings() {
    writeBytes(path("zkstlabc.kst"), withLevels(9));
    KstoolRun run = runKstool({"info", "zkstlabc.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY(
        run.out.contains(QStringLiteral("Finding: level count 9 is over 8; levels 1..8 read\n")));
    QVERIFY(run.out.contains(QStringLiteral("Levels: 8\n")));
    QVERIFY(run.out.contains(QStringLiteral("Level 8: 12 x 8\n")));

    run = runKstool({"info", "missing.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.out.isEmpty());
    QVERIFY(run.err.contains(QStringLiteral("missing.kst: cannot read")));
}

QTEST_GUILESS_MAIN(KstoolCheckTest)
#include "KstoolCheckTest.moc"
