#include "analysis/HolesAndGuards.h"
#include "analysis/ObjectCounts.h"
#include "analysis/TileCatalogue.h"
#include "levelset/Levelset.h"

#include <QTest>
#include <functional>

using Counter = std::function<CountReport(const LevelRecord &)>;
Q_DECLARE_METATYPE(TileGroup)
Q_DECLARE_METATYPE(LevelRecord)
Q_DECLARE_METATYPE(Levelset)

namespace {

QList<int> times(int count, int tile) {
    return QList<int>(count, tile);
}

// A default level resized to width x height, filled with tiles row by row from the top-left.
LevelRecord levelWith(const QList<int> &tiles, int width = 12, int height = 8) {
    LevelRecord level = Levelset().levels[0];
    level.header[LevelRecord::Width] = std::uint8_t(width);
    level.header[LevelRecord::Height] = std::uint8_t(height);
    for (int i = 0; i < tiles.size(); ++i)
        level.tile(i % width, i / width) = std::uint8_t(tiles[i]);
    return level;
}

// A level of width x height holding tile in every cell outside the first 12 x 8 and in its
// last one, so that a count one column or row too far sees at least 8 more.
LevelRecord edgesOf12x8(int tile, int width, int height) {
    LevelRecord level = levelWith({}, width, height);
    for (int x = 0; x < LevelRecord::GridSize; ++x)
        for (int y = 0; y < LevelRecord::GridSize; ++y)
            if (x >= 12 || y >= 8 || (x == 11 && y == 7))
                level.tile(x, y) = std::uint8_t(tile);
    return level;
}

Levelset levelsetOf(int count, const QList<LevelRecord> &levels) {
    Levelset levelset;
    levelset.levelCount = std::uint8_t(count);
    std::copy(levels.begin(), levels.end(), levelset.levels.begin());
    return levelset;
}

Levelset levelsetOf(int count, const QList<QList<int>> &tiles) {
    QList<LevelRecord> levels;
    for (const QList<int> &level : tiles)
        levels << levelWith(level);
    return levelsetOf(count, levels);
}

QStringList nonZeroLines(const CountReport &report) {
    QStringList lines = report.text.split(QLatin1Char('\r'));
    lines.removeIf([](const QString &line) { return line.endsWith(QLatin1String(": 0")); });
    return lines;
}

} // namespace

class AnalysisTest : public QObject {
    Q_OBJECT
private slots:
    void tileKinds_data() {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<TileGroup>("group");
        QTest::addColumn<bool>("placeable");
        using G = TileGroup;
        QTest::newRow("normal floor") << 0 << "floor of a Normal level" << G::Floor << true;
        QTest::newRow("hatchery floor") << 1 << "floor of a Hatchery level" << G::Floor << true;
        QTest::newRow("unlisted 2") << 2 << "" << G::None << true;
        QTest::newRow("outside") << 8 << "outside tile" << G::OutsideSet << true;
        QTest::newRow("inside") << 13 << "inside tile" << G::InsideSet << true;
        QTest::newRow("unlisted 14") << 14 << "" << G::None << true;
        QTest::newRow("white key") << 55 << "white key" << G::PickUp << true;
        QTest::newRow("credits 100") << 60 << "credits, worth 100" << G::PickUp << true;
        QTest::newRow("second hole picture") << 70 << "alien hole" << G::Enemy << true;
        QTest::newRow("guard") << 75 << "security guard" << G::Enemy << true;
        QTest::newRow("solid wall") << 89 << "solid wall" << G::WallSet << true;
        QTest::newRow("detailed wall") << 97 << "wall with white details" << G::WallSet << true;
        QTest::newRow("unlisted 98") << 98 << "" << G::None << true;
        QTest::newRow("lying normal door") << 169 << "normal door" << G::Door << true;
        QTest::newRow("upright black door") << 176 << "black door" << G::Door << true;
        QTest::newRow("last placeable id") << 177 << "black door" << G::Door << true;
        QTest::newRow("first grey") << 178 << "no tile" << G::None << false;
        QTest::newRow("outside-level picture") << 255 << "no tile" << G::None << false;
        QTest::newRow("not a tile id") << 256 << "" << G::None << false;
        QTest::newRow("negative") << -1 << "" << G::None << false;
    }
    void tileKinds() {
        QFETCH(int, id);
        QFETCH(QString, name);
        QFETCH(TileGroup, group);
        QFETCH(bool, placeable);
        QCOMPARE(tileName(id), name);
        QCOMPARE(tileGroup(id), group);
        QCOMPARE(isPlaceableTile(id), placeable);
    }

