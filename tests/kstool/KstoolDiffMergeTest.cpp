// kstool diff and merge on real files: the lines a designer reads, the picture of what changed,
// and three-way merges as git runs them.
#include "KstoolFixture.h"

#include <QImage>

using namespace TestLevelsets;

namespace {

const QRgb Magenta = qRgb(255, 0, 255);

Levelset levels(int count) {
    Levelset levelset;
    levelset.levelCount = std::uint8_t(count);
    return levelset;
}

Levelset painted(Levelset levelset, int level, QList<QPoint> cells, int tile) {
    for (const QPoint &cell : cells)
        levelset.levels[level].tile(cell.x(), cell.y()) = std::uint8_t(tile);
    return levelset;
}

Levelset withHeader(Levelset levelset, int level, QList<std::pair<int, int>> bytes) {
    for (auto [byte, value] : bytes)
        levelset.levels[level].header[byte] = std::uint8_t(value);
    return levelset;
}

// The first cells of a 12 x 8 level, row by row.
QList<QPoint> firstCells(int count) {
    QList<QPoint> cells;
    for (int i = 0; i < count; ++i)
        cells << QPoint(i % 12, i / 12);
    return cells;
}

} // namespace

class KstoolDiffMergeTest : public QObject {
    Q_OBJECT
private slots:
    void diffLines_data() {
        QTest::addColumn<QByteArray>("older");
        QTest::addColumn<QByteArray>("newer");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("error");
        const auto row = [](const char *name, const Levelset &older, const Levelset &newer,
                            const QStringList &lines) {
            QTest::newRow(name) << fileOf(older) << fileOf(newer) << lines << QString();
        };
        using L = LevelRecord;
        const Levelset three = levels(3);
        const Levelset grown = painted(withHeader(levels(1), 0, {{L::Width, 14}, {L::Height, 9}}),
                                       0, {{13, 2}, {2, 8}}, 89);
        row("identical", three, three, {});
        row("time", three, withHeader(three, 1, {{L::Time, 120}}), {"level 2: time 99 -> 120"});
        row("start", three, withHeader(three, 0, {{L::StartX, 4}, {L::StartY, 3}}),
            {"level 1: start (0, 0) -> (4, 3)"});
        row("size", three, withHeader(three, 2, {{L::Width, 14}}),
            {"level 3: size 12 x 8 -> 14 x 8"});
        row("cell", three, painted(three, 0, {{3, 4}}, 89),
            {"level 1: cell (3, 4) floor 0 -> solid wall 89"});
        row("block types and the other header values", three,
            withHeader(three, 0,
                       {{L::PutType, 55},
                        {L::TakeType, 42},
                        {L::Objectives, 3},
                        {L::LevelType, 1},
                        {L::AlienType, 7},
                        {L::FinishX, 2}}),
            {"level 1: objectives 0 -> 3",
             "level 1: block to put type solid wall 89 -> white key 55",
             "level 1: block to take type floor 0 -> tile 42",
             "level 1: level type Normal -> Hatchery", "level 1: alien type Normal -> 7",
             "level 1: finish (11, 7) -> (2, 7)"});
        Levelset renamed = painted(three, 0, {{0, 0}}, 170);
        renamed.storePasscode(1, "ABC123");
        renamed.reserved1 = 17;
        QTest::newRow("levelset-wide values come first")
            << fileOf(three) << fileOf(renamed, "zkstlxyz.kst")
            << QStringList{"tag \"KST0ABC\" -> \"KST0XYZ\"", "reserved bytes 0, 0 -> 17, 0",
                           "level 3: passcode \"      \" -> \"ABC123\"",
                           "level 1: cell (0, 0) floor 0 -> security door 170"}
            << QString();
        row("a grown level shows what was painted in its new cells", levels(1), grown,
            {"level 1: size 12 x 8 -> 14 x 9", "level 1: cell (13, 2) floor 0 -> solid wall 89",
             "level 1: cell (2, 8) floor 0 -> solid wall 89"});
        row("cells outside the newer size do not count", grown, levels(1),
            {"level 1: size 14 x 9 -> 12 x 8"});
        row("level added", levels(1), withHeader(levels(2), 1, {{L::Width, 14}}),
            {"level count 1 -> 2", "level 2: added, 14 x 8"});
        row("levels past the count do not count", painted(three, 2, {{1, 1}}, 89), levels(2),
            {"level count 3 -> 2", "level 3: removed"});
        QStringList many;
        for (const QPoint &cell : firstCells(20))
            many << QStringLiteral("level 2: cell (%1, %2) floor 0 -> worm 71")
                        .arg(cell.x())
                        .arg(cell.y());
        many << "level 2: 5 more cells changed, within (5, 1) to (11, 3)";
        row("past 20 cells the rest are summed up", three,
            painted(three, 1, firstCells(24) << QPoint(5, 3), 71), many);
        QTest::newRow("files shorter than their tag are compared as read")
            << fresh().left(3) << fresh().left(5)
            << QStringList{R"(tag "KST\x00\x00\x00\x00" -> "KST0A\x00\x00")"}
            << "short file (5 bytes)";
        QTest::newRow("an unreadable file is trouble")
            << fresh() << QByteArray() << QStringList() << "cannot read";
    }
    void diffLines() {
        QFETCH(QByteArray, older);
        QFETCH(QByteArray, newer);
        QFETCH(QStringList, lines);
        QFETCH(QString, error);
        const KstoolFolder folder;
        folder.write("old.kst", older);
        if (!newer.isEmpty())
            folder.write("new.kst", newer);
        const KstoolRun run = folder.run({"diff", "old.kst", "new.kst"});
        const bool trouble = newer.isEmpty();
        QCOMPARE(run.exitCode, trouble ? 2 : lines.isEmpty() ? 0 : 1);
        QCOMPARE(run.out.split('\n', Qt::SkipEmptyParts), lines);
        QVERIFY2(error.isEmpty() ? run.err.isEmpty() : run.err.contains(error),
                 qPrintable(run.err));
    }

