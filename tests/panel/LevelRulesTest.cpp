#include "levels/ByteField.h"
#include "levels/LevelList.h"
#include "levels/LevelResize.h"
#include "levelset/Levelset.h"

#include <QSize>
#include <QTest>
#include <functional>

namespace {

using ListCommand = std::function<bool(Levelset &)>;
using ResizeCommand = std::function<bool(LevelRecord &)>;

} // namespace

Q_DECLARE_METATYPE(ListCommand)
Q_DECLARE_METATYPE(ResizeCommand)

class LevelRulesTest : public QObject {
    Q_OBJECT
private slots:
    void listCommandsAsTheLabelShowsThem_data() {
        QTest::addColumn<ListCommand>("command");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("current");
        QTest::addColumn<bool>("changed");
        QTest::addColumn<QString>("label"); // after the command

        const ListCommand add = addLevel, remove = removeLevel, previous = previousLevel,
                          next = nextLevel;
        QTest::newRow("add to a fresh set") << add << 1 << 0 << true << "Level: 1 / 2";
        QTest::newRow("add the eighth level") << add << 7 << 3 << true << "Level: 4 / 8";
        QTest::newRow("add with eight levels") << add << 8 << 0 << false << "Level: 1 / 8";
        QTest::newRow("remove from a set of one") << remove << 1 << 0 << false << "Level: 1 / 1";
        QTest::newRow("remove the current last") << remove << 3 << 2 << false << "Level: 3 / 3";
        QTest::newRow("remove after the current") << remove << 3 << 1 << true << "Level: 2 / 2";
        QTest::newRow("remove from a full set") << remove << 8 << 0 << true << "Level: 1 / 7";
        QTest::newRow("previous on the first") << previous << 4 << 0 << false << "Level: 1 / 4";
        QTest::newRow("previous from the last") << previous << 4 << 3 << true << "Level: 3 / 4";
        QTest::newRow("next on the last level") << next << 4 << 3 << false << "Level: 4 / 4";
        QTest::newRow("next on a set of one") << next << 1 << 0 << false << "Level: 1 / 1";
        QTest::newRow("next to the last level") << next << 4 << 2 << true << "Level: 4 / 4";
        QTest::newRow("next from the first of eight") << next << 8 << 0 << true << "Level: 2 / 8";
    }

    void listCommandsAsTheLabelShowsThem() {
        QFETCH(ListCommand, command);
        QFETCH(int, count);
        QFETCH(int, current);
        QFETCH(bool, changed);
        QFETCH(QString, label);
        Levelset levelset;
        levelset.levelCount = static_cast<std::uint8_t>(count);
        levelset.currentLevel = static_cast<std::int16_t>(current);
        // Records and passcodes outside the set too: a dropped level comes back as it was.
        for (int i = 0; i < Levelset::MaxLevels; ++i)
            levelset.levels[i].tile(i, 5) = static_cast<std::uint8_t>(100 + i);
        for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
            levelset.storePasscode(slot, QStringLiteral("CODE%1").arg(slot));
        const Levelset before = levelset;

        QCOMPARE(command(levelset), changed);
        QCOMPARE(levelLabel(levelset), label);
        QVERIFY(levelset.levels == before.levels);
        QVERIFY(levelset.passcodes == before.passcodes);
    }

