// kstool's command line, check and info, and how every command fails on input it cannot read
// or output it cannot write.
#include "KstoolFixture.h"

#include <QDir>

using namespace TestLevelsets;

class KstoolCheckTest : public QObject {
    Q_OBJECT
private slots:
    // Exit 0 with text at the start of the output, or exit 2 with text in the error, having
    // written nothing.
    void usage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("text");
        const auto row = [](const QString &name, const QStringList &arguments, int exitCode,
                            const QString &text) {
            QTest::newRow(qPrintable(name)) << arguments << exitCode << text;
        };
        const QStringList render{"render", "zkstlabc.kst", "-o", "out.png"};
        row("no command", {}, 2, "Usage: kstool COMMAND");
        row("general help", {"--help"}, 0, "Usage: kstool COMMAND");
        row("unknown command", {"frob"}, 2, "unknown command \"frob\"");
        for (const QString command :
             {"check", "info", "render", "export", "import", "sheet", "diff", "merge"})
            row(command + " --help", {command, "--help"}, 0, "Usage: kstool " + command);
        row("check without a file", {"check"}, 2, "no file to check");
        row("unknown option", {"check", "--frob", "a.kst"}, 2, "unknown option --frob");
        row("info of two files", {"info", "a.kst", "b.kst"}, 2, "give exactly one file");
        row("render without output", {"render", "zkstlabc.kst"}, 2, "-o OUT.png");
        row("output without value", {"render", "zkstlabc.kst", "-o"}, 2, "--output needs a value");
        row("scale 0", render + QStringList{"--scale", "0"}, 2,
            "--scale takes a whole number from 1 to 8");
        row("scale 9", render + QStringList{"--scale", "9"}, 2, "--scale takes");
        row("scale not a number", render + QStringList{"--scale=big"}, 2, "--scale takes");
        row("level the file lacks", render + QStringList{"--level", "2"}, 2,
            "--level takes a level from 1 to 1");
        row("level 9", render + QStringList{"--level", "9"}, 2, "--level takes");
        row("flag given a value", render + QStringList{"--markers=yes"}, 2,
            "--markers takes no value");
        row("option twice", {"export", "zkstlabc.kst", "-o", "a.json", "--output", "b.json"}, 2,
            "--output given twice");
        row("export to an unknown format", {"export", "zkstlabc.kst", "-o", "out.xml"}, 2,
            "must end in .json or .tmx");
        row("import to a name the editor refuses", {"import", "in.json", "-o", "level.kst"}, 2,
            "a levelset file is named zkstl???.kst");
        row("import to a name two characters short", {"import", "in.json", "-o", "zkstla.kst"}, 2,
            "zkstl???.kst");
        row("import to a picture", {"import", "in.json", "-o", "out.png"}, 2, "zkstl???.kst");
        row("sheet with a stray argument", {"sheet", "x", "-o", "s.png"}, 2,
            "unexpected argument x");
        row("diff of one file", {"diff", "zkstlabc.kst"}, 2, "give two levelset files");
        row("diff at scale 9", {"diff", "zkstlabc.kst", "zkstlabc.kst", "--scale", "9"}, 2,
            "--scale takes");
        row("merge without output", {"merge", "zkstlabc.kst", "zkstlabc.kst", "zkstlabc.kst"}, 2,
            "-o OUT");
        row("export both to a file and to stdout",
            {"export", "zkstlabc.kst", "-o", "a.json", "--stdout"}, 2, "or give --stdout");
    }
    void usage() {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, text);
        const KstoolFolder folder;
        folder.write("zkstlabc.kst", fresh());
        folder.write("in.json", "{}");

        const KstoolRun run = folder.run(arguments);
        QCOMPARE(run.exitCode, exitCode);
        if (exitCode == 0) {
            QVERIFY2(run.out.startsWith(text), qPrintable(run.out));
            QVERIFY(run.err.isEmpty());
            return;
        }
        QVERIFY2(run.err.contains(text), qPrintable(run.err));
        if (!arguments.isEmpty() && arguments.first() != QLatin1String("frob"))
            QVERIFY2(run.err.contains(QStringLiteral("--help")), "wrong usage points at the help");
        QCOMPARE(QDir(folder.path(".")).entryList(QDir::Files),
                 QStringList({"in.json", "zkstlabc.kst"}));
    }

    // Each command that meets a missing input, an output through a regular file or a write cut
    // short (as by a full disk) exits 1, says why, leaves no output and keeps the old levelset.
    void unreadableInputOrUnwritableOutput_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("sizeLimit");
        const auto row = [](const char *name, const QStringList &arguments, const char *message,
                            int sizeLimit = 0) {
            QTest::newRow(name) << arguments << QString(message) << sizeLimit;
        };
        row("info", {"info", "missing.kst"}, "missing.kst: cannot read");
        row("render", {"render", "missing.kst", "-o", "out.png"}, "missing.kst: cannot read");
        row("export", {"export", "missing.kst", "-o", "out.json"}, "missing.kst: cannot read");
        row("import", {"import", "missing.json", "-o", "zkstlout.kst"},
            "missing.json: cannot read");
        row("render output", {"render", "zkstlabc.kst", "-o", "plain/o.png"},
            "cannot write plain/o.png");
        row("json output", {"export", "zkstlabc.kst", "-o", "plain/o.json"},
            "cannot write plain/o.json");
        row("map output", {"export", "zkstlabc.kst", "-o", "plain/o.tmx"}, "cannot write plain/o-");
        row("sheet output", {"sheet", "-o", "plain/o.png"}, "cannot write plain/o.png");
        row("import cut short", {"import", "full.json", "-o", "zkstlabc.kst"},
            "cannot write zkstlabc.kst: File too large", 1000);
    }
    void unreadableInputOrUnwritableOutput() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        QFETCH(int, sizeLimit);
        const KstoolFolder folder;
        folder.write("zkstlful.kst", eightFullLevels());
        QCOMPARE(folder.run({"export", "zkstlful.kst", "-o", "full.json"}).exitCode, 0);
        folder.write("zkstlabc.kst", fresh());
        folder.write("plain", "x");
        const KstoolRun run = folder.run(arguments, rlim_t(sizeLimit));
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.out.isEmpty());
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QCOMPARE(folder.read("zkstlabc.kst"), fresh());
        QCOMPARE(QDir(folder.path(".")).entryList(QDir::Files | QDir::Hidden),
                 QStringList({"full.json", "plain", "zkstlabc.kst", "zkstlful.kst"}));
    }

    void checkFinds_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("line");
        const auto row = [](const char *name, const QByteArray &bytes, const QString &line) {
            QTest::newRow(name) << bytes << (line == QLatin1String("ok") ? 0 : 1) << line;
        };
        const QString shortFile =
            QStringLiteral("short file (%1 bytes): it ends before its level count and sizes say");
        Levelset narrow;
        narrow.levelCount = 2;
        narrow.levels[1].header[LevelRecord::Width] = 5;
        row("fresh levelset", fresh(), "ok");
        row("varied levelset", fileOf(varied()), "ok");
        row("empty", {}, shortFile.arg(0) + "; level count 0, read as 1");
        row("truncated header", fresh().left(30), shortFile.arg(30));
        row("truncated grid", fresh().chopped(10), shortFile.arg(154));
        row("count 0", withByte(fresh(), CountOffset, 0),
            "level count 0, read as 1; 112 trailing bytes");
        row("count 9", withLevels(9),
            "level count 9 is over 8; levels 1..8 read; 112 trailing bytes");
        row("count 255", withByte(fresh(), CountOffset, 255),
            shortFile.arg(164) + "; level count 255 is over 8; levels 1..8 read");
        row("width 33", withByte(fresh(), FirstLevel + LevelRecord::Width, 33),
            "level 1 is 33 x 8, over 32 x 32; reading stopped there; bytes left unread after "
            "where reading stopped");
        row("height 0", withByte(fresh(), FirstLevel + LevelRecord::Height, 0),
            "level 1 is 12 x 0, under 12 x 8; 96 trailing bytes");
        row("trailing bytes", fresh() + QByteArray("\x00\xffxyz", 5), "5 trailing bytes");
        row("11 holes on level 3", withObjects(2, 11, 0), "level 3 has 11 alien holes, at most 10");
        row("6 guards on level 2", withObjects(1, 0, 6),
            "level 2 has 6 security guards, at most 5");
        row("both limits on level 1", withObjects(0, 12, 7),
            "level 1 has 12 alien holes, at most 10; level 1 has 7 security guards, at most 5");
        row("10 holes and 5 guards are allowed", withObjects(1, 10, 5), "ok");
        row("narrow level 2", fileOf(narrow), "level 2 is 5 x 8, under 12 x 8");
    }
    void checkFinds() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, exitCode);
        QFETCH(QString, line);
        const KstoolFolder folder;
        folder.write("zkstlabc.kst", bytes);
        const KstoolRun run = folder.run({"check", "zkstlabc.kst"});
        QCOMPARE(run.exitCode, exitCode);
        QCOMPARE(run.out, "zkstlabc.kst: " + line + '\n');
    }

    void checkReportsEveryFileInOrder() {
        const KstoolFolder folder;
        folder.write("zkstlaaa.kst", fresh());
        folder.write("zkstlbbb.kst", noise());
        folder.write("zkstlccc.kst", withObjects(2, 11, 0));
        KstoolRun run =
            folder.run({"check", "zkstlaaa.kst", "zkstlbbb.kst", "missing.kst", "zkstlccc.kst"});
        QCOMPARE(run.exitCode, 1);
        // Reading the noise stops at the first level's row 32, before the count of 200 matters.
        QCOMPARE(run.out, "zkstlaaa.kst: ok\n"
                          "zkstlbbb.kst: level 1 is 20 x 40, over 32 x 32; reading stopped there; "
                          "bytes left unread after where reading stopped\n"
                          "missing.kst: cannot read: No such file or directory\n"
                          "zkstlccc.kst: level 3 has 11 alien holes, at most 10\n");
        run = folder.run({"check", "zkstlaaa.kst", "zkstlaaa.kst"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, "zkstlaaa.kst: ok\nzkstlaaa.kst: ok\n");
    }

    void infoShowsTheLevelset() {
        Levelset levelset = varied();
        LevelRecord &first = levelset.levels[0];
        first.header[LevelRecord::LevelType] = 1;
        first.header[LevelRecord::AlienType] = 4;
        first.header[LevelRecord::Objectives] = 3;
        first.tile(0, 0) = 69;
        first.tile(1, 0) = 60;
        first.tile(2, 0) = 59;
        const KstoolFolder folder;
        folder.write("zkstlxyz.kst", fileOf(levelset, "zkstlxyz.kst"));

        const KstoolRun run = folder.run({"info", "zkstlxyz.kst"});
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
            "  Doors: Normal Doors: 1, Security Doors: 0, White Doors: 0, Checkered Doors: 0, "
            "Black Doors: 0",
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
            "  Doors: Normal Doors: 2, Security Doors: 2, White Doors: 0, Checkered Doors: 0, "
            "Black Doors: 0",
            "Level 3: 13 x 9",
            "  Passcode: \"low\\\\q \"",
        };
        for (const QString &line : expected)
            QVERIFY2(run.out.contains(line + '\n'), qPrintable(line));
        QVERIFY(!run.out.contains("Level 4") && !run.out.contains("Finding"));
        // The first level has no passcode; each later level shows its own.
        QCOMPARE(run.out.count("Passcode:"), 2);
    }

    void infoListsFindings() {
        const KstoolFolder folder;
        folder.write("zkstlabc.kst", withLevels(9));
        const KstoolRun run = folder.run({"info", "zkstlabc.kst"});
        QCOMPARE(run.exitCode, 1);
        for (const char *line : {"Finding: level count 9 is over 8; levels 1..8 read\n",
                                 "Levels: 8\n", "Level 8: 12 x 8\n"})
            QVERIFY2(run.out.contains(line), line);
    }
};

QTEST_GUILESS_MAIN(KstoolCheckTest)
#include "KstoolCheckTest.moc"
