#include "levelset/Levelset.h"
#include "levelset/LevelsetName.h"

#include <QTest>
#include <random>

Q_DECLARE_METATYPE(PathStyle)

namespace {

const PathStyle Posix = PathStyle::Posix;
const PathStyle Windows = PathStyle::Windows;

} // namespace

class LevelsetModelTest : public QObject {
    Q_OBJECT
private slots:
    void resetGivesTheDefaultLevelset() {
        Levelset levelset;
        levelset.levelCount = 5;
        levelset.currentLevel = 4;
        levelset.reserved1 = levelset.reserved2 = 9;
        levelset.levelsetPath = QStringLiteral("/levels/zkstlabc.kst");
        levelset.storePasscode(3, QStringLiteral("SECRET"));
        for (LevelRecord &level : levelset.levels) {
            level.header.fill(33);
            level.tiles.fill(7);
        }
        levelset.reset();
        for (const Levelset &fresh : {levelset, Levelset()}) {
            QCOMPARE(fresh.levelCount, 1);
            QCOMPARE(fresh.currentLevel, 0);
            QCOMPARE(fresh.reserved1, 0);
            QCOMPARE(fresh.reserved2, 0);
            QCOMPARE(fresh.levelsetPath, QStringLiteral("Untitled"));
            for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
                QCOMPARE(fresh.passcode(slot), QStringLiteral("      "));
            const std::array<std::uint8_t, 16> header{8,  12, 0, 99, 1,  0, 2, 0,
                                                      89, 0,  0, 3,  11, 7, 0, 0};
            for (const LevelRecord &level : fresh.levels) {
                QCOMPARE(level.header, header);
                QVERIFY(std::all_of(level.tiles.begin(), level.tiles.end(),
                                    [](auto tile) { return tile == 0; }));
            }
        }
    }

    void passcodeSlots_data() {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QByteArray>("held");
        QTest::newRow("short is padded") << "abc" << QByteArray("abc   ");
        QTest::newRow("long is cut") << "ABCDEFGH" << QByteArray("ABCDEF");
        QTest::newRow("empty is blanks") << "" << QByteArray("      ");
        QTest::newRow("exactly six") << "ZYXWVU" << QByteArray("ZYXWVU");
        QTest::newRow("latin-1 kept as one byte") << "\u00c9T\u00c9" << QByteArray("\xc9T\xc9   ");
        QTest::newRow("no latin-1 form") << "A\u20acB" << QByteArray("A?B   ");
    }
    void passcodeSlots() {
        QFETCH(QString, given);
        QFETCH(QByteArray, held);
        Levelset levelset;
        levelset.storePasscode(6, given);
        QCOMPARE(QByteArray(levelset.passcodes[6].data(), 6), held);
        QCOMPARE(levelset.passcode(6), QString::fromLatin1(held));
        QCOMPARE(levelset.passcode(5), QStringLiteral("      ")); // its neighbour is untouched
    }

    void cellsInTheLevel() {
        LevelRecord level = Levelset().levels[0];
        QVERIFY(level.contains(0, 0));
        QVERIFY(level.contains(11, 7));
        QVERIFY(!level.contains(12, 0));
        QVERIFY(!level.contains(0, 8));
        QVERIFY(!level.contains(-1, 0));
        QVERIFY(!level.contains(0, -1));
    }

    void windowTitle() {
        QCOMPARE(::windowTitle(UntitledPath),
                 QStringLiteral("[Untitled] - Kestrix: Levelset Editor"));
        QCOMPARE(::windowTitle(QStringLiteral("/a/zkstlabc.kst")),
                 QStringLiteral("[/a/zkstlabc.kst] - Kestrix: Levelset Editor"));
    }

