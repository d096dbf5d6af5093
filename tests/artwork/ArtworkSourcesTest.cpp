#include "ExactPalette.h"
#include "PixelArt.h"
#include "PixelFont.h"
#include "SplashImage.h"
#include "TileSprites.h"
#include "TilesetImage.h"

#include <QtTest>

namespace {

// A well-formed sprite source: one comment line, then for each tile its header and 8 rows.
// Tile t's header is on line 2 + 9 t and its row r on line 3 + 9 t + r, so edits and expected
// line numbers can be written by hand. Row r of tile t shows the bits of (t + r * 31) % 256.
QList<QByteArray> spriteLines() {
    QList<QByteArray> lines{"# sprites"};
    for (int t = 0; t < TileSprites::Count; ++t) {
        lines.append("# " + QByteArray::number(t) + ": tile");
        for (int r = 0; r < 8; ++r) {
            QByteArray row;
            for (int x = 0; x < 8; ++x)
                row += ((t + r * 31) % 256 >> (7 - x)) & 1 ? 'X' : '.';
            lines.append(row);
        }
    }
    return lines;
}

int headerLine(int tile) {
    return 2 + 9 * tile;
}
int rowLine(int tile, int row) {
    return 3 + 9 * tile + row;
}

// The sprite source with `removed` lines from 1-based `line` on replaced by `inserted`.
QByteArray sprites(int line = 1, int removed = 0, const QList<QByteArray> &inserted = {}) {
    QList<QByteArray> lines = spriteLines();
    lines.remove(line - 1, removed);
    for (qsizetype i = 0; i < inserted.size(); ++i)
        lines.insert(line - 1 + i, inserted[i]);
    return lines.join('\n') + '\n';
}

bool parses(const QString &source, const QByteArray &text, SourceError &error) {
    if (source == "sprites")
        return bool(parseTileSprites(text, error));
    if (source == "legend")
        return bool(parseColourLegend(text, error));
    if (source == "picture")
        return bool(parsePixelArt(text, {{'K', qRgb(0, 0, 0)}}, {2, 2}, error));
    if (source == "font")
        return bool(PixelFont::parse(text, error));
    return bool(parseSplashScene(text, error));
}

} // namespace

class ArtworkSourcesTest : public QObject {
    Q_OBJECT

private slots:
    void spritesBecomeDoubledCellsDespiteLineEndsAndComments() {
        QByteArray text = sprites();
        text.replace("\n", " \r\n")
            .replace("# 9: tile", "#9: no blank after the hash")
            .replace("# 7: tile", "\n# 7: tile")
            .replace("# 5: tile",
                     "# 5 walls follow: an ordinary comment, not a tile header\n# 5: tile");
        SourceError error;
        const auto tiles = parseTileSprites(text, error);
        QVERIFY2(tiles, qPrintable(error.describe("tiles")));
        const QImage image = tilesetImage(*tiles);
        QCOMPARE(image.size(), QSize(128, 512));
        QCOMPARE(image.dotsPerMeterX(), 3780);
        QCOMPARE(image.dotsPerMeterY(), 3780);
        // Tiles whose rows differ from their columns, so a swapped x and y shows.
        for (int id : {0, 1, 5, 7, 9, 64, 128, 177}) {
            const QPoint origin(16 * (id % 8), 16 * (id / 8));
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x) {
                    const bool black = ((id + y / 2 * 31) % 256 >> (7 - x / 2)) & 1;
                    QCOMPARE(image.pixel(origin + QPoint(x, y)),
                             black ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
                }
        }
        QCOMPARE(image.pixel(16 * (178 % 8), 16 * (178 / 8)), qRgb(192, 192, 192));
        QCOMPARE(image.pixel(127, 511), qRgb(192, 192, 192));
    }

    void pictureReadsThroughTheLegend() {
        SourceError error;
        const auto legend = parseColourLegend("K 000000 black\nY FFFF00 yellow\n- none\n", error);
        QVERIFY(legend);
        const auto picture =
            parsePixelArt("# two by three\nKY\r\n-K\nYY\n", *legend, {2, 3}, error);
        QVERIFY2(picture, qPrintable(error.message));
        QCOMPARE(picture->size(), QSize(2, 3));
        QCOMPARE(picture->pixel(0, 0), qRgb(0, 0, 0));
        QCOMPARE(picture->pixel(1, 0), qRgb(255, 255, 0));
        QCOMPARE(qAlpha(picture->pixel(0, 1)), 0);
        QCOMPARE(picture->pixel(1, 2), qRgb(255, 255, 0));
    }

