#include "analysis/HolesAndGuards.h"
#include "levelset/Levelset.h"

#include <QTest>

namespace {

// Places the tiles in level index, row by row from the top-left cell.
void place(Levelset &levelset, int index, const QList<int> &tiles) {
    LevelRecord &level = levelset.levels[index];
    for (int i = 0; i < tiles.size(); ++i)
        level.tile(i % level.width(), i / level.width()) = std::uint8_t(tiles[i]);
}

QList<int> times(int count, int tile) {
    return QList<int>(count, tile);
}

} // namespace

class HolesAndGuardsTest : public QObject {
    Q_OBJECT
private slots:
    void check_data();
    void check();
    void cellsOutsideTheLevelAreNotCounted();
    void message();
};

void HolesAndGuardsTest::check_data() {
    QTest::addColumn<int>("levelCount");
    QTest::addColumn<QList<QList<int>>>("levels"); // tiles per level index
    QTest::addColumn<int>("result");

    using Levels = QList<QList<int>>;
    const QList<int> limit = times(10, 69) + times(5, 75);
    QTest::newRow("fresh levelset") << 1 << Levels{} << 0;
    QTest::newRow("exactly 10 holes and 5 guards") << 1 << Levels{limit} << 0;
    QTest::newRow("11th hole") << 1 << Levels{limit + QList<int>{70}} << 1;
    QTest::newRow("6th guard") << 1 << Levels{limit + QList<int>{75}} << 1;
    QTest::newRow("6 x 69 and 5 x 70") << 1 << Levels{times(6, 69) + times(5, 70)} << 1;
    QTest::newRow("5 x 69 and 5 x 70") << 1 << Levels{times(5, 69) + times(5, 70)} << 0;
    QTest::newRow("limits are per level") << 8 << Levels(8, times(10, 69) + times(5, 75)) << 0;
    QTest::newRow("levels 2 and 5 fail: level 2 named")
        << 5 << Levels{{}, times(11, 69), {}, {}, times(6, 75)} << 2;
    QTest::newRow("last of eight levels")
        << 8 << Levels{{}, {}, {}, {}, {}, {}, {}, times(6, 75)} << 8;
    QTest::newRow("level beyond the count ignored") << 2 << Levels{{}, {}, times(20, 69)} << 0;
    QTest::newRow("other tiles are neither")
        << 1 << Levels{times(40, 68) + times(40, 71) + times(16, 74)} << 0;
}

void HolesAndGuardsTest::check() {
    QFETCH(int, levelCount);
    QFETCH(QList<QList<int>>, levels);
    QFETCH(int, result);
    Levelset levelset;
    levelset.levelCount = std::uint8_t(levelCount);
    for (int i = 0; i < levels.size(); ++i)
        place(levelset, i, levels[i]);
    QCOMPARE(checkHolesAndGuards(levelset), result);
}

void HolesAndGuardsTest::cellsOutsideTheLevelAreNotCounted() {
    Levelset levelset;
    LevelRecord &level = levelset.levels[0];
    for (int y = 0; y < 8; ++y)
        level.tile(12, y) = 69; // the column just right of the level
    for (int y = 0; y < 3; ++y)
        level.tile(0, 8 + y) = 70; // rows just below it
    level.tile(31, 31) = 75;
    QCOMPARE(checkHolesAndGuards(levelset), 0);

    level.header[LevelRecord::Width] = 13;
    QCOMPARE(checkHolesAndGuards(levelset), 0); // 8 holes
    level.header[LevelRecord::Height] = 11;
    QCOMPARE(checkHolesAndGuards(levelset), 1); // 11 holes
}

void HolesAndGuardsTest::message() {
    QCOMPARE(holesAndGuardsMessage(3),
             QStringLiteral("Either too many Alien Holes or Security Guards on Level 3"));
    QCOMPARE(holesAndGuardsMessage(8).right(2), QStringLiteral(" 8"));
    QCOMPARE(HolesAndGuardsTitle, QStringLiteral("Error!"));
}

QTEST_APPLESS_MAIN(HolesAndGuardsTest)
#include "HolesAndGuardsTest.moc"
