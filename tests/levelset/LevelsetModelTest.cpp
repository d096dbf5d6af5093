#include "levelset/Levelset.h"

#include <QTest>

class LevelsetModelTest : public QObject {
    Q_OBJECT
private slots:
    void resetGivesTheDefaultLevelset();
    void resetUndoesEverything();
    void passcodeSlots_data();
    void passcodeSlots();
    void cellsInTheLevel_data();
    void cellsInTheLevel();
    void windowTitle();
};

void LevelsetModelTest::resetGivesTheDefaultLevelset() {
    const Levelset levelset;
    QCOMPARE(levelset.levelCount, 1);
    QCOMPARE(levelset.currentLevel, 0);
    QCOMPARE(levelset.reserved1, 0);
    QCOMPARE(levelset.reserved2, 0);
    QCOMPARE(levelset.levelsetPath, QStringLiteral("Untitled"));
    for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
        QCOMPARE(levelset.passcode(slot), QStringLiteral("      "));
    const std::array<std::uint8_t, 16> header{8, 12, 0, 99, 1, 0, 2, 0, 89, 0, 0, 3, 11, 7, 0, 0};
    for (const LevelRecord &level : levelset.levels) {
        QCOMPARE(level.header, header);
        QVERIFY(std::all_of(level.tiles.begin(), level.tiles.end(), [](auto t) { return t == 0; }));
    }
}

void LevelsetModelTest::resetUndoesEverything() {
    Levelset levelset;
    levelset.levelCount = 5;
    levelset.currentLevel = 4;
    levelset.reserved1 = 9;
    levelset.reserved2 = 9;
    levelset.levelsetPath = QStringLiteral("/levels/zkstlabc.kst");
    levelset.storePasscode(3, QStringLiteral("SECRET"));
    for (LevelRecord &level : levelset.levels) {
        level.header.fill(33);
        level.tiles.fill(7);
    }
    levelset.reset();
    const Levelset fresh;
    QCOMPARE(levelset.levels, fresh.levels);
    QCOMPARE(levelset.passcodes, fresh.passcodes);
    QCOMPARE(levelset.levelCount, 1);
    QCOMPARE(levelset.currentLevel, 0);
    QCOMPARE(levelset.reserved1, 0);
    QCOMPARE(levelset.reserved2, 0);
    QCOMPARE(levelset.levelsetPath, UntitledPath);
}

void LevelsetModelTest::passcodeSlots_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<QByteArray>("held");
    QTest::newRow("short is padded") << "abc" << QByteArray("abc   ");
    QTest::newRow("long is cut") << "ABCDEFGH" << QByteArray("ABCDEF");
    QTest::newRow("empty is blanks") << "" << QByteArray("      ");
    QTest::newRow("exactly six") << "ZYXWVU" << QByteArray("ZYXWVU");
    QTest::newRow("latin-1 kept as one byte")
        << QString::fromUtf8("\xc3\x89T\xc3\x89") << QByteArray("\xc9T\xc9   ");
    QTest::newRow("no latin-1 form") << QString::fromUtf8("A\xe2\x82\xac"
                                                          "B")
                                     << QByteArray("A?B   ");
}

void LevelsetModelTest::passcodeSlots() {
    QFETCH(QString, given);
    QFETCH(QByteArray, held);
    Levelset levelset;
    levelset.storePasscode(6, given);
    QCOMPARE(QByteArray(levelset.passcodes[6].data(), 6), held);
    QCOMPARE(levelset.passcode(6), QString::fromLatin1(held));
    QCOMPARE(levelset.passcode(5), QStringLiteral("      ")); // its neighbour is untouched
}

void LevelsetModelTest::cellsInTheLevel_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("inside");
    QTest::newRow("top-left") << 0 << 0 << true;
    QTest::newRow("bottom-right") << 11 << 7 << true;
    QTest::newRow("right of the last column") << 12 << 0 << false;
    QTest::newRow("below the last row") << 0 << 8 << false;
    QTest::newRow("left of the view") << -1 << 0 << false;
    QTest::newRow("above the view") << 0 << -1 << false;
}

void LevelsetModelTest::cellsInTheLevel() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, inside);
    LevelRecord level;
    level.reset();
    QCOMPARE(level.contains(x, y), inside);
}

void LevelsetModelTest::windowTitle() {
    QCOMPARE(::windowTitle(UntitledPath), QStringLiteral("[Untitled] - Kestrix: Levelset Editor"));
    QCOMPARE(::windowTitle(QStringLiteral("/a/zkstlabc.kst")),
             QStringLiteral("[/a/zkstlabc.kst] - Kestrix: Levelset Editor"));
}

QTEST_APPLESS_MAIN(LevelsetModelTest)
#include "LevelsetModelTest.moc"