    void fontMeasuresAndDraws() {
        SourceError error;
        const auto font = PixelFont::parse("= I\nX\nX\nX\nX\nX\nX\nX\n"
                                           "= space\n..\n..\n..\n..\n..\n..\n..\n"
                                           "= L\nX..\nX..\nX..\nX..\nX..\nX..\nXXX\n",
                                           error);
        QVERIFY2(font, qPrintable(error.describe("font")));
        // I (1) + gap + blank (2) + gap + L (3), twice the size; an unknown letter is skipped.
        QCOMPARE(font->width("I L", 2), 2 * (1 + 1 + 2 + 1 + 3));
        QCOMPARE(font->width("I?L", 1), 1 + 1 + 3);
        QList<QPoint> blocks;
        font->draw("IL", 10, 20, 2, [&](int x, int y) { blocks.append({x, y}); });
        QCOMPARE(blocks.size(), 7 + 9);
        QVERIFY(blocks.contains(QPoint(10, 20)));          // top of I
        QVERIFY(blocks.contains(QPoint(10 + 4 + 4, 32)));  // L's bottom right
        QVERIFY(!blocks.contains(QPoint(10 + 4 + 2, 20))); // L's top row has one pixel only
    }

    void sceneFindsTheCursor() {
        const QByteArray row = "0 1 2 3 4 5 6 7 8 9 10 11 12\n";
        SourceError error;
        const auto scene = parseSplashScene(
            row.repeated(4) + "0 1 2* 3 4 5 6 7 8 9 10 11 12\n" + row.repeated(4), error);
        QVERIFY2(scene, qPrintable(error.message));
        QCOMPARE(scene->cursor, QPoint(2, 4));
        QCOMPARE(scene->id(2, 4), 2);
        QCOMPARE(scene->id(12, 8), 12);
    }

