#include "view/drawLevel.h"
#include "levelset/LevelRecord.h"
#include "view/Tileset.h"

#include <QImage>
#include <QTest>

namespace {

const QRgb Grey = qRgb(192, 192, 192);

// Red is the tile id, green and blue the pixel's column and row in its cell, so a painted view
// tells exactly which pixel of which tile landed where.
QImage codedTileset() {
    QImage image(128, 512, QImage::Format_RGB32);
    for (int id = 0; id < 256; ++id)
        for (int p = 0; p < 256; ++p)
            image.setPixel(Tileset::cellOrigin(id) + QPoint(p % 16, p / 16),
                           qRgb(id, p % 16, p / 16));
    return image;
}

QImage cellAt(const QImage &image, QPoint origin) {
    return image.copy(QRect(origin, QSize(16, 16)));
}

// Every cell holds a different id, outside the level too, so a cell copied from the wrong place
// or drawn although outside shows.
LevelRecord patterned(int width, int height) {
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = static_cast<std::uint8_t>(width);
    level.header[LevelRecord::Height] = static_cast<std::uint8_t>(height);
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y)
            level.tile(x, y) = static_cast<std::uint8_t>((x * 7 + y * 13) % 256);
    return level;
}

} // namespace

class DrawLevelTest : public QObject {
    Q_OBJECT
private slots:
    void everyCellIsItsTileOr255_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QImage>("target"); // what the view held before
        QTest::addColumn<bool>("realTileset");
        const QImage view(512, 512, QImage::Format_RGB32);
        QTest::newRow("smallest 12 x 8, no image yet") << 12 << 8 << QImage() << false;
        QTest::newRow("full 32 x 32 into a small image")
            << 32 << 32 << view.copy(0, 0, 99, 40) << false;
        QTest::newRow("32 x 8 into an image with alpha")
            << 32 << 8 << view.convertToFormat(QImage::Format_ARGB32) << false;
        QTest::newRow("12 x 32") << 12 << 32 << view << false;
        QTest::newRow("odd 19 x 23") << 19 << 23 << view << false;
        QTest::newRow("0 x 0 from a file") << 0 << 0 << view << false;
        QTest::newRow("the editor's tileset, 25 x 17") << 25 << 17 << QImage() << true;
    }

    void everyCellIsItsTileOr255() {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(QImage, target);
        QFETCH(bool, realTileset);
        const LevelRecord level = patterned(width, height);
        const QImage tileset = realTileset ? Tileset::image() : codedTileset();
        if (realTileset)
            drawLevel(level, target);
        else
            drawLevel(level, target, tileset);

        QCOMPARE(target.size(), QSize(512, 512));
        QCOMPARE(target.format(), QImage::Format_RGB32);
        QImage grey(16, 16, QImage::Format_RGB32);
        grey.fill(Grey);
        for (int x = 0; x < 32; ++x)
            for (int y = 0; y < 32; ++y) {
                const int id = x < width && y < height ? level.tile(x, y) : 255;
                const QImage cell = cellAt(target, QPoint(16 * x, 16 * y));
                const QString where = QStringLiteral("cell %1,%2").arg(x).arg(y);
                QVERIFY2(cell == cellAt(tileset, Tileset::cellOrigin(id)), qPrintable(where));
                QVERIFY2(!realTileset || (id >= 178) == (cell == grey), qPrintable(where));
            }
    }

    void unusableTilesetPaintsGrey() {
        QImage allGrey(512, 512, QImage::Format_RGB32);
        allGrey.fill(Grey);
        const QImage coded = codedTileset();
        for (const QImage &tileset :
             {QImage(), coded.convertToFormat(QImage::Format_ARGB32), coded.copy(0, 0, 128, 256)}) {
            QImage view;
            drawLevel(patterned(32, 32), view, tileset);
            QCOMPARE(view, allGrey);
        }
    }
};

QTEST_GUILESS_MAIN(DrawLevelTest)
#include "DrawLevelTest.moc"
