#include "analysis/ObjectCounts.h"
#include "analysis/TileCatalogue.h"
#include "levelset/LevelRecord.h"

#include <QTest>
#include <functional>

namespace {

using Counter = std::function<CountReport(const LevelRecord &)>;

LevelRecord defaultLevel() {
    LevelRecord level;
    level.reset();
    return level;
}

// Places the tiles in the default 12 x 8 level, row by row from the top-left cell.
LevelRecord levelWith(const QList<int> &tiles) {
    LevelRecord level = defaultLevel();
    for (int i = 0; i < tiles.size(); ++i)
        level.tile(i % level.width(), i / level.width()) = std::uint8_t(tiles[i]);
    return level;
}

QStringList lines(const CountReport &report) {
    return report.text.split(QLatin1Char('\r'));
}

void verifyOnlyLine(const CountReport &report, const QString &line) {
    const QStringList all = lines(report);
    QVERIFY2(all.contains(line), qPrintable(report.text));
    for (const QString &other : all)
        if (other != line)
            QVERIFY2(other.endsWith(QLatin1String(": 0")), qPrintable(other));
}

} // namespace

class ObjectCountsTest : public QObject {
    Q_OBJECT
private slots:
    void doors_data();
    void doors();
    void enemies_data();
    void enemies();
    void pickups_data();
    void pickups();
    void emptyLevelTexts_data();
    void emptyLevelTexts();
    void cellsOutsideTheLevelAreIgnored();
    void fullLevelOfLargeCredits();
    void everyIdCountsOnlyInItsOwnGroup();
};

void ObjectCountsTest::doors_data() {
    QTest::addColumn<QList<int>>("tiles");
    QTest::addColumn<QString>("line");
    QTest::newRow("both normal bars") << QList<int>{168, 169} << "Normal Doors: 2";
    QTest::newRow("security") << QList<int>{170, 171, 171} << "Security Doors: 3";
    QTest::newRow("white") << QList<int>{173} << "White Doors: 1";
    QTest::newRow("checkered") << QList<int>{174, 0, 175} << "Checkered Doors: 2";
    QTest::newRow("black") << QList<int>{176, 177, 176, 177} << "Black Doors: 4";
    QTest::newRow("neighbours are no doors") << QList<int>{167, 178, 255} << "Normal Doors: 0";
}

void ObjectCountsTest::doors() {
    QFETCH(QList<int>, tiles);
    QFETCH(QString, line);
    verifyOnlyLine(countDoors(levelWith(tiles)), line);
}

void ObjectCountsTest::enemies_data() {
    QTest::addColumn<QList<int>>("tiles");
    QTest::addColumn<QString>("line");
    QTest::newRow("both hole pictures") << QList<int>{69, 70} << "Holes: 2";
    QTest::newRow("worms") << QList<int>{71, 71, 71} << "Worms: 3";
    QTest::newRow("face hugger") << QList<int>{72} << "Face Huggers: 1";
    QTest::newRow("normal alien") << QList<int>{73, 73} << "Normal Aliens: 2";
    QTest::newRow("strong alien") << QList<int>{74} << "Strong Aliens: 1";
    QTest::newRow("guards") << QList<int>{75, 75, 75, 75, 75, 75} << "Security Guards: 6";
    QTest::newRow("neighbours are no enemies") << QList<int>{68, 76} << "Holes: 0";
}

void ObjectCountsTest::enemies() {
    QFETCH(QList<int>, tiles);
    QFETCH(QString, line);
    verifyOnlyLine(countEnemies(levelWith(tiles)), line);
}

void ObjectCountsTest::pickups_data() {
    QTest::addColumn<QList<int>>("tiles");
    QTest::addColumn<QString>("line");
    QTest::newRow("credits add their worth") << QList<int>{60, 59, 59} << "Credits: 120";
    QTest::newRow("one large credit") << QList<int>{60} << "Credits: 100";
    QTest::newRow("one small credit") << QList<int>{59} << "Credits: 10";
    QTest::newRow("ammo counts 20 a tile") << QList<int>{58, 58, 58} << "Ammo: 60";
    QTest::newRow("key passes") << QList<int>{54, 54} << "Key Passes: 2";
    QTest::newRow("white keys") << QList<int>{55} << "White Keys: 1";
    QTest::newRow("checkered keys") << QList<int>{56} << "Checkered Keys: 1";
    QTest::newRow("black keys") << QList<int>{57, 57, 57} << "Black Keys: 3";
    QTest::newRow("first aids") << QList<int>{61} << "First Aids: 1";
    QTest::newRow("invincibilities") << QList<int>{62, 62} << "Invincibilities: 2";
    QTest::newRow("extra lives") << QList<int>{63} << "Extra Lives: 1";
    QTest::newRow("neighbours are no pick-ups") << QList<int>{53, 64} << "Credits: 0";
}