    void resizeCommands_data() {
        QTest::addColumn<ResizeCommand>("command");
        QTest::addColumn<QSize>("size"); // width x height
        QTest::addColumn<QSize>("sizeAfter");

        const ResizeCommand dw = decreaseWidth, iw = increaseWidth, dh = decreaseHeight,
                            ih = increaseHeight;
        QTest::newRow("narrower at the minimum 12") << dw << QSize(12, 8) << QSize(12, 8);
        QTest::newRow("narrower from 13") << dw << QSize(13, 8) << QSize(12, 8);
        QTest::newRow("narrower from 32") << dw << QSize(32, 20) << QSize(31, 20);
        QTest::newRow("wider from 12") << iw << QSize(12, 8) << QSize(13, 8);
        QTest::newRow("wider from 31") << iw << QSize(31, 8) << QSize(32, 8);
        QTest::newRow("wider at the maximum 32") << iw << QSize(32, 8) << QSize(32, 8);
        QTest::newRow("lower at the minimum 8") << dh << QSize(12, 8) << QSize(12, 8);
        QTest::newRow("lower from 9") << dh << QSize(12, 9) << QSize(12, 8);
        QTest::newRow("lower at 12 rows, not width's 12") << dh << QSize(12, 12) << QSize(12, 11);
        QTest::newRow("taller from 8") << ih << QSize(12, 8) << QSize(12, 9);
        QTest::newRow("taller at the maximum 32") << ih << QSize(12, 32) << QSize(12, 32);
        QTest::newRow("file width 5 grows") << iw << QSize(5, 8) << QSize(6, 8);
        QTest::newRow("file width 5 never shrinks") << dw << QSize(5, 8) << QSize(5, 8);
        QTest::newRow("file height 0 never shrinks") << dh << QSize(12, 0) << QSize(12, 0);
    }

    void resizeCommands() {
        QFETCH(ResizeCommand, command);
        QFETCH(QSize, size);
        QFETCH(QSize, sizeAfter);
        LevelRecord level;
        level.reset();
        level.header[LevelRecord::Width] = static_cast<std::uint8_t>(size.width());
        level.header[LevelRecord::Height] = static_cast<std::uint8_t>(size.height());
        // Cells and a finish beyond any edge: they are kept, not cleared or clamped.
        for (int i = 0; i < 32; ++i)
            level.tile(i, 31 - i) = static_cast<std::uint8_t>(i + 1);
        level.header[LevelRecord::FinishX] = 31;
        level.header[LevelRecord::FinishY] = 31;
        LevelRecord expected = level;
        expected.header[LevelRecord::Width] = static_cast<std::uint8_t>(sizeAfter.width());
        expected.header[LevelRecord::Height] = static_cast<std::uint8_t>(sizeAfter.height());

        QCOMPARE(command(level), sizeAfter != size); // true when the size changed
        QCOMPARE(QSize(level.width(), level.height()), sizeAfter);
        QVERIFY(level == expected);
    }

    void numberFieldReading_data() {
        QTest::addColumn<QString>("text");
        // The byte, or which message it gives. The panel's tests type 255, 256, -1, - and x.
        QTest::addColumn<QString>("reading");
        const auto row = [](const char *name, const QString &text, const char *reading) {
            QTest::newRow(name) << text << QString::fromLatin1(reading);
        };
        row("zero", "0", "0");
        row("leading zeros", "007", "7");
        row("blanks around", "  42 ", "42");
        row("plus sign", "+12", "12");
        row("smallest 16-bit", "-32768", "value");
        row("past 16-bit", "32768", "character");
        row("below 16-bit", "-32769", "character");
        row("many digits", "99999999999999999999", "character");
        row("empty", "", "character");
        row("digits then letter", "12a", "character");
        row("blank inside", "1 2", "character");
        row("blank after sign", "- 1", "character");
        row("fraction", "1.5", "character");
        row("hexadecimal", "&H10", "character");
        row("non-Latin digit", QString::fromUtf8("\u0661"), "character");
    }

    void numberFieldReading() {
        QFETCH(QString, text);
        QFETCH(QString, reading);
        const ByteField field = ByteField::read(text);
        QCOMPARE(field.outcome == ByteField::Value          ? QString::number(field.value)
                 : field.outcome == ByteField::InvalidValue ? QStringLiteral("value")
                                                            : QStringLiteral("character"),
                 reading);
    }
};

QTEST_GUILESS_MAIN(LevelRulesTest)
#include "LevelRulesTest.moc"