    // Every changed cell is outlined and no other; a removed level is shown as it was, and the
    // header changes stand under their level.
    void picture_data() {
        QTest::addColumn<int>("scale");
        QTest::newRow("plain") << 1;
        QTest::newRow("scaled") << 3;
    }
    void picture() {
        QFETCH(int, scale);
        const QList<QPoint> changed{{0, 0}, {3, 4}, {11, 7}};
        const Levelset older = painted(levels(3), 2, {{1, 1}}, 89);
        Levelset newer = withHeader(painted(older, 0, changed, 75), 1, {{LevelRecord::Time, 7}});
        newer.storePasscode(0, "ABC123");
        newer.levelCount = 2;
        const KstoolFolder folder;
        folder.write("old.kst", fileOf(older));
        folder.write("new.kst", fileOf(newer));
        const KstoolRun run = folder.run(
            {"diff", "old.kst", "new.kst", "-o", "changes.png", "--scale", QString::number(scale)});
        QCOMPARE(run.exitCode, 1);
        const QImage image =
            QImage(folder.path("changes.png")).convertToFormat(QImage::Format_RGB32);
        QCOMPARE(image.width(), (3 * 512 + 2 * 16) * scale);
        QVERIFY(image.height() > 512 * scale);

        const auto pixel = [&](int place, QPoint cell, QPoint inCell) {
            return image.pixel((QPoint(place * 528, 0) + cell * 16 + inCell) * scale);
        };
        for (int place = 0; place < 3; ++place)
            for (int y = 0; y < 32; ++y)
                for (int x = 0; x < 32; ++x) {
                    const bool outlined = pixel(place, {x, y}, {8, 0}) == Magenta &&
                                          pixel(place, {x, y}, {0, 8}) == Magenta &&
                                          pixel(place, {x, y}, {15, 15}) == Magenta;
                    QCOMPARE(outlined, place == 0 && changed.contains(QPoint(x, y)));
                }
        QCOMPARE(pixel(2, {1, 1}, {8, 8}), qRgb(0, 0, 0)); // level 3's wall, as it was

        // Under its name, level 1 counts its cells, level 2 lists its passcode and time, and
        // level 3 says it was removed: two lines, three lines, one line.
        const auto lowestText = [&](int place) {
            int lowest = 0;
            for (int y = 512 * scale; y < image.height(); ++y)
                for (int x = place * 528 * scale; x < (place * 528 + 512) * scale; ++x)
                    if (image.pixel(x, y) != qRgb(64, 64, 64))
                        lowest = y;
            return lowest;
        };
        QVERIFY(lowestText(2) > 512 * scale);
        QVERIFY(lowestText(0) > lowestText(2) + 10 * scale);
        QVERIFY(lowestText(1) > lowestText(0) + 10 * scale);
    }

