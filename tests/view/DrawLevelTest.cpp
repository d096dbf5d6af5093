#include "view/drawLevel.h"
#include "levels/LevelResize.h"
#include "levelset/LevelRecord.h"
#include "view/Tileset.h"

#include <QImage>
#include <QTest>

namespace {

constexpr int Grey = 0xC0;

// A tileset whose every pixel names its tile and its place in the cell: red = id,
// green = column in the cell, blue = row in the cell. A painted view then tells exactly which
// pixel of which tile landed where.
QImage codedTileset() {
    QImage image(128, 512, QImage::Format_RGB32);
    for (int id = 0; id < 256; ++id) {
        const QPoint origin = Tileset::cellOrigin(id);
        for (int py = 0; py < 16; ++py)
            for (int px = 0; px < 16; ++px)
                image.setPixel(origin + QPoint(px, py), qRgb(id, px, py));
    }
    return image;
}

// The first pixel of cell (x, y) that is not tile id copied unscaled, as "px,py: id,px,py";
// empty when the whole cell is right.
QString cellMismatch(const QImage &view, int x, int y, int id) {
    for (int py = 0; py < 16; ++py)
        for (int px = 0; px < 16; ++px) {
            const QRgb got = view.pixel(16 * x + px, 16 * y + py);
            if (got != qRgb(id, px, py))
                return QStringLiteral("%1,%2: %3,%4,%5")
                    .arg(px)
                    .arg(py)
                    .arg(qRed(got))
                    .arg(qGreen(got))
                    .arg(qBlue(got));
        }
    return {};
}

LevelRecord levelOfSize(int width, int height) {
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = static_cast<std::uint8_t>(width);
    level.header[LevelRecord::Height] = static_cast<std::uint8_t>(height);
    // Every cell holds its own id pattern, outside the level too, so a cell drawn from the
    // wrong place or drawn although outside is caught.
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y)
            level.tile(x, y) = static_cast<std::uint8_t>((x * 7 + y * 13) % 256);
    return level;
}

bool isGrey(QRgb pixel) {
    return pixel == qRgb(Grey, Grey, Grey);
}

int greyPixelsInCell(const QImage &view, int x, int y) {
    int grey = 0;
    for (int py = 0; py < 16; ++py)
        for (int px = 0; px < 16; ++px)
            grey += isGrey(view.pixel(16 * x + px, 16 * y + py));
    return grey;
}

} // namespace

class DrawLevelTest : public QObject {
    Q_OBJECT
private slots:
    void everyCellIsItsTileOr255_data();
    void everyCellIsItsTileOr255();
    void hiddenCellsKeepTheirBytesAndShowAgain();
    void replacesUnusableTarget();
    void unusableTilesetPaintsGrey();

    void realTilesetGeometry();
    void realTilesetGreyOutsideTheLevel_data();
    void realTilesetGreyOutsideTheLevel();
    void realTilesetIdsFrom178DrawGrey();
};

void DrawLevelTest::everyCellIsItsTileOr255_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("smallest, 12 x 8") << 12 << 8;
    QTest::newRow("full, 32 x 32") << 32 << 32;
    QTest::newRow("wide and flat, 32 x 8") << 32 << 8;
    QTest::newRow("narrow and tall, 12 x 32") << 12 << 32;
    QTest::newRow("odd, 19 x 23") << 19 << 23;
    QTest::newRow("empty size from a file, 0 x 0") << 0 << 0;
}

void DrawLevelTest::everyCellIsItsTileOr255() {
    QFETCH(int, width);
    QFETCH(int, height);
    const LevelRecord level = levelOfSize(width, height);
    QImage view;
    drawLevel(level, view, codedTileset());

    QCOMPARE(view.size(), QSize(512, 512));
    QCOMPARE(view.format(), QImage::Format_RGB32);
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y) {
            const int id = x < width && y < height ? level.tile(x, y) : 255;
            QVERIFY2(cellMismatch(view, x, y, id).isEmpty(),
                     qPrintable(QStringLiteral("cell %1,%2").arg(x).arg(y)));
        }
}

