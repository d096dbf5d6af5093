// kstool render and sheet: the level as the editor paints it, and the tile reference sheet.
#include "KstoolFixture.h"

#include "view/Tileset.h"
#include "view/drawLevel.h"

#include <QImage>

using namespace TestLevelsets;

namespace {

const QRgb Black = qRgb(0, 0, 0);
const QRgb White = qRgb(255, 255, 255);

QPoint cellCentre(int x, int y) {
    return {16 * x + 8, 16 * y + 8};
}

// A 12 x 8 level with a wall at (3, 1), an id no tool places at (5, 2), a door on the last cell
// and, outside its size, a wall that must not show; a second level with a wall at (0, 0) and a
// third that fills the grid.
Levelset knownLevels() {
    Levelset levelset;
    levelset.levelCount = 3;
    LevelRecord &level = levelset.levels[0];
    level.tile(3, 1) = 89;
    level.tile(5, 2) = 200;
    level.tile(11, 7) = 176;
    level.tile(12, 0) = 89;
    levelset.levels[1].tile(0, 0) = 89;
    levelset.levels[2].header[LevelRecord::Width] = 32;
    levelset.levels[2].header[LevelRecord::Height] = 32;
    return levelset;
}

// Where the 4x picture of tile id appears in the sheet, or (-1, -1).
QPoint findZoomedTile(const QImage &sheet, int id) {
    const QImage tile = Tileset::image()
                            .copy(QRect(Tileset::cellOrigin(id), QSize(16, 16)))
                            .scaled(64, 64, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    for (int y = 0; y + 64 <= sheet.height(); ++y)
        for (int x = 0; x + 64 <= sheet.width(); ++x) {
            bool same = true;
            for (int ty = 0; same && ty < 64; ty += 2)
                for (int tx = 0; same && tx < 64; tx += 2)
                    same = sheet.pixel(x + tx, y + ty) == tile.pixel(tx, ty);
            if (same)
                return {x, y};
        }
    return {-1, -1};
}

} // namespace

class KstoolRenderTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        folder.emplace();
        folder->write("zkstlabc.kst", fileOf(knownLevels()));
    }

    void paintsLikeTheEditor() {
        const Levelset levelset = knownLevels();
        for (int index = 0; index < levelset.levelCount; ++index) {
            QImage view;
            drawLevel(levelset.levels[index], view);
            QCOMPARE(render({"--level", QString::number(index + 1)}), view);
        }
    }

    void markers_data() {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<QRgb>("colour");
        const auto row = [](const char *name, const QStringList &options, QPoint pixel,
                            QRgb colour) { QTest::newRow(name) << options << pixel << colour; };
        const QStringList plain{"--level", "1"};
        const QStringList marked{"--level", "1", "--markers"};
        row("no markers unless asked", plain, QPoint(5, 0), White);
        // The default level: start (0, 0), put (1, 0), take (2, 0), finish (11, 7).
        row("start, top edge", marked, QPoint(5, 0), qRgb(128, 255, 128));
        row("start, second line", marked, QPoint(5, 1), qRgb(128, 255, 128));
        row("start, inside stays the tile", marked, QPoint(5, 2), White);
        row("start, right edge", marked, QPoint(15, 8), qRgb(128, 255, 128));
        row("put", marked, QPoint(16, 8), qRgb(128, 128, 255));
        row("take", marked, QPoint(32 + 14, 15), qRgb(0, 0, 192));
        row("finish", marked, QPoint(16 * 11, 16 * 7 + 15), qRgb(0, 192, 0));
        row("finish, inside stays the tile", marked, cellCentre(11, 7), Black);
        row("no marker on the next cell", marked, cellCentre(3, 0), White);
    }
    void markers() {
        QFETCH(QStringList, options);
        QFETCH(QPoint, pixel);
        QFETCH(QRgb, colour);
        const QImage image = render(options);
        QCOMPARE(image.size(), QSize(512, 512));
        QCOMPARE(image.pixel(pixel), colour);
    }

    void levelsSideBySide() {
        const QImage image = render({});
        QCOMPARE(image.size(), QSize(3 * 512 + 2 * 16, 512));
        QCOMPARE(image.pixel(cellCentre(3, 1)), Black);
        QCOMPARE(image.pixel(512 + 8, 100), qRgb(64, 64, 64)); // the gap
        QCOMPARE(image.pixel(528 + 8, 8), Black);              // level 2's wall at (0, 0)
        QCOMPARE(image.pixel(528 + 16 + 8, 8), White);         // and its floor beside it
        QCOMPARE(image.pixel(2 * 528 + 511, 511), White);      // level 3 fills the grid
    }

    void scaleEnlargesEveryPixel() {
        const QImage plain = render({"--level", "1"});
        const QImage scaled = render({"--level", "1", "--scale", "3"});
        QCOMPARE(scaled.size(), QSize(1536, 1536));
        for (const QPoint &point :
             {QPoint(48, 16), QPoint(47, 15), QPoint(190, 120), QPoint(511, 0)})
            for (int dy = 0; dy < 3; ++dy)
                for (int dx = 0; dx < 3; ++dx)
                    QCOMPARE(scaled.pixel(point * 3 + QPoint(dx, dy)), plain.pixel(point));
    }

    void markerOutsideTheGridIsSkipped() {
        Levelset levelset;
        levelset.levelCount = 2;
        levelset.levels[0].header[LevelRecord::StartX] = 40;
        levelset.levels[0].header[LevelRecord::StartY] = 3;
        folder->write("zkstlabc.kst", fileOf(levelset));
        const QImage image = render({"--markers"});
        // A start 8 cells right of the grid would land on the second level; it is left out.
        QCOMPARE(image.pixel(528 + 16 * 7 + 5, 16 * 3), White);
        QCOMPARE(image.copy(528, 0, 512, 512), render({"--level", "2", "--markers"}));
    }

    // A broken file is painted as the editor would show it after opening it.
    void brokenFileIsPaintedAsOpened() {
        folder->write("zkstlabc.kst", fresh().chopped(40));
        QCOMPARE(render({}).pixel(cellCentre(0, 0)), White);
    }

    void sheetShowsEveryTileWithItsName() {
        const KstoolRun run = folder->run({"sheet", "-o", "sheet.png"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.err.isEmpty(), qPrintable(run.err));
        const QImage sheet =
            QImage(folder->path("sheet.png")).convertToFormat(QImage::Format_RGB32);
        QVERIFY(!sheet.isNull());
        // Distinct pictures, found at 4x; the key pass and the guard sit in one row of entries.
        const QPoint keyPass = findZoomedTile(sheet, 54);
        const QPoint guard = findZoomedTile(sheet, 75);
        const QPoint door = findZoomedTile(sheet, 177);
        QVERIFY(keyPass.x() >= 0 && guard.x() >= 0 && door.x() >= 0);
        QVERIFY(door.y() > guard.y() && guard.y() > keyPass.y());
        // Text beside a picture: antialiased glyphs leave pixels that are neither black nor white.
        int textPixels = 0;
        for (int y = keyPass.y(); y < keyPass.y() + 64; ++y)
            for (int x = keyPass.x() + 66; x < keyPass.x() + 200; ++x)
                textPixels += sheet.pixel(x, y) != White;
        QVERIFY2(textPixels > 100, "the number and name are drawn beside the tile");
    }

private:
    QImage render(const QStringList &options) {
        const KstoolRun run =
            folder->run(QStringList{"render", "zkstlabc.kst", "-o", "out.png"} + options);
        [&] { QVERIFY2(run.exitCode == 0, qPrintable(run.err)); }();
        return QImage(folder->path("out.png")).convertToFormat(QImage::Format_RGB32);
    }
    std::optional<KstoolFolder> folder;
};

QTEST_GUILESS_MAIN(KstoolRenderTest)
#include "KstoolRenderTest.moc"
