#include "PixelArt.h"
#include "ReferenceSheet.h"
#include "SplashImage.h"
#include "TilesetImage.h"
#include "levelset/LevelRecord.h"
#include "support/FileBytes.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/Tileset.h"
#include "view/drawLevel.h"

#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr QRgb Black = 0xff000000, White = 0xffffffff, Grey = 0xffc0c0c0, Yellow = 0xffffff00;

// Tile id's 16 x 16 cell of a tileset, eight cells to a row.
QImage cell(const QImage &tileset, int id) {
    return tileset.copy(16 * (id % 8), 16 * (id / 8), 16, 16);
}
int count(const QImage &image, QRgb colour) {
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
    return int(std::count(pixels, pixels + image.width() * image.height(), colour));
}

} // namespace

class PicturesTest : public QObject {
    Q_OBJECT
private slots:
    // The embedded tileset as the editor loads it: a 24-bit BMP with bottom-up rows, ids 0..177
    // distinct black-and-white sprites with every pixel doubled, the rest grey.
    void tileset() {
        QFile file(QStringLiteral(":/images/tileset.bmp"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes.size(), 54 + 128 * 512 * 3);
        // "BM", file size, reserved, pixels' offset, 40-byte header, 128 x 512 bottom-up, 1 plane,
        // 24 bits, no compression; 96 dpi, no colour table; grey id 248 first, white id 0 last.
        QCOMPARE(bytes.left(34).toHex(),
                 "424d3600030000000000360000002800000080000000000200000100180000000000");
        QCOMPARE(bytes.mid(38, 12).toHex() + bytes.mid(54, 3).toHex() +
                     bytes.mid(54 + 511 * 384, 3).toHex(),
                 "c40e0000c40e000000000000c0c0c0ffffff");
        const QImage image = Tileset::image();
        QList<QImage> sprites;
        for (int id = 0; id < 256; ++id) {
            const QImage c = cell(image, id);
            for (int p = 0; p < 256; ++p) {
                const QRgb pixel = c.pixel(p % 16, p / 16);
                if (id < 178 ? pixel != c.pixel(p % 16 & ~1, p / 16 & ~1) ||
                                   (pixel != Black && pixel != White)
                             : pixel != Grey)
                    QFAIL(qPrintable(QStringLiteral("tile %1, pixel %2").arg(id).arg(p)));
            }
            QVERIFY2(id >= 178 || !sprites.contains(c), qPrintable(QString::number(id)));
            sprites << c;
        }
        // As the catalogue describes them: a plain white floor, a speckled floor, a solid wall,
        // and walls with small white details.
        QCOMPARE(count(cell(image, 0), Black), 0);
        QVERIFY(count(cell(image, 1), Black) >= 1 && count(cell(image, 1), Black) <= 64);
        QCOMPARE(count(cell(image, 89), Black), 256);
        for (int id = 90; id <= 97; ++id)
            QVERIFY(count(cell(image, id), Black) >= 128 && count(cell(image, id), Black) < 256);
    }

    // The toolbar pictures under their keys on the background the toolbar makes transparent,
    // no two alike; the splash at its size; the generator's text sources.
    void picturesAndSources() {
        QList<QImage> seen;
        for (const char *key : {"New", "Open", "Save", "DWidth", "IWidth", "DHeight", "IHeight",
                                "AddLevel", "RemoveLevel", "PreviousLevel", "NextLevel", "About"}) {
            const QImage image = QImage(QStringLiteral(":/images/toolbar/%1.png").arg(key))
                                     .convertToFormat(QImage::Format_RGB32);
            QCOMPARE(image.size(), QSize(16, 16));
            QVERIFY2(image.pixel(0, 0) == Grey && image.pixel(15, 15) == Grey, key);
            QVERIFY2(count(image, Black) > 0 && !seen.contains(image), key);
            QCOMPARE(count(image, Yellow) > 0,
                     QByteArrayList({"Open", "AddLevel", "RemoveLevel", "About"}).contains(key));
            seen << image;
        }
        const QImage splash(":/images/splash.png");
        QCOMPARE(splash.size(), QSize(200, 134));
        QVERIFY(splash.format() == QImage::Format_Indexed8 && splash.colorCount() >= 16);
        // Icons: see-through or solid, never blended, in a few colours so they stay clear.
        for (int size : {32, 16}) {
            const QImage icon = QImage(QStringLiteral(":/images/icon%1.png").arg(size))
                                    .convertToFormat(QImage::Format_ARGB32);
            QSet<QRgb> opaque;
            for (int p = 0; p < size * size; ++p) {
                const QRgb pixel = icon.pixel(p % size, p / size);
                QVERIFY(qAlpha(pixel) == 0 || qAlpha(pixel) == 255);
                if (qAlpha(pixel))
                    opaque << pixel;
            }
            QVERIFY(icon.size() == QSize(size, size) && opaque.size() >= 3 && opaque.size() <= 16);
        }

        // The text sources the build draws from; a faulty one is refused with the line at fault.
        SourceError error;
        const auto font = PixelFont::parse("= I\nX\nX\nX\nX\nX\nX\nX\n", error);
        QVERIFY2(font, qPrintable(error.message));
        // The reference sheet: 8 columns of 64-pixel cells and 32 rows, with room for the ids,
        // each on a strip across the top of its cell, unlike the margin above.
        const QImage sheet = referenceSheet(Tileset::image(), *font);
        QVERIFY(sheet.width() >= 8 * 64 && sheet.height() >= 32 * 64);
        QVERIFY(sheet.pixel(12 + 63, 12) != sheet.pixel(12 + 63, 11));
        const QByteArray row = "0 1 2 3 4 5 6 7 8 9 10 11 12\n";
        const auto scene = parseSplashScene(
            row.repeated(4) + "0 1 2* 3 4 5 6 7 8 9 10 11 12\n" + row.repeated(4), error);
        QVERIFY2(scene, qPrintable(error.message));
        QCOMPARE(scene->cursor, QPoint(2, 4));
        QCOMPARE(scene->id(2, 4) + scene->id(12, 8), 2 + 12);

        const QByteArray seven = QByteArray("X\n").repeated(7), tile = "XXXXXXXX\n";
        const std::tuple<char, QByteArray, int, QString> faulty[] = {
            {'t', "# 0: floor\n...o....\n", 2, "character 'o' in column 4"},
            {'t', "# 0: a\n........\n# 1: b\n", 3, "tile 0 has 1 rows, expected 8"},
            {'t', "# x\n# 0: a\n" + tile.repeated(8), 0, "tile 0; tiles run to 177"},
            {'t', "# 0: a\n" + tile.repeated(7), 1, "tile 0 has 7 rows, expected 8"},
            {'t', "# 0: a\n" + tile.repeated(8) + tile, 10, "tile 0 has more than 8 rows"},
            {'t', "# 0: a\nXXXXXXXXX\n", 2, "row of 9 characters, expected 8"},
            {'t', "# 1: a\n", 1, "expected tile 0, found tile 1"},
            {'t', tile, 1, "sprite row before the first"},
            {'t', "# nothing here\n", 0, "no tiles"},
            {'l', "# c\nK 00000 black\n", 2, "six hexadecimal"},
            {'l', "K 00G000 black\n", 1, "six hexadecimal"},
            {'l', ". C0C0C0 silver\nK\n", 2, "expected"},
            {'l', "KK 000000 black\n", 1, "expected"},
            {'l', "K 000000 a\nK FFFFFF b\n", 2, "twice"},
            {'l', "# only a comment\n", 0, "no colour"},
            {'p', "KK\nK\n", 2, "row of 1 characters, expected 2"},
            {'p', "KK\nKZ\n", 2, "character 'Z' in column 2 is not in the legend"},
            {'p', "# c\nKK\n", 2, "1 rows, expected 2"},
            {'p', "KK\nKK\n\nKK\n", 4, "more than 2 rows"},
            {'f', "X\n", 1, "before the first"},
            {'f', "= I\nX\nX\n= J\n" + seven, 4, "glyph 'I' has 2 rows"},
            {'f', "# f\n= I\nX\n", 2, "glyph 'I' has 1 rows"},
            {'f', "= I\n" + seven + "X\n", 9, "more than 7 rows"},
            {'f', "= I\nX\nXX\n", 3, "row of 2 characters"},
            {'f', "= I\nx\n", 2, "character 'x'"},
            {'f', "= AB\n", 1, "one character"},
            {'f', "= I\n" + seven + "= I\n" + seven, 9, "twice"},
            {'s', "0* 1*" + row.mid(3), 1, "a second cursor"},
            {'s', "# s\n" + row + "0 1\n", 3, "2 tile ids, expected 13"},
            {'s', "178" + row.mid(1), 1, "\"178\" is not a tile id"},
            {'s', "a" + row.mid(1), 1, "\"a\" is not a tile id"},
            {'s', row.repeated(8), 8, "8 rows, expected 9"},
            {'s', row.repeated(10), 10, "more than 9 rows"}};
        for (const auto &[source, text, line, message] : faulty) {
            const bool parsed = source == 't'   ? bool(parseTileSprites(text, error))
                                : source == 'l' ? bool(parseColourLegend(text, error))
                                : source == 'p'
                                    ? bool(parsePixelArt(text, {{'K', Black}}, {2, 2}, error))
                                : source == 'f' ? bool(PixelFont::parse(text, error))
                                                : bool(parseSplashScene(text, error));
            QVERIFY2(!parsed && error.line == line && error.message.contains(message),
                     qPrintable(error.describe(text)));
        }
        // The generator as the build runs it: a faulty run fails and leaves an earlier image be.
        QTemporaryDir dir;
        const QString output = dir.filePath("out.png"), tiles = dir.filePath("tiles.txt");
        putFile(tiles, std::get<1>(faulty[0]));
        const QStringList runs[] = {
            {"tileset", tiles, output},
            {"picture", RESOURCES "/colours.txt", RESOURCES "/icon32.txt", "16x16", output},
            {"tilesets", RESOURCES "/tiles.txt", output}};
        for (const QStringList &arguments : runs) {
            QProcess run;
            run.start(IMAGEGEN, arguments);
            QVERIFY(run.waitForFinished() && run.exitCode() == 1);
            QVERIFY(!QFile::exists(output) || fileBytes(output) == "earlier");
            putFile(output, "earlier");
        }
        QProcess sheetRun;
        sheetRun.start(IMAGEGEN, {"sheet", RESOURCES "/tiles.txt", RESOURCES "/font.txt", output});
        QVERIFY(sheetRun.waitForFinished() && sheetRun.exitCode() == 0);
        QCOMPARE(QImage(output).size(), sheet.size());
    }

    // Every cell is a copy of its tile's cell, or of 255's outside the level, read from a level
    // whose every cell holds another id; a tileset that cannot be drawn from paints grey.
    void drawLevel() {
        // Red is the tile id, green and blue the pixel's column and row in its cell.
        QImage coded(128, 512, QImage::Format_RGB32);
        for (int p = 0; p < 128 * 512; ++p)
            coded.setPixel(p % 128, p / 128,
                           qRgb(p % 128 / 16 + p / 2048 * 8, p % 16, p / 128 % 16));
        const QImage view(512, 512, QImage::Format_RGB32), none;
        // Level size, the view's image before, the tileset (none: the editor's), and if unusable.
        const std::tuple<int, int, QImage, QImage, bool> rows[] = {
            {12, 8, none, coded, false},
            {32, 32, view.copy(0, 0, 99, 40), coded, false},
            {32, 8, view.convertToFormat(QImage::Format_ARGB32), coded, false},
            {25, 17, none, none, false},
            {32, 32, view, coded.convertToFormat(QImage::Format_ARGB32), true},
            {32, 32, view, coded.copy(0, 0, 128, 256), true}};
        for (auto [width, height, target, tileset, grey] : rows) {
            LevelRecord level;
            level.header[LevelRecord::Width] = std::uint8_t(width);
            level.header[LevelRecord::Height] = std::uint8_t(height);
            for (int i = 0; i < 1024; ++i)
                level.tile(i % 32, i / 32) = std::uint8_t(i % 32 * 7 + i / 32 * 13);
            tileset.isNull() ? ::drawLevel(level, target) : ::drawLevel(level, target, tileset);
            const QImage &source = tileset.isNull() ? Tileset::image() : tileset;
            QCOMPARE(target.size(), QSize(512, 512));
            QCOMPARE(target.format(), QImage::Format_RGB32);
            for (int p = 0; p < 512 * 512; ++p) {
                const int x = p % 512, y = p / 512,
                          id = level.contains(x / 16, y / 16) ? level.tile(x / 16, y / 16) : 255;
                const QRgb pixel = target.pixel(x, y),
                           tile = source.pixel(16 * (id % 8) + x % 16, 16 * (id / 8) + y % 16);
                if (pixel != (grey ? Grey : tile) ||
                    (tileset.isNull() && (id >= 178) != (pixel == Grey)))
                    QFAIL(qPrintable(
                        QStringLiteral("%1 x %2: %3,%4").arg(width).arg(height).arg(x).arg(y)));
            }
        }
    }

    // Markers are outlines 2 pixels wide inside their 16 x 16 square over the level's picture,
    // also where they lie off the cell grid.
    void surfacesShowTheirPicturesUnderMarkers() {
        LevelView view;
        QCOMPARE(count(view.image(), Grey), 512 * 512); // before anything is drawn
        LevelRecord level;
        level.reset();
        view.drawLevel(level, Tileset::image());
        const std::tuple<const char *, QRgb, QPoint> markers[] = {
            {"levelCursor", qRgb(255, 128, 0), {0, 0}},
            {"shpStart", qRgb(128, 255, 128), {16, 32}},
            {"shpTake", qRgb(0, 0, 192), {21, 7}}};
        for (const auto &[name, colour, at] : markers)
            (new Marker(name, colour, &view))->place(at);
        view.show();
        view.present();
        QImage expected = view.image();
        QPainter painter(&expected);
        for (const auto &[name, colour, at] : markers) {
            painter.fillRect(QRect(at, QSize(16, 16)), colour);
            painter.drawImage(at + QPoint(2, 2), view.image(),
                              QRect(at + QPoint(2, 2), QSize(12, 12)));
        }
        painter.end();
        QCOMPARE(view.grab().toImage().convertToFormat(QImage::Format_RGB32), expected);
    }
};

QTEST_MAIN(PicturesTest)
#include "PicturesTest.moc"
