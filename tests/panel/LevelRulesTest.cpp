#include "levels/ByteField.h"
#include "levels/LevelList.h"
#include "levels/LevelResize.h"
#include "levelset/Levelset.h"

#include <QTest>
#include <functional>

namespace {

using ListCommand = std::function<bool(Levelset &)>;
using ResizeCommand = std::function<bool(LevelRecord &)>;

} // namespace

Q_DECLARE_METATYPE(ListCommand)
Q_DECLARE_METATYPE(ResizeCommand)
Q_DECLARE_METATYPE(ByteField::Outcome)

class LevelRulesTest : public QObject {
    Q_OBJECT
private slots:
    void listCommands_data();
    void listCommands();
    void removeThenAddRestoresTheLevel();
    void levelLabel_data();
    void levelLabel();

    void resizeCommands_data();
    void resizeCommands();
    void resizeKeepsTilesAndPositions();

    void numberFieldReading_data();
    void numberFieldReading();
};

void LevelRulesTest::listCommands_data() {
    QTest::addColumn<ListCommand>("command");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("current");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<int>("countAfter");
    QTest::addColumn<int>("currentAfter");

    const ListCommand add = addLevel, remove = removeLevel, previous = previousLevel,
                      next = nextLevel;
    QTest::newRow("add to a fresh set") << add << 1 << 0 << true << 2 << 0;
    QTest::newRow("add the eighth level") << add << 7 << 3 << true << 8 << 3;
    QTest::newRow("add with eight levels") << add << 8 << 0 << false << 8 << 0;
    QTest::newRow("remove from a set of one") << remove << 1 << 0 << false << 1 << 0;
    QTest::newRow("remove while the last level is current") << remove << 3 << 2 << false << 3 << 2;
    QTest::newRow("remove the level after the current") << remove << 3 << 1 << true << 2 << 1;
    QTest::newRow("remove from a full set") << remove << 8 << 0 << true << 7 << 0;
    QTest::newRow("previous on the first level") << previous << 4 << 0 << false << 4 << 0;
    QTest::newRow("previous from the last level") << previous << 4 << 3 << true << 4 << 2;
    QTest::newRow("next on the last level") << next << 4 << 3 << false << 4 << 3;
    QTest::newRow("next on a set of one") << next << 1 << 0 << false << 1 << 0;
    QTest::newRow("next to the last level") << next << 4 << 2 << true << 4 << 3;
    QTest::newRow("next from the first of eight") << next << 8 << 0 << true << 8 << 1;
}

void LevelRulesTest::listCommands() {
    QFETCH(ListCommand, command);
    QFETCH(int, count);
    QFETCH(int, current);
    QFETCH(bool, changed);
    QFETCH(int, countAfter);
    QFETCH(int, currentAfter);
    Levelset levelset;
    levelset.levelCount = static_cast<std::uint8_t>(count);
    levelset.currentLevel = static_cast<std::int16_t>(current);

    QCOMPARE(command(levelset), changed);
    QCOMPARE(int(levelset.levelCount), countAfter);
    QCOMPARE(int(levelset.currentLevel), currentAfter);
}

void LevelRulesTest::removeThenAddRestoresTheLevel() {
    Levelset levelset;
    levelset.levelCount = 3;
    LevelRecord &third = levelset.levels[2];
    third.header[LevelRecord::Width] = 30;
    third.header[LevelRecord::Time] = 7;
    third.tile(29, 5) = 120;
    levelset.storePasscode(1, QStringLiteral("THIRD"));
    const LevelRecord before = third;

    QVERIFY(removeLevel(levelset));
    QCOMPARE(levelset.levelCount, std::uint8_t{2});
    QVERIFY(addLevel(levelset));
    QCOMPARE(levelset.levelCount, std::uint8_t{3});
    QVERIFY(levelset.levels[2].header == before.header);
    QVERIFY(levelset.levels[2].tiles == before.tiles);
    QCOMPARE(levelset.passcode(1), QStringLiteral("THIRD "));
}

void LevelRulesTest::levelLabel_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("current");
    QTest::addColumn<QString>("label");
    QTest::newRow("fresh") << 1 << 0 << "Level: 1 / 1";
    QTest::newRow("third of five") << 5 << 2 << "Level: 3 / 5";
    QTest::newRow("last of eight") << 8 << 7 << "Level: 8 / 8";
}

void LevelRulesTest::levelLabel() {
    QFETCH(int, count);
    QFETCH(int, current);
    QFETCH(QString, label);
    Levelset levelset;
    levelset.levelCount = static_cast<std::uint8_t>(count);
    levelset.currentLevel = static_cast<std::int16_t>(current);
    QCOMPARE(::levelLabel(levelset), label);
}