void ObjectCountsTest::pickups() {
    QFETCH(QList<int>, tiles);
    QFETCH(QString, line);
    verifyOnlyLine(countPickups(levelWith(tiles)), line);
}

void ObjectCountsTest::emptyLevelTexts_data() {
    QTest::addColumn<Counter>("counter");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("doors") << Counter(countDoors) << "Doors"
                           << "Normal Doors: 0\rSecurity Doors: 0\rWhite Doors: 0\r"
                              "Checkered Doors: 0\rBlack Doors: 0";
    QTest::newRow("enemies") << Counter(countEnemies) << "Enemies"
                             << "Holes: 0\rWorms: 0\rFace Huggers: 0\rNormal Aliens: 0\r"
                                "Strong Aliens: 0\rSecurity Guards: 0";
    QTest::newRow("pick-ups") << Counter(countPickups) << "Pick-ups"
                              << "Credits: 0\rAmmo: 0\rKey Passes: 0\rWhite Keys: 0\r"
                                 "Checkered Keys: 0\rBlack Keys: 0\rFirst Aids: 0\r"
                                 "Invincibilities: 0\rExtra Lives: 0";
}

void ObjectCountsTest::emptyLevelTexts() {
    QFETCH(Counter, counter);
    QFETCH(QString, title);
    QFETCH(QString, text);
    const CountReport report = counter(defaultLevel());
    QCOMPARE(report.title, title);
    QCOMPARE(report.text, text);
}

void ObjectCountsTest::cellsOutsideTheLevelAreIgnored() {
    LevelRecord level = defaultLevel();
    level.tile(12, 0) = 168; // first column outside
    level.tile(0, 8) = 168;  // first row outside
    level.tile(31, 31) = 168;
    level.tile(11, 7) = 168; // the last cell inside
    verifyOnlyLine(countDoors(level), "Normal Doors: 1");

    level.header[LevelRecord::Width] = 13;
    verifyOnlyLine(countDoors(level), "Normal Doors: 2");
    level.header[LevelRecord::Width] = 32;
    level.header[LevelRecord::Height] = 32;
    verifyOnlyLine(countDoors(level), "Normal Doors: 4");
}

void ObjectCountsTest::fullLevelOfLargeCredits() {
    LevelRecord level = defaultLevel();
    level.header[LevelRecord::Width] = 32;
    level.header[LevelRecord::Height] = 32;
    level.tiles.fill(Tile::LargeCredits);
    verifyOnlyLine(countPickups(level), "Credits: 102400");
}

// A tile listed in one report's group adds to exactly one line of that report and to nothing
// in the others; every other id adds nothing anywhere.
void ObjectCountsTest::everyIdCountsOnlyInItsOwnGroup() {
    const struct {
        Counter counter;
        TileGroup group;
    } reports[] = {{countDoors, TileGroup::Door},
                   {countEnemies, TileGroup::Enemy},
                   {countPickups, TileGroup::PickUp}};
    for (int id = 0; id < 256; ++id) {
        const LevelRecord level = levelWith({id});
        for (const auto &report : reports) {
            const QStringList all = lines(report.counter(level));
            const qsizetype nonZero =
                std::count_if(all.begin(), all.end(), [](const QString &line) {
                    return !line.endsWith(QLatin1String(": 0"));
                });
            QVERIFY2(nonZero == (tileGroup(id) == report.group ? 1 : 0),
                     qPrintable(QStringLiteral("tile %1: %2").arg(id).arg(all.join(", "))));
        }
    }
}

QTEST_APPLESS_MAIN(ObjectCountsTest)
#include "ObjectCountsTest.moc"