    // The catalogue's rows run upward without overlap, and each random set holds exactly the
    // ids its group lists.
    void catalogueIsConsistent() {
        int previousLast = -1;
        for (const TileKind &kind : TileCatalogue) {
            QVERIFY2(kind.first > previousLast && kind.first <= kind.last && kind.last <= 255,
                     kind.name);
            QVERIFY(*kind.name);
            previousLast = kind.last;
        }
        const auto verifySet = [](const auto &set, TileGroup group) {
            QList<int> grouped;
            for (int id = 0; id < 256; ++id)
                if (tileGroup(id) == group)
                    grouped << id;
            QCOMPARE(QList<int>(set.begin(), set.end()), grouped);
        };
        verifySet(WallSet, TileGroup::WallSet);
        verifySet(InsideSet, TileGroup::InsideSet);
        verifySet(OutsideSet, TileGroup::OutsideSet);
    }

    // The one line of the report that is not zero, or none.
    void countReports_data() {
        QTest::addColumn<Counter>("counter");
        QTest::addColumn<LevelRecord>("level");
        QTest::addColumn<QStringList>("lines");
        const Counter doors = countDoors, enemies = countEnemies, pickups = countPickups;
        const auto row = [](const char *name, const Counter &counter, const LevelRecord &level,
                            const QString &line) {
            QTest::newRow(name) << counter << level
                                << (line.isEmpty() ? QStringList() : QStringList{line});
        };
        row("both normal bars", doors, levelWith({168, 169}), "Normal Doors: 2");
        row("security", doors, levelWith({170, 171, 171}), "Security Doors: 3");
        row("white", doors, levelWith({173}), "White Doors: 1");
        row("checkered", doors, levelWith({174, 0, 175}), "Checkered Doors: 2");
        row("black", doors, levelWith({176, 177, 176, 177}), "Black Doors: 4");
        row("neighbours are no doors", doors, levelWith({167, 178, 255}), "");
        row("doors outside the level", doors, edgesOf12x8(168, 12, 8), "Normal Doors: 1");
        row("one column wider", doors, edgesOf12x8(168, 13, 8), "Normal Doors: 9");
        row("the whole grid", doors, edgesOf12x8(168, 32, 32), "Normal Doors: 929");
        row("both hole pictures", enemies, levelWith({69, 70}), "Holes: 2");
        row("worms", enemies, levelWith({71, 71, 71}), "Worms: 3");
        row("face hugger", enemies, levelWith({72}), "Face Huggers: 1");
        row("normal alien", enemies, levelWith({73, 73}), "Normal Aliens: 2");
        row("strong alien", enemies, levelWith({74}), "Strong Aliens: 1");
        row("guards", enemies, levelWith(times(6, 75)), "Security Guards: 6");
        row("neighbours are no enemies", enemies, levelWith({68, 76}), "");
        row("credits add their worth", pickups, levelWith({60, 59, 59}), "Credits: 120");
        row("one large credit", pickups, levelWith({60}), "Credits: 100");
        row("one small credit", pickups, levelWith({59}), "Credits: 10");
        row("full grid of large credits", pickups, levelWith(times(1024, 60), 32, 32),
            "Credits: 102400");
        row("ammo counts 20 a tile", pickups, levelWith({58, 58, 58}), "Ammo: 60");
        row("key passes", pickups, levelWith({54, 54}), "Key Passes: 2");
        row("white keys", pickups, levelWith({55}), "White Keys: 1");
        row("checkered keys", pickups, levelWith({56}), "Checkered Keys: 1");
        row("black keys", pickups, levelWith({57, 57, 57}), "Black Keys: 3");
        row("first aids", pickups, levelWith({61}), "First Aids: 1");
        row("invincibilities", pickups, levelWith({62, 62}), "Invincibilities: 2");
        row("extra lives", pickups, levelWith({63}), "Extra Lives: 1");
        row("neighbours are no pick-ups", pickups, levelWith({53, 64}), "");
    }
    void countReports() {
        QFETCH(Counter, counter);
        QFETCH(LevelRecord, level);
        QFETCH(QStringList, lines);
        QCOMPARE(nonZeroLines(counter(level)), lines);
    }

