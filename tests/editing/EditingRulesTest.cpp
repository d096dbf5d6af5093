// The rules of mouse editing that need no window: pixel to cell, the random tile families and
// Set Floor.

#include "levelset/LevelRecord.h"
#include "view/CellFromPixel.h"
#include "view/RandomTiles.h"
#include "view/SetFloor.h"

#include <QtTest>
#include <cmath>
#include <limits>
#include <map>

using TileShares = QMap<int, int>; // tile id -> expected share in twelfths

class EditingRulesTest : public QObject {
    Q_OBJECT
private slots:
    void cellFromPixel_data() {
        QTest::addColumn<double>("pixel");
        QTest::addColumn<int>("cell");
        QTest::newRow("origin") << 0.0 << 0;
        QTest::newRow("last pixel of cell 0") << 15.0 << 0;
        QTest::newRow("first pixel of cell 1") << 16.0 << 1;
        QTest::newRow("last pixel of the view") << 511.0 << 31;
        QTest::newRow("first pixel past the view") << 512.0 << 32;
        QTest::newRow("one pixel before the view") << -1.0 << 0;
        QTest::newRow("15 pixels before the view") << -15.0 << 0;
        QTest::newRow("16 pixels before the view") << -16.0 << -1;
        QTest::newRow("31 pixels before the view") << -31.0 << -1;
        QTest::newRow("32 pixels before the view") << -32.0 << -2;
        QTest::newRow("half rounds down to even") << 14.5 << 0;
        QTest::newRow("half rounds up to even") << 15.5 << 1;
        QTest::newRow("negative half rounds to even") << -15.5 << -1;
        QTest::newRow("fraction below half") << 15.49 << 0;
        QTest::newRow("far right is clamped") << 1e12 << 32767;
        QTest::newRow("far left is clamped") << -1e12 << -32767;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0;
    }
    void cellFromPixel() {
        QFETCH(double, pixel);
        QFETCH(int, cell);
        QCOMPARE(int(::cellFromPixel(pixel)), cell);
    }

    void tileForNumber_data() {
        const float top = std::nextafter(1.0f, 0.0f); // the largest number the generator gives
        QTest::addColumn<int>("mode");
        QTest::addColumn<float>("r");
        QTest::addColumn<int>("tile");
        QTest::newRow("wall, lowest number raised to the solid wall") << 1 << 0.0f << 89;
        QTest::newRow("wall, 88 raised to 89") << 1 << 0.24f << 89;
        QTest::newRow("wall, exactly 89") << 1 << 0.25f << 89;
        QTest::newRow("wall, just below 90") << 1 << 0.333f << 89;
        QTest::newRow("wall, first detailed wall") << 1 << 0.334f << 90;
        QTest::newRow("wall, highest number") << 1 << top << 97;
        QTest::newRow("inside, lowest") << 2 << 0.0f << 10;
        QTest::newRow("inside, a quarter") << 2 << 0.25f << 11;
        QTest::newRow("inside, highest number never gives 14") << 2 << top << 13;
        QTest::newRow("outside, lowest") << 3 << 0.0f << 7;
        QTest::newRow("outside, two thirds") << 3 << 0.67f << 9;
        QTest::newRow("outside, highest number never gives 10") << 3 << top << 9;
        QTest::newRow("set positions has no family") << 0 << 0.5f << 255;
        QTest::newRow("unknown mode has no family") << 4 << 0.5f << 255;
    }
    void tileForNumber() {
        QFETCH(int, mode);
        QFETCH(float, r);
        QFETCH(int, tile);
        QCOMPARE(int(RandomTiles::tileFor(mode, r)), tile);
    }