void DrawLevelTest::hiddenCellsKeepTheirBytesAndShowAgain() {
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = 16;
    level.tile(15, 3) = 42;
    const QImage tileset = codedTileset();
    QImage view;

    QVERIFY(decreaseWidth(level));
    drawLevel(level, view, tileset);
    QCOMPARE(cellMismatch(view, 15, 3, 255), QString());
    QCOMPARE(level.tile(15, 3), std::uint8_t{42});

    QVERIFY(increaseWidth(level));
    drawLevel(level, view, tileset);
    QCOMPARE(cellMismatch(view, 15, 3, 42), QString());
}

void DrawLevelTest::replacesUnusableTarget() {
    const LevelRecord level = levelOfSize(32, 32);
    QImage small(100, 40, QImage::Format_RGB32);
    drawLevel(level, small, codedTileset());
    QCOMPARE(small.size(), QSize(512, 512));
    QCOMPARE(cellMismatch(small, 31, 31, level.tile(31, 31)), QString());

    QImage otherFormat(512, 512, QImage::Format_ARGB32);
    drawLevel(level, otherFormat, codedTileset());
    QCOMPARE(otherFormat.format(), QImage::Format_RGB32);
    QCOMPARE(cellMismatch(otherFormat, 5, 9, level.tile(5, 9)), QString());
}

void DrawLevelTest::unusableTilesetPaintsGrey() {
    const LevelRecord level = levelOfSize(32, 32);
    QImage view;
    drawLevel(level, view, QImage());
    QCOMPARE(view.size(), QSize(512, 512));
    QCOMPARE(view.pixel(0, 0), qRgb(Grey, Grey, Grey));
    QCOMPARE(view.pixel(511, 511), qRgb(Grey, Grey, Grey));
}

void DrawLevelTest::realTilesetGeometry() {
    const QImage &tileset = Tileset::image();
    QCOMPARE(tileset.size(), QSize(128, 512));
    QCOMPARE(tileset.format(), QImage::Format_RGB32);
    // The tiles that can be placed are black-and-white sprites; the rest is plain grey.
    for (int id = 0; id < 256; ++id) {
        const QPoint origin = Tileset::cellOrigin(id);
        for (int py = 0; py < 16; ++py)
            for (int px = 0; px < 16; ++px) {
                const QRgb pixel = tileset.pixel(origin + QPoint(px, py));
                if (id < 178)
                    QVERIFY2(pixel == qRgb(0, 0, 0) || pixel == qRgb(255, 255, 255),
                             qPrintable(QStringLiteral("tile %1 is not black and white").arg(id)));
                else
                    QVERIFY2(isGrey(pixel), qPrintable(QStringLiteral("tile %1").arg(id)));
            }
    }
}

void DrawLevelTest::realTilesetGreyOutsideTheLevel_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("12 x 8") << 12 << 8;
    QTest::newRow("32 x 32 has no grey") << 32 << 32;
    QTest::newRow("25 x 17") << 25 << 17;
}

void DrawLevelTest::realTilesetGreyOutsideTheLevel() {
    QFETCH(int, width);
    QFETCH(int, height);
    LevelRecord level = levelOfSize(width, height);
    for (std::uint8_t &tile : level.tiles)
        tile %= 178; // only placeable tiles, which hold no grey
    QImage view;
    drawLevel(level, view);

    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y) {
            const int expected = x < width && y < height ? 0 : 256;
            QVERIFY2(greyPixelsInCell(view, x, y) == expected,
                     qPrintable(QStringLiteral("cell %1,%2").arg(x).arg(y)));
        }
}

void DrawLevelTest::realTilesetIdsFrom178DrawGrey() {
    LevelRecord level = levelOfSize(32, 32);
    level.tile(0, 0) = 177;
    level.tile(1, 0) = 178;
    level.tile(2, 0) = 255;
    QImage view;
    drawLevel(level, view);
    QVERIFY(greyPixelsInCell(view, 0, 0) < 256);
    QCOMPARE(greyPixelsInCell(view, 1, 0), 256);
    QCOMPARE(greyPixelsInCell(view, 2, 0), 256);
}

QTEST_GUILESS_MAIN(DrawLevelTest)
#include "DrawLevelTest.moc"