    // A tile of a report's group adds to exactly one of its lines; any other id adds nothing.
    void everyIdCountsOnlyInItsOwnGroup() {
        const std::pair<Counter, TileGroup> reports[] = {{countDoors, TileGroup::Door},
                                                         {countEnemies, TileGroup::Enemy},
                                                         {countPickups, TileGroup::PickUp}};
        for (int id = 0; id < 256; ++id)
            for (const auto &[counter, group] : reports)
                QVERIFY2(nonZeroLines(counter(levelWith({id}))).size() == (tileGroup(id) == group),
                         qPrintable(QString::number(id)));
    }

    void holesAndGuards_data() {
        QTest::addColumn<Levelset>("levelset");
        QTest::addColumn<int>("result");
        using Levels = QList<QList<int>>;
        const QList<int> limit = times(10, 69) + times(5, 75);
        const auto edges = [](int tile, int width, int height) {
            return levelsetOf(1, QList<LevelRecord>{edgesOf12x8(tile, width, height)});
        };
        const auto row = [](const char *name, int count, const Levels &tiles, int result) {
            QTest::newRow(name) << levelsetOf(count, tiles) << result;
        };
        row("fresh levelset", 1, {}, 0);
        row("exactly 10 holes and 5 guards", 1, {limit}, 0);
        row("11th hole", 1, {limit + QList<int>{70}}, 1);
        row("6th guard", 1, {limit + QList<int>{75}}, 1);
        row("6 x 69 and 5 x 70", 1, {times(6, 69) + times(5, 70)}, 1);
        row("5 x 69 and 5 x 70", 1, {times(5, 69) + times(5, 70)}, 0);
        row("limits are per level", 8, Levels(8, limit), 0);
        row("levels 2 and 5 fail: level 2 named", 5, {{}, times(11, 69), {}, {}, times(6, 75)}, 2);
        row("last of eight levels", 8, {{}, {}, {}, {}, {}, {}, {}, times(6, 75)}, 8);
        row("level beyond the count ignored", 2, {{}, {}, times(20, 69)}, 0);
        row("other tiles are neither", 1, {times(40, 68) + times(40, 71) + times(16, 74)}, 0);
        QTest::newRow("guards outside the level ignored") << edges(75, 12, 8) << 0;
        QTest::newRow("9 guards in a level one column wider") << edges(75, 13, 8) << 1;
        QTest::newRow("9 holes in a level one column wider") << edges(69, 13, 8) << 0;
        QTest::newRow("13 holes in a level one row higher") << edges(69, 12, 9) << 1;
    }

    void holesAndGuards() {
        QFETCH(Levelset, levelset);
        QFETCH(int, result);
        QCOMPARE(checkHolesAndGuards(levelset), result);
    }
};

QTEST_APPLESS_MAIN(AnalysisTest)
#include "AnalysisTest.moc"