    void tag_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("tag");
        const auto row = [](const char *name, const QString &path, const QString &tag) {
            QTest::newRow(name) << path << tag;
        };
        row("windows path", "c:\\levels\\zkstlabc.kst", "KST0ABC");
        row("posix path", "/levels/zkstlabc.kst", "KST0ABC");
        row("first of two marks", "c:\\zkstlold\\zkstlnew.kst", "KST0OLD");
        row("search is case-sensitive", "/ZKSTLxyz/zkstlabc.kst", "KST0ABC");
        row("upper-case mark not found", "/levels/ZKSTLABC.KST", "KST0   ");
        row("no mark at all", "/home/me/level.kst", "KST0   ");
        row("digits and signs kept", "/a/zkstl1-!.kst", "KST01-!");
        row("one character follows", "/a/zkstlq", "KST0Q  ");
        row("nothing follows", "/a/zkstl", "KST0   ");
        row("name runs over a separator", "/a/zkstlb/c.kst", "KST0B/C");
        row("latin-1 letter upper-cased", "/a/zkstl\u00e9xy.kst", "KST0\u00c9XY");
        row("sharp s keeps one character", "/a/zkstl\u00dfab.kst", "KST0\u00dfAB");
        row("y diaeresis has no latin-1 upper case", "/a/zkstl\u00ffab.kst", "KST0\u00ffAB");
        row("character outside the BMP counts once", "/a/zkstl\U0001F600ab.kst",
            "KST0\U0001F600AB");
    }
    void tag() {
        QFETCH(QString, path);
        QFETCH(QString, tag);
        QCOMPARE(levelsetTag(path), tag);
    }

    void fileNameRule_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<PathStyle>("style");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char *name, const QString &path, PathStyle style, bool valid) {
            QTest::newRow(name) << path << style << valid;
        };
        row("posix name", "/levels/zkstlabc.kst", Posix, true);
        row("posix upper-case name", "/levels/ZKSTLAbc.KST", Posix, true);
        row("posix root folder", "/zkstlabc.kst", Posix, true);
        row("posix backslash is no separator", "c:\\levels\\zkstlabc.kst", Posix, false);
        row("windows backslash", "c:\\levels\\zkstlabc.kst", Windows, true);
        row("windows slash", "c:/levels/zkstlabc.kst", Windows, true);
        row("windows upper case", "C:\\Levels\\ZKSTLAbc.KST", Windows, true);
        row("two name characters", "/levels/zkstlab.kst", Posix, false);
        row("four name characters", "/levels/zkstlabcd.kst", Posix, false);
        row("no mark", "/levels/abc.kst", Posix, false);
        row("no separator", "zkstlabc.kst", Posix, false);
        row("wrong extension", "/levels/zkstlabc.ksx", Posix, false);
        row("extension doubled", "/levels/zkstlabc.kst.kst", Posix, false);
        row("prefix before the mark", "/levels/xzkstlabc.kst", Posix, false);
        row("name characters may be anything", "/levels/zkstl. ..kst", Posix, true);
        row("valid folder, bad name", "/zkstlabc.kst/zkstlab.kst", Posix, false);
        row("separator inside the name part", "/levels/zkstla/b.kst", Posix, false);
        row("windows separator inside the name part", "c:\\zkstla\\b.kst", Windows, false);
        row("character outside the BMP is one character", "/l/zkstl\U0001F600ab.kst", Posix, true);
        row("empty", "", Posix, false);
    }
    void fileNameRule() {
        QFETCH(QString, path);
        QFETCH(PathStyle, style);
        QFETCH(bool, valid);
        QCOMPARE(isValidLevelsetFileName(path, style), valid);
    }

    void saveForm_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<PathStyle>("style");
        QTest::addColumn<QString>("saved");
        const auto row = [](const char *name, const QString &path, PathStyle style,
                            const QString &saved) {
            QTest::newRow(name) << path << style << saved;
        };
        row("posix folders keep their case", "/Home/Levels/ZKSTLAbc.KST", Posix,
            "/Home/Levels/zkstlabc.kst");
        row("posix backslash belongs to the name", "/Home/A\\ZKSTL.KST", Posix,
            "/Home/a\\zkstl.kst");
        row("windows whole path", "C:\\Levels\\ZKSTLXyz.KST", Windows, "c:\\levels\\zkstlxyz.kst");
        row("windows slash", "C:/Levels/ZKSTLXyz.KST", Windows, "c:/levels/zkstlxyz.kst");
        row("lower case unchanged", "/levels/zkstlabc.kst", Posix, "/levels/zkstlabc.kst");
        row("no separator", "ZKSTLABC.KST", Posix, "zkstlabc.kst");
        // Its full lower case is two characters, which would make the name fail the rule.
        row("dotted capital I stays one character", "/L/ZKSTL\u0130AB.KST", Posix,
            "/L/zkstl\u0130ab.kst");
    }
    void saveForm() {
        QFETCH(QString, path);
        QFETCH(PathStyle, style);
        QFETCH(QString, saved);
        QCOMPARE(saveFormOfPath(path, style), saved);
        QCOMPARE(isValidLevelsetFileName(saved, style), isValidLevelsetFileName(path, style));
        // Save of a levelset that has a path names the same file, so only where names ignore
        // case may it change the path.
        QCOMPARE(resavePath(path, style), style == Windows ? saved : path);
    }

    // Paths made of separators, name pieces, case variants and characters of every width.
    void randomPathsKeepTheRules() {
        const QStringList pieces = {"/",      "\\",     "zkstl",  "ZKSTL",  ".kst",
                                    ".KST",   "a",      "Q",      "7",      " ",
                                    "\u00e9", "\u00df", "\u0130", "\u20ac", "\U0001F600"};
        std::mt19937 generator(99u);
        for (int round = 0; round < 20000; ++round) {
            QString path;
            for (int i = int(generator() % 9); i > 0; --i)
                path += pieces[int(generator() % pieces.size())];
            const QString tag = levelsetTag(path);
            QVERIFY2(tag.startsWith("KST0") && tag.toUcs4().size() == LevelsetTagLength,
                     qPrintable(path));
            for (PathStyle style : {Posix, Windows}) {
                const QString saved = saveFormOfPath(path, style);
                QCOMPARE(saved.size(), path.size());
                QCOMPARE(saveFormOfPath(saved, style), saved);
                QCOMPARE(isValidLevelsetFileName(saved, style),
                         isValidLevelsetFileName(path, style));
            }
        }
    }
};

QTEST_APPLESS_MAIN(LevelsetModelTest)
#include "LevelsetModelTest.moc"