void LevelRulesTest::resizeCommands_data() {
    QTest::addColumn<ResizeCommand>("command");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<int>("widthAfter");
    QTest::addColumn<int>("heightAfter");

    const ResizeCommand dw = decreaseWidth, iw = increaseWidth, dh = decreaseHeight,
                        ih = increaseHeight;
    QTest::newRow("narrower at the minimum 12") << dw << 12 << 8 << false << 12 << 8;
    QTest::newRow("narrower from 13") << dw << 13 << 8 << true << 12 << 8;
    QTest::newRow("narrower from 32") << dw << 32 << 20 << true << 31 << 20;
    QTest::newRow("wider from 12") << iw << 12 << 8 << true << 13 << 8;
    QTest::newRow("wider from 31") << iw << 31 << 8 << true << 32 << 8;
    QTest::newRow("wider at the maximum 32") << iw << 32 << 8 << false << 32 << 8;
    QTest::newRow("lower at the minimum 8") << dh << 12 << 8 << false << 12 << 8;
    QTest::newRow("lower from 9") << dh << 12 << 9 << true << 12 << 8;
    QTest::newRow("lower at 12 rows, not the width minimum") << dh << 12 << 12 << true << 12 << 11;
    QTest::newRow("taller from 8") << ih << 12 << 8 << true << 12 << 9;
    QTest::newRow("taller at the maximum 32") << ih << 12 << 32 << false << 12 << 32;
    QTest::newRow("file width below minimum grows") << iw << 5 << 8 << true << 6 << 8;
    QTest::newRow("file width below minimum never shrinks") << dw << 5 << 8 << false << 5 << 8;
    QTest::newRow("file height 0 never shrinks") << dh << 12 << 0 << false << 12 << 0;
}

void LevelRulesTest::resizeCommands() {
    QFETCH(ResizeCommand, command);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(bool, changed);
    QFETCH(int, widthAfter);
    QFETCH(int, heightAfter);
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = static_cast<std::uint8_t>(width);
    level.header[LevelRecord::Height] = static_cast<std::uint8_t>(height);

    QCOMPARE(command(level), changed);
    QCOMPARE(level.width(), widthAfter);
    QCOMPARE(level.height(), heightAfter);
}

void LevelRulesTest::resizeKeepsTilesAndPositions() {
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = 20;
    level.header[LevelRecord::FinishX] = 19;
    level.tile(19, 2) = 77;
    LevelRecord expected = level;

    QVERIFY(decreaseWidth(level));
    QVERIFY(decreaseHeight(level) == false);
    expected.header[LevelRecord::Width] = 19;
    QVERIFY(level.header == expected.header);
    QVERIFY(level.tiles == expected.tiles);
}

void LevelRulesTest::numberFieldReading_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<ByteField::Outcome>("outcome");
    QTest::addColumn<int>("value");

    const auto ok = ByteField::Value;
    const auto badChar = ByteField::InvalidCharacter;
    const auto badValue = ByteField::InvalidValue;
    QTest::newRow("zero") << "0" << ok << 0;
    QTest::newRow("largest byte") << "255" << ok << 255;
    QTest::newRow("leading zeros") << "007" << ok << 7;
    QTest::newRow("blanks around") << "  42 " << ok << 42;
    QTest::newRow("plus sign") << "+12" << ok << 12;
    QTest::newRow("one past a byte") << "256" << badValue << 0;
    QTest::newRow("minus one") << "-1" << badValue << 0;
    QTest::newRow("smallest 16-bit") << "-32768" << badValue << 0;
    QTest::newRow("past 16-bit") << "32768" << badChar << 0;
    QTest::newRow("below 16-bit") << "-32769" << badChar << 0;
    QTest::newRow("many digits") << "99999999999999999999" << badChar << 0;
    QTest::newRow("empty") << "" << badChar << 0;
    QTest::newRow("lone minus") << "-" << badChar << 0;
    QTest::newRow("letter") << "x" << badChar << 0;
    QTest::newRow("digits then letter") << "12a" << badChar << 0;
    QTest::newRow("blank inside") << "1 2" << badChar << 0;
    QTest::newRow("blank after sign") << "- 1" << badChar << 0;
    QTest::newRow("fraction") << "1.5" << badChar << 0;
    QTest::newRow("hexadecimal") << "&H10" << badChar << 0;
    QTest::newRow("non-Latin digit") << QString::fromUtf8("\u0661") << badChar << 0;
}

void LevelRulesTest::numberFieldReading() {
    QFETCH(QString, text);
    QFETCH(ByteField::Outcome, outcome);
    QFETCH(int, value);
    const ByteField field = ByteField::read(text);
    QCOMPARE(field.outcome, outcome);
    if (outcome == ByteField::Value)
        QCOMPARE(int(field.value), value);
}

QTEST_GUILESS_MAIN(LevelRulesTest)
#include "LevelRulesTest.moc"
