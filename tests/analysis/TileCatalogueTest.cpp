#include "analysis/TileCatalogue.h"

#include <QTest>
#include <algorithm>

Q_DECLARE_METATYPE(TileGroup)

class TileCatalogueTest : public QObject {
    Q_OBJECT
private slots:
    void rowsAreOrderedAndDisjoint();
    void kinds_data();
    void kinds();
    void randomSetsMatchTheirGroups_data();
    void randomSetsMatchTheirGroups();
    void placeableRange();
};

void TileCatalogueTest::rowsAreOrderedAndDisjoint() {
    int previousLast = -1;
    for (const TileKind &kind : TileCatalogue) {
        QVERIFY2(kind.first > previousLast && kind.first <= kind.last && kind.last <= 255,
                 kind.name);
        QVERIFY(*kind.name);
        previousLast = kind.last;
    }
}

void TileCatalogueTest::kinds_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<TileGroup>("group");
    QTest::newRow("normal floor") << 0 << "floor of a Normal level" << TileGroup::Floor;
    QTest::newRow("hatchery floor") << 1 << "floor of a Hatchery level" << TileGroup::Floor;
    QTest::newRow("unlisted 2") << 2 << "" << TileGroup::None;
    QTest::newRow("outside") << 8 << "outside tile" << TileGroup::OutsideSet;
    QTest::newRow("inside") << 13 << "inside tile" << TileGroup::InsideSet;
    QTest::newRow("unlisted 14") << 14 << "" << TileGroup::None;
    QTest::newRow("white key") << 55 << "white key" << TileGroup::PickUp;
    QTest::newRow("credits 100") << 60 << "credits, worth 100" << TileGroup::PickUp;
    QTest::newRow("second hole picture") << 70 << "alien hole" << TileGroup::Enemy;
    QTest::newRow("guard") << 75 << "security guard" << TileGroup::Enemy;
    QTest::newRow("solid wall") << 89 << "solid wall" << TileGroup::WallSet;
    QTest::newRow("detailed wall") << 97 << "wall with white details" << TileGroup::WallSet;
    QTest::newRow("unlisted 98") << 98 << "" << TileGroup::None;
    QTest::newRow("lying normal door") << 169 << "normal door" << TileGroup::Door;
    QTest::newRow("upright black door") << 176 << "black door" << TileGroup::Door;
    QTest::newRow("first grey") << 178 << "no tile" << TileGroup::None;
    QTest::newRow("outside-level picture") << 255 << "no tile" << TileGroup::None;
    QTest::newRow("not a tile id") << 256 << "" << TileGroup::None;
}

void TileCatalogueTest::kinds() {
    QFETCH(int, id);
    QFETCH(QString, name);
    QFETCH(TileGroup, group);
    QCOMPARE(tileName(id), name);
    QCOMPARE(tileGroup(id), group);
}

void TileCatalogueTest::randomSetsMatchTheirGroups_data() {
    QTest::addColumn<QList<int>>("set");
    QTest::addColumn<TileGroup>("group");
    QTest::newRow("wall") << QList<int>(WallSet.begin(), WallSet.end()) << TileGroup::WallSet;
    QTest::newRow("inside") << QList<int>(InsideSet.begin(), InsideSet.end())
                            << TileGroup::InsideSet;
    QTest::newRow("outside") << QList<int>(OutsideSet.begin(), OutsideSet.end())
                             << TileGroup::OutsideSet;
}

// Each set holds exactly the ids its catalogue group lists.
void TileCatalogueTest::randomSetsMatchTheirGroups() {
    QFETCH(QList<int>, set);
    QFETCH(TileGroup, group);
    QList<int> grouped;
    for (int id = 0; id < 256; ++id)
        if (tileGroup(id) == group)
            grouped << id;
    QCOMPARE(set, grouped);
}

void TileCatalogueTest::placeableRange() {
    QVERIFY(isPlaceableTile(0));
    QVERIFY(isPlaceableTile(177));
    QVERIFY(!isPlaceableTile(178));
    QVERIFY(!isPlaceableTile(Tile::OutsideLevel));
    QVERIFY(!isPlaceableTile(-1));
}

QTEST_APPLESS_MAIN(TileCatalogueTest)
#include "TileCatalogueTest.moc"