    void merge_data() {
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("ours");
        QTest::addColumn<QByteArray>("theirs");
        QTest::addColumn<QByteArray>("merged");
        QTest::addColumn<QStringList>("conflicts");
        QTest::addColumn<QString>("trouble");
        const auto row = [](const char *name, const Levelset &base, const Levelset &ours,
                            const Levelset &theirs, const Levelset &merged,
                            const QStringList &conflicts = {}) {
            QTest::newRow(name) << fileOf(base) << fileOf(ours) << fileOf(theirs) << fileOf(merged)
                                << conflicts << QString();
        };
        using L = LevelRecord;
        const Levelset base = levels(2);
        const Levelset wall = painted(base, 0, {{3, 4}}, 89);
        row("different cells of one level", base, wall, painted(base, 0, {{5, 6}}, 55),
            painted(wall, 0, {{5, 6}}, 55));
        row("the same change on both sides", base, wall, wall, wall);
        row("a header value and a cell", base, withHeader(base, 1, {{L::Time, 120}}), wall,
            withHeader(wall, 1, {{L::Time, 120}}));
        row("one cell painted differently keeps ours", base, wall, painted(base, 0, {{3, 4}}, 55),
            wall, {"level 1: cell (3, 4) floor 0 -> ours solid wall 89, theirs white key 55"});
        const Levelset moved = withHeader(base, 1, {{L::StartX, 4}, {L::StartY, 3}});
        row("a position moved differently", base, moved,
            withHeader(base, 1, {{L::StartX, 5}, {L::StartY, 2}}), moved,
            {"level 2: start (0, 0) -> ours (4, 3), theirs (5, 2)"});
        const Levelset widened = painted(withHeader(base, 0, {{L::Width, 14}}), 0, {{13, 0}}, 89);
        row("a widened level keeps the other side's cells", base, widened, wall,
            painted(widened, 0, {{3, 4}}, 89));
        const Levelset added = painted(levels(3), 2, {{1, 1}}, 73);
        row("a level added on one side", base, added, wall, painted(added, 0, {{3, 4}}, 89));
        const Levelset holes = painted(base, 1, firstCells(9), 69);
        const Levelset both = painted(holes, 1, {{0, 7}, {1, 7}}, 70);
        row("holes that each side added break the limit", holes, painted(holes, 1, {{0, 7}}, 70),
            painted(holes, 1, {{1, 7}}, 70), both, {"level 2 has 11 alien holes, at most 10"});
        QTest::newRow("the tag merges as bytes")
            << fileOf(base) << fileOf(wall) << fileOf(base, "zkstlxyz.kst")
            << fileOf(wall, "zkstlxyz.kst") << QStringList() << QString();
        // Trouble leaves ours as it was.
        QTest::newRow("an input the reader would repair")
            << fileOf(base) << fileOf(wall) << fileOf(base) + "xyzzy" << fileOf(wall)
            << QStringList() << "theirs: the editor's reader would repair it (5 trailing bytes)";
        QTest::newRow("a missing input") << fileOf(base) << fileOf(wall) << QByteArray()
                                         << fileOf(wall) << QStringList() << "theirs: cannot read";
    }
    void merge() {
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, ours);
        QFETCH(QByteArray, theirs);
        QFETCH(QByteArray, merged);
        QFETCH(QStringList, conflicts);
        QFETCH(QString, trouble);
        const KstoolFolder folder;
        folder.write("base", base);
        folder.write("ours", ours);
        if (!theirs.isEmpty())
            folder.write("theirs", theirs);
        // As git runs a driver: temporary names, the result written over ours.
        const KstoolRun run = folder.run({"merge", "base", "ours", "theirs", "-o", "ours"});
        QCOMPARE(run.exitCode, !trouble.isEmpty() ? 2 : conflicts.isEmpty() ? 0 : 1);
        for (QString &conflict : conflicts)
            conflict.prepend("conflict: ");
        QCOMPARE(run.err.split('\n').filter("conflict: "), conflicts);
        QVERIFY2(run.err.contains(trouble), qPrintable(run.err));
        QCOMPARE(folder.read("ours"), merged);
        QVERIFY(run.out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(KstoolDiffMergeTest)
#include "KstoolDiffMergeTest.moc"
