#include "levelset/LevelsetName.h"

#include <QTest>
#include <random>

Q_DECLARE_METATYPE(PathStyle)

class LevelsetNameTest : public QObject {
    Q_OBJECT
private slots:
    void tag_data();
    void tag();
    void fileNameRule_data();
    void fileNameRule();
    void saveForm_data();
    void saveForm();
    void randomPathsKeepTheRules();
};

void LevelsetNameTest::tag_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("tag");
    QTest::newRow("windows path") << "c:\\levels\\zkstlabc.kst"
                                  << "KST0ABC";
    QTest::newRow("posix path") << "/levels/zkstlabc.kst"
                                << "KST0ABC";
    QTest::newRow("first of two marks") << "c:\\zkstlold\\zkstlnew.kst"
                                        << "KST0OLD";
    QTest::newRow("search is case-sensitive") << "/ZKSTLxyz/zkstlabc.kst"
                                              << "KST0ABC";
    QTest::newRow("upper-case mark not found") << "/levels/ZKSTLABC.KST"
                                               << "KST0   ";
    QTest::newRow("no mark at all") << "/home/me/level.kst"
                                    << "KST0   ";
    QTest::newRow("digits and signs kept") << "/a/zkstl1-!.kst"
                                           << "KST01-!";
    QTest::newRow("one character follows") << "/a/zkstlq"
                                           << "KST0Q  ";
    QTest::newRow("nothing follows") << "/a/zkstl"
                                     << "KST0   ";
    QTest::newRow("name runs over a separator") << "/a/zkstlb/c.kst"
                                                << "KST0B/C";
    QTest::newRow("latin-1 letter upper-cased")
        << QString::fromUtf8("/a/zkstl\xc3\xa9xy.kst") << QString::fromUtf8("KST0\xc3\x89XY");
    QTest::newRow("sharp s keeps one character") << QString::fromUtf8("/a/zkstl\xc3\x9f"
                                                                      "ab.kst")
                                                 << QString::fromUtf8("KST0\xc3\x9f"
                                                                      "AB");
    QTest::newRow("y diaeresis has no latin-1 upper case") << QString::fromUtf8("/a/zkstl\xc3\xbf"
                                                                                "ab.kst")
                                                           << QString::fromUtf8("KST0\xc3\xbf"
                                                                                "AB");
    QTest::newRow("character outside the BMP counts once")
        << QString::fromUtf8("/a/zkstl\xf0\x9f\x98\x80"
                             "ab.kst")
        << QString::fromUtf8("KST0\xf0\x9f\x98\x80"
                             "AB");
}

void LevelsetNameTest::tag() {
    QFETCH(QString, path);
    QFETCH(QString, tag);
    QCOMPARE(levelsetTag(path), tag);
}

void LevelsetNameTest::fileNameRule_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<PathStyle>("style");
    QTest::addColumn<bool>("valid");
    const PathStyle posix = PathStyle::Posix;
    const PathStyle windows = PathStyle::Windows;
    QTest::newRow("posix name") << "/levels/zkstlabc.kst" << posix << true;
    QTest::newRow("posix upper-case name") << "/levels/ZKSTLAbc.KST" << posix << true;
    QTest::newRow("posix root folder") << "/zkstlabc.kst" << posix << true;
    QTest::newRow("posix backslash is no separator")
        << "c:\\levels\\zkstlabc.kst" << posix << false;
    QTest::newRow("windows backslash") << "c:\\levels\\zkstlabc.kst" << windows << true;
    QTest::newRow("windows slash") << "c:/levels/zkstlabc.kst" << windows << true;
    QTest::newRow("windows upper case") << "C:\\Levels\\ZKSTLAbc.KST" << windows << true;
    QTest::newRow("two name characters") << "/levels/zkstlab.kst" << posix << false;
    QTest::newRow("four name characters") << "/levels/zkstlabcd.kst" << posix << false;
    QTest::newRow("no mark") << "/levels/abc.kst" << posix << false;
    QTest::newRow("no separator") << "zkstlabc.kst" << posix << false;
    QTest::newRow("wrong extension") << "/levels/zkstlabc.ksx" << posix << false;
    QTest::newRow("extension doubled") << "/levels/zkstlabc.kst.kst" << posix << false;
    QTest::newRow("prefix before the mark") << "/levels/xzkstlabc.kst" << posix << false;
    QTest::newRow("name characters may be anything") << "/levels/zkstl. ..kst" << posix << true;
    QTest::newRow("valid folder, bad name") << "/zkstlabc.kst/zkstlab.kst" << posix << false;
    QTest::newRow("separator inside the name part") << "/levels/zkstla/b.kst" << posix << false;
    QTest::newRow("windows separator inside the name part")
        << "c:\\zkstla\\b.kst" << windows << false;
    QTest::newRow("character outside the BMP is one character")
        << QString::fromUtf8("/l/zkstl\xf0\x9f\x98\x80"
                             "ab.kst")
        << posix << true;
    QTest::newRow("empty") << "" << posix << false;
}