    // Each row's name starts with the source it feeds. Every source names the line at fault (0 for
    // the whole file) so the build can point at it.
    void faultySourceRefused_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QByteArray &text, int line,
                            const QString &message) {
            QTest::newRow(name) << text << line << message;
        };
        row("sprites: lower-case x", sprites(rowLine(5, 2), 1, {"x......."}), rowLine(5, 2),
            "character 'x' in column 1");
        row("sprites: blank inside a row", sprites(rowLine(6, 0), 1, {"... ...."}), rowLine(6, 0),
            "character ' ' in column 4");
        row("sprites: short row", sprites(rowLine(7, 7), 1, {"......."}), rowLine(7, 7),
            "row of 7 characters, expected 8");
        row("sprites: long row", sprites(rowLine(7, 1), 1, {"XXXXXXXXX"}), rowLine(7, 1),
            "row of 9 characters, expected 8");
        row("sprites: missing row", sprites(rowLine(10, 3), 1), headerLine(11) - 1,
            "tile 10 has 7 rows, expected 8");
        row("sprites: extra row", sprites(headerLine(11), 0, {"........"}), headerLine(11),
            "tile 10 has more than 8 rows");
        row("sprites: skipped id", sprites(headerLine(12), 1, {"# 13: tile"}), headerLine(12),
            "expected tile 12, found tile 13");
        row("sprites: repeated id", sprites(headerLine(12), 1, {"# 11: tile"}), headerLine(12),
            "expected tile 12, found tile 11");
        row("sprites: row before the first tile", sprites(2, 0, {"XXXXXXXX"}), 2,
            "sprite row before the first \"# 0:\" line");
        row("sprites: tile beyond 177",
            sprites(headerLine(178), 0,
                    QList<QByteArray>{"# 178: more"} + QList<QByteArray>(8, "XXXXXXXX")),
            headerLine(178), "tile 178 is beyond the last tile, 177");
        row("sprites: file ends early", sprites(headerLine(177), 9), 0,
            "the file ends after tile 176; tiles run to 177");
        row("sprites: last tile cut short", sprites(rowLine(177, 7), 1), headerLine(177),
            "tile 177 has 7 rows, expected 8");
        row("sprites: no tiles at all", "# nothing here\n", 0, "no tiles");

        row("legend: five digits", "# c\nK 00000 black\n", 2, "six hexadecimal");
        row("legend: not hexadecimal", "K 00G000 black\n", 1, "six hexadecimal");
        row("legend: no colour", ". C0C0C0 silver\nK\n", 2, "expected");
        row("legend: two-character key", "KK 000000 black\n", 1, "expected");
        row("legend: defined twice", "K 000000 a\nK FFFFFF b\n", 2, "twice");
        row("legend: empty", "# only a comment\n", 0, "no colour");

        row("picture: unknown character", "KK\nKZ\n", 2,
            "character 'Z' in column 2 is not in the legend");
        row("picture: narrow row", "KK\nK\n", 2, "row of 1 characters, expected 2");
        row("picture: too few rows", "# c\nKK\n", 2, "1 rows, expected 2");
        row("picture: too many rows", "KK\nKK\n\nKK\n", 4, "more than 2 rows");

        const QByteArray seven = "X\nX\nX\nX\nX\nX\nX\n";
        row("font: row before any glyph", "X\n", 1, "before the first");
        row("font: short glyph", "= I\nX\nX\n= J\n" + seven, 4, "glyph 'I' has 2 rows");
        row("font: short last glyph", "# f\n= I\nX\n", 2, "glyph 'I' has 1 rows");
        row("font: tall glyph", "= I\n" + seven + "X\n", 9, "more than 7 rows");
        row("font: ragged glyph", "= I\nX\nXX\n", 3, "row of 2 characters");
        row("font: bad character", "= I\nx\n", 2, "character 'x'");
        row("font: two names", "= AB\n", 1, "one character");
        row("font: defined twice", "= I\n" + seven + "= I\n" + seven, 9, "twice");

        const QByteArray scene = "0 1 2 3 4 5 6 7 8 9 10 11 12\n";
        row("scene: short row", "# s\n" + scene + "0 1\n", 3, "2 tile ids, expected 13");
        row("scene: id beyond 177", "178" + scene.mid(1), 1, "\"178\" is not a tile id");
        row("scene: not a number", "a" + scene.mid(1), 1, "\"a\" is not a tile id");
        row("scene: too few rows", scene.repeated(8), 8, "8 rows, expected 9");
        row("scene: too many rows", scene.repeated(10), 10, "more than 9 rows");
        row("scene: two cursors", "0* 1*" + scene.mid(3), 1, "a second cursor");
        row("scene: cursor mark alone", "* 1" + scene.mid(3), 1, "\"\" is not a tile id");
    }

    void faultySourceRefused() {
        QFETCH(QByteArray, text);
        QFETCH(int, line);
        QFETCH(QString, message);
        SourceError error;
        QVERIFY(
            !parses(QString::fromLatin1(QTest::currentDataTag()).section(':', 0, 0), text, error));
        QCOMPARE(error.line, line);
        QVERIFY2(error.message.contains(message), qPrintable(error.message));
    }

    void exactPaletteKeepsEveryColourUpTo256() {
        QImage image(16, 16, QImage::Format_ARGB32);
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x)
                image.setPixel(x, y, x == y ? qRgba(1, 2, 3, 0) : qRgb(x * 16, y * 16, 7));
        const auto indexed = toExactPalette(image);
        QVERIFY(indexed);
        QCOMPARE(indexed->format(), QImage::Format_Indexed8);
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x)
                QCOMPARE(indexed->pixel(x, y),
                         x == y ? qRgba(0, 0, 0, 0) : qRgb(x * 16, y * 16, 7));
        QCOMPARE(indexed->colorCount(), 16 * 15 + 1); // the see-through diagonal is one colour

        QImage wide(257, 1, QImage::Format_RGB32);
        for (int x = 0; x < 257; ++x)
            wide.setPixel(x, 0, qRgb(x % 256, x / 256, 0));
        QVERIFY(!toExactPalette(wide));
        QVERIFY(toExactPalette(wide.copy(0, 0, 256, 1)));
    }
};

QTEST_GUILESS_MAIN(ArtworkSourcesTest)
#include "ArtworkSourcesTest.moc"