    // Every one of the 2^24 numbers the generator can give, so no rounding at a boundary slips
    // out of the family; and many draws, whose shares must match the weights.
    void familiesAndWeights_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<TileShares>("twelfths");
        TileShares wall{{89, 4}};
        for (int t = 90; t <= 97; ++t)
            wall[t] = 1;
        QTest::newRow("wall: solid wall a third, details a twelfth each") << 1 << wall;
        QTest::newRow("inside: a quarter each")
            << 2 << TileShares{{10, 3}, {11, 3}, {12, 3}, {13, 3}};
        QTest::newRow("outside: a third each") << 3 << TileShares{{7, 4}, {8, 4}, {9, 4}};
    }
    void familiesAndWeights() {
        QFETCH(int, mode);
        QFETCH(TileShares, twelfths);
        int lowest = 256;
        int highest = -1;
        for (std::uint32_t k = 0; k < (1u << 24); ++k) {
            const int tile = RandomTiles::tileFor(mode, static_cast<float>(k) * 0x1p-24f);
            lowest = std::min(lowest, tile);
            highest = std::max(highest, tile);
        }
        QCOMPARE(lowest, twelfths.firstKey());
        QCOMPARE(highest, twelfths.lastKey());

        constexpr int Draws = 120000;
        RandomTiles random;
        std::map<int, int> seen;
        for (int i = 0; i < Draws; ++i)
            ++seen[random.draw(mode)];
        QCOMPARE(int(seen.size()), int(twelfths.size()));
        for (auto [tile, count] : seen) {
            QVERIFY2(twelfths.contains(tile), qPrintable(QString::number(tile)));
            const double expected = Draws * twelfths[tile] / 12.0;
            // Ten standard deviations of a binomial count at most; the seed is fixed anyway.
            QVERIFY2(std::abs(count - expected) < 10 * std::sqrt(expected),
                     qPrintable(QStringLiteral("tile %1: %2").arg(tile).arg(count)));
        }
    }

    // Every generator starts in the same state, gives 24-bit numbers below 1 that vary, and a
    // mode without a family draws no number.
    void generatorsRepeatOneSequence() {
        RandomTiles first;
        RandomTiles second;
        QCOMPARE(int(second.draw(0)), int(RandomTiles::NoTile));
        QCOMPARE(int(second.draw(7)), int(RandomTiles::NoTile));
        double sum = 0;
        constexpr int Draws = 100000;
        for (int i = 0; i < Draws; ++i) {
            const float r = first.next();
            QCOMPARE(second.next(), r);
            QVERIFY(r >= 0.0f && r < 1.0f);
            QCOMPARE(r * 0x1p24f, std::floor(r * 0x1p24f));
            sum += r;
        }
        QVERIFY(std::abs(sum / Draws - 0.5) < 0.01);
    }

    // Cells (0, 0), (11, 7), (20, 20), (3, 3), (31, 31) and (12, 0) of the default 12 x 8
    // level: the last three lie outside it. A second Set Floor changes nothing.
    void setFloor_data() {
        QTest::addColumn<int>("levelType");
        QTest::addColumn<QList<int>>("before");
        QTest::addColumn<QList<int>>("after");
        QTest::addColumn<int>("changed");
        QTest::newRow("normal: hatchery floor back to 0, also outside")
            << 0 << QList<int>{1, 1, 1, 89, 0, 54} << QList<int>{0, 0, 0, 89, 0, 54} << 3;
        QTest::newRow("hatchery: every 0 becomes 1, other ids untouched")
            << 1 << QList<int>{0, 0, 7, 89, 1, 255} << QList<int>{1, 1, 7, 89, 1, 255} << 1024 - 4;
        QTest::newRow("unknown level type changes nothing")
            << 2 << QList<int>{1, 0, 1, 0, 1, 0} << QList<int>{1, 0, 1, 0, 1, 0} << 0;
    }
    void setFloor() {
        QFETCH(int, levelType);
        QFETCH(QList<int>, before);
        QFETCH(QList<int>, after);
        QFETCH(int, changed);
        const QList<QPoint> cells{{0, 0}, {11, 7}, {20, 20}, {3, 3}, {31, 31}, {12, 0}};
        LevelRecord level;
        level.reset();
        level.header[LevelRecord::LevelType] = static_cast<std::uint8_t>(levelType);
        for (int i = 0; i < cells.size(); ++i)
            level.tile(cells[i].x(), cells[i].y()) = static_cast<std::uint8_t>(before[i]);
        const auto header = level.header;

        QCOMPARE(::setFloor(level), changed);

        for (int i = 0; i < cells.size(); ++i)
            QCOMPARE(int(level.tile(cells[i].x(), cells[i].y())), after[i]);
        QVERIFY(level.header == header);
        const auto tiles = level.tiles;
        QCOMPARE(::setFloor(level), 0);
        QVERIFY(level.tiles == tiles);
    }
};

QTEST_APPLESS_MAIN(EditingRulesTest)
#include "EditingRulesTest.moc"