void LevelsetNameTest::fileNameRule() {
    QFETCH(QString, path);
    QFETCH(PathStyle, style);
    QFETCH(bool, valid);
    QCOMPARE(isValidLevelsetFileName(path, style), valid);
}

void LevelsetNameTest::saveForm_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<PathStyle>("style");
    QTest::addColumn<QString>("saved");
    QTest::newRow("posix folders keep their case")
        << "/Home/Levels/ZKSTLAbc.KST" << PathStyle::Posix << "/Home/Levels/zkstlabc.kst";
    QTest::newRow("posix backslash belongs to the name")
        << "/Home/A\\ZKSTL.KST" << PathStyle::Posix << "/Home/a\\zkstl.kst";
    QTest::newRow("windows whole path")
        << "C:\\Levels\\ZKSTLXyz.KST" << PathStyle::Windows << "c:\\levels\\zkstlxyz.kst";
    QTest::newRow("windows slash")
        << "C:/Levels/ZKSTLXyz.KST" << PathStyle::Windows << "c:/levels/zkstlxyz.kst";
    QTest::newRow("lower case unchanged")
        << "/levels/zkstlabc.kst" << PathStyle::Posix << "/levels/zkstlabc.kst";
    QTest::newRow("no separator") << "ZKSTLABC.KST" << PathStyle::Posix << "zkstlabc.kst";
    // Its full lower case is two characters, which would make the name fail the rule.
    QTest::newRow("dotted capital I stays one character") << QString::fromUtf8("/L/ZKSTL\xc4\xb0"
                                                                               "AB.KST")
                                                          << PathStyle::Posix
                                                          << QString::fromUtf8("/L/zkstl\xc4\xb0"
                                                                               "ab.kst");
}

void LevelsetNameTest::saveForm() {
    QFETCH(QString, path);
    QFETCH(PathStyle, style);
    QFETCH(QString, saved);
    QCOMPARE(saveFormOfPath(path, style), saved);
    // The form a save writes must pass the rule whenever the chosen path did.
    QCOMPARE(isValidLevelsetFileName(saveFormOfPath(path, style), style),
             isValidLevelsetFileName(path, style));
}

// Paths made of separators, name pieces, case variants and characters of every width.
void LevelsetNameTest::randomPathsKeepTheRules() {
    const QStringList pieces = {"/",
                                "\\",
                                "zkstl",
                                "ZKSTL",
                                ".kst",
                                ".KST",
                                "a",
                                "Q",
                                "7",
                                " ",
                                QString::fromUtf8("\xc3\xa9"),
                                QString::fromUtf8("\xc3\x9f"),
                                QString::fromUtf8("\xc4\xb0"),
                                QString::fromUtf8("\xe2\x82\xac"),
                                QString::fromUtf8("\xf0\x9f\x98\x80")};
    std::mt19937 generator(99u);
    for (int round = 0; round < 20000; ++round) {
        QString path;
        const int length = int(generator() % 9);
        for (int i = 0; i < length; ++i)
            path += pieces[int(generator() % pieces.size())];
        const QString tag = levelsetTag(path);
        QVERIFY2(tag.startsWith("KST0") && tag.toUcs4().size() == LevelsetTagLength,
                 qPrintable(path));
        for (PathStyle style : {PathStyle::Posix, PathStyle::Windows}) {
            const QString saved = saveFormOfPath(path, style);
            QCOMPARE(saved.size(), path.size());
            QCOMPARE(saveFormOfPath(saved, style), saved);
            QCOMPARE(isValidLevelsetFileName(saved, style), isValidLevelsetFileName(path, style));
        }
    }
}

QTEST_APPLESS_MAIN(LevelsetNameTest)
#include "LevelsetNameTest.moc"
