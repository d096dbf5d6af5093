#include "ExactPalette.h"
#include "PixelArt.h"
#include "PixelFont.h"
#include "SplashImage.h"
#include "TileSprites.h"
#include "TilesetImage.h"

#include <QtTest>
#include <functional>

namespace {

using Edit = std::function<void(QList<QByteArray> &)>;

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
// Index into spriteLines() of a 1-based line number.
int at(int line) {
    return line - 1;
}

QByteArray joined(const QList<QByteArray> &lines) {
    return lines.join('\n') + '\n';
}

} // namespace

class ArtworkSourcesTest : public QObject {
    Q_OBJECT

private slots:
    void spritesRead();
    void spritesToleratesLineEndsAndComments();
    void spritesRefused_data();
    void spritesRefused();
    void tilesetDoublesEachSpriteIntoItsCell();

    void legendRefused_data();
    void legendRefused();
    void pictureReadsThroughTheLegend();
    void pictureRefused_data();
    void pictureRefused();

    void fontMeasuresAndDraws();
    void fontRefused_data();
    void fontRefused();

    void sceneFindsTheCursor();
    void sceneRefused_data();
    void sceneRefused();

    void exactPaletteKeepsEveryColour();
    void exactPaletteRefusesMoreThan256Colours();
};

void ArtworkSourcesTest::spritesRead() {
    SourceError error;
    const auto tiles = parseTileSprites(joined(spriteLines()), error);
    QVERIFY2(tiles, qPrintable(error.describe("tiles")));
    for (int t : {0, 1, 100, TileSprites::Count - 1})
        for (int r = 0; r < 8; ++r)
            QCOMPARE(int(tiles->sprites[t][r]), (t + r * 31) % 256);
    // Bit 7 is the leftmost pixel: 0x80 in tile 0 row ... check through black().
    QVERIFY(!tiles->black(0, 0, 0));
    QVERIFY(tiles->black(1, 7, 0));   // row 0 of tile 1 is 00000001
    QVERIFY(tiles->black(128, 0, 0)); // row 0 of tile 128 is 10000000
}

void ArtworkSourcesTest::spritesToleratesLineEndsAndComments() {
    QList<QByteArray> lines = spriteLines();
    for (QByteArray &line : lines)
        line += " \r";
    // From the end backwards, so each edit leaves the earlier line numbers in place.
    lines[at(headerLine(9))] = "#9: no blank after the hash";
    lines.insert(at(headerLine(7)), "");
    lines.insert(at(headerLine(5)), "# 5 walls follow: an ordinary comment, not a tile header");
    SourceError error;
    QVERIFY2(parseTileSprites(joined(lines), error), qPrintable(error.describe("tiles")));
}

void ArtworkSourcesTest::spritesRefused_data() {
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");

    QTest::newRow("lower-case x") << Edit([](auto &l) { l[at(rowLine(5, 2))][0] = 'x'; })
                                  << rowLine(5, 2) << "character 'x' in column 1";
    QTest::newRow("blank inside a row") << Edit([](auto &l) { l[at(rowLine(6, 0))][3] = ' '; })
                                        << rowLine(6, 0) << "character ' ' in column 4";
    QTest::newRow("short row") << Edit([](auto &l) { l[at(rowLine(7, 7))].chop(1); })
                               << rowLine(7, 7) << "row of 7 characters, expected 8";
    QTest::newRow("long row") << Edit([](auto &l) { l[at(rowLine(7, 1))] += 'X'; }) << rowLine(7, 1)
                              << "row of 9 characters, expected 8";
    QTest::newRow("missing row") << Edit([](auto &l) { l.removeAt(at(rowLine(10, 3))); })
                                 << headerLine(11) - 1 << "tile 10 has 7 rows, expected 8";
    QTest::newRow("extra row") << Edit([](auto &l) { l.insert(at(headerLine(11)), "........"); })
                               << headerLine(11) << "tile 10 has more than 8 rows";
    QTest::newRow("skipped id") << Edit([](auto &l) { l[at(headerLine(12))] = "# 13: tile"; })
                                << headerLine(12) << "expected tile 12, found tile 13";
    QTest::newRow("repeated id") << Edit([](auto &l) { l[at(headerLine(12))] = "# 11: tile"; })
                                 << headerLine(12) << "expected tile 12, found tile 11";
    QTest::newRow("row before the first tile") << Edit([](auto &l) { l.insert(1, "XXXXXXXX"); })
                                               << 2 << "sprite row before the first \"# 0:\" line";
    QTest::newRow("tile beyond 177") << Edit([](auto &l) {
        l.append("# 178: one too many");
        l.append(QList<QByteArray>(8, "XXXXXXXX"));
    }) << headerLine(178) << "tile 178 is beyond the last tile, 177";
    QTest::newRow("file ends early") << Edit([](auto &l) { l.resize(at(headerLine(177))); }) << 0
                                     << "the file ends after tile 176; tiles run to 177";
    QTest::newRow("last tile cut short") << Edit([](auto &l) { l.removeLast(); }) << headerLine(177)
                                         << "tile 177 has 7 rows, expected 8";
    QTest::newRow("no tiles at all")
        << Edit([](auto &l) { l = {"# nothing here"}; }) << 0 << "no tiles";
}

void ArtworkSourcesTest::spritesRefused() {
    QFETCH(Edit, edit);
    QFETCH(int, line);
    QFETCH(QString, message);
    QList<QByteArray> lines = spriteLines();
    edit(lines);
    SourceError error;
    QVERIFY(!parseTileSprites(joined(lines), error));
    QCOMPARE(error.line, line);
    QVERIFY2(error.message.contains(message), qPrintable(error.message));
}

void ArtworkSourcesTest::tilesetDoublesEachSpriteIntoItsCell() {
    SourceError error;
    const auto tiles = parseTileSprites(joined(spriteLines()), error);
    QVERIFY(tiles);
    const QImage image = tilesetImage(*tiles);
    QCOMPARE(image.size(), QSize(128, 512));
    QCOMPARE(image.dotsPerMeterX(), 3780);
    QCOMPARE(image.dotsPerMeterY(), 3780);
    // Tiles whose rows differ from their columns, so a swapped x and y shows.
    for (int id : {1, 9, 64, 127, 177}) {
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

void ArtworkSourcesTest::legendRefused_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("five digits") << QByteArray("# c\nK 00000 black\n") << 2 << "six hexadecimal";
    QTest::newRow("not hexadecimal") << QByteArray("K 00G000 black\n") << 1 << "six hexadecimal";
    QTest::newRow("no colour") << QByteArray(". C0C0C0 silver\nK\n") << 2 << "expected";
    QTest::newRow("two-character key") << QByteArray("KK 000000 black\n") << 1 << "expected";
    QTest::newRow("defined twice") << QByteArray("K 000000 a\nK FFFFFF b\n") << 2 << "twice";
    QTest::newRow("empty") << QByteArray("# only a comment\n") << 0 << "no colour";
}

void ArtworkSourcesTest::legendRefused() {
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, message);
    SourceError error;
    QVERIFY(!parseColourLegend(text, error));
    QCOMPARE(error.line, line);
    QVERIFY2(error.message.contains(message), qPrintable(error.message));
}

void ArtworkSourcesTest::pictureReadsThroughTheLegend() {
    SourceError error;
    const auto legend = parseColourLegend("K 000000 black\nY FFFF00 yellow\n- none clear\n", error);
    QVERIFY(legend);
    const auto picture = parsePixelArt("# two by three\nKY\r\n-K\nYY\n", *legend, {2, 3}, error);
    QVERIFY2(picture, qPrintable(error.message));
    QCOMPARE(picture->size(), QSize(2, 3));
    QCOMPARE(picture->pixel(0, 0), qRgb(0, 0, 0));
    QCOMPARE(picture->pixel(1, 0), qRgb(255, 255, 0));
    QCOMPARE(qAlpha(picture->pixel(0, 1)), 0);
    QCOMPARE(picture->pixel(1, 2), qRgb(255, 255, 0));
}

void ArtworkSourcesTest::pictureRefused_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown character")
        << QByteArray("KK\nKZ\n") << 2 << "character 'Z' in column 2 is not in the legend";
    QTest::newRow("narrow row") << QByteArray("KK\nK\n") << 2 << "row of 1 characters, expected 2";
    QTest::newRow("too few rows") << QByteArray("# c\nKK\n") << 2 << "1 rows, expected 2";
    QTest::newRow("too many rows") << QByteArray("KK\nKK\n\nKK\n") << 4 << "more than 2 rows";
}

void ArtworkSourcesTest::pictureRefused() {
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, message);
    const ColourLegend legend{{'K', qRgb(0, 0, 0)}};
    SourceError error;
    QVERIFY(!parsePixelArt(text, legend, {2, 2}, error));
    QCOMPARE(error.line, line);
    QVERIFY2(error.message.contains(message), qPrintable(error.message));
}

void ArtworkSourcesTest::fontMeasuresAndDraws() {
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
    QVERIFY(blocks.contains(QPoint(10 + 4 + 4, 32)));  // L's bottom-right: x 10 + (1+1)*2 + 2*2
    QVERIFY(!blocks.contains(QPoint(10 + 4 + 2, 20))); // L's top row has one pixel only
}

void ArtworkSourcesTest::fontRefused_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    const QByteArray seven = "X\nX\nX\nX\nX\nX\nX\n";
    QTest::newRow("row before any glyph") << QByteArray("X\n") << 1 << "before the first";
    QTest::newRow("short glyph") << "= I\nX\nX\n= J\n" + seven << 4 << "glyph 'I' has 2 rows";
    QTest::newRow("short last glyph") << QByteArray("# f\n= I\nX\n") << 2 << "glyph 'I' has 1 rows";
    QTest::newRow("tall glyph") << "= I\n" + seven + "X\n" << 9 << "more than 7 rows";
    QTest::newRow("ragged glyph") << QByteArray("= I\nX\nXX\n") << 3 << "row of 2 characters";
    QTest::newRow("bad character") << QByteArray("= I\nx\n") << 2 << "character 'x'";
    QTest::newRow("two names") << QByteArray("= AB\n") << 1 << "one character";
    QTest::newRow("defined twice") << "= I\n" + seven + "= I\n" + seven << 9 << "twice";
}

void ArtworkSourcesTest::fontRefused() {
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, message);
    SourceError error;
    QVERIFY(!PixelFont::parse(text, error));
    QCOMPARE(error.line, line);
    QVERIFY2(error.message.contains(message), qPrintable(error.message));
}

void ArtworkSourcesTest::sceneFindsTheCursor() {
    const QByteArray row = "0 1 2 3 4 5 6 7 8 9 10 11 12\n";
    const QByteArray text = row.repeated(4) + "0 1 2* 3 4 5 6 7 8 9 10 11 12\n" + row.repeated(4);
    SourceError error;
    const auto scene = parseSplashScene(text, error);
    QVERIFY2(scene, qPrintable(error.message));
    QCOMPARE(scene->cursor, QPoint(2, 4));
    QCOMPARE(scene->id(2, 4), 2);
    QCOMPARE(scene->id(12, 8), 12);
}

void ArtworkSourcesTest::sceneRefused_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    const QByteArray row = "0 1 2 3 4 5 6 7 8 9 10 11 12\n";
    const QByteArray nine = row.repeated(9);
    QTest::newRow("short row") << "# s\n" + row + "0 1\n" << 3 << "2 tile ids, expected 13";
    QTest::newRow("id beyond 177") << "178" + row.mid(1) << 1 << "\"178\" is not a tile id";
    QTest::newRow("not a number") << "a" + row.mid(1) << 1 << "\"a\" is not a tile id";
    QTest::newRow("too few rows") << row.repeated(8) << 8 << "8 rows, expected 9";
    QTest::newRow("too many rows") << nine + row << 10 << "more than 9 rows";
    QTest::newRow("two cursors") << "0* 1*" + row.mid(3) << 1 << "a second cursor";
    QTest::newRow("cursor mark alone") << "* 1" + row.mid(3) << 1 << "\"\" is not a tile id";
}

void ArtworkSourcesTest::sceneRefused() {
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, message);
    SourceError error;
    QVERIFY(!parseSplashScene(text, error));
    QCOMPARE(error.line, line);
    QVERIFY2(error.message.contains(message), qPrintable(error.message));
}

void ArtworkSourcesTest::exactPaletteKeepsEveryColour() {
    QImage image(16, 16, QImage::Format_ARGB32);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            image.setPixel(x, y, x == y ? qRgba(1, 2, 3, 0) : qRgb(x * 16, y * 16, 7));
    const auto indexed = toExactPalette(image);
    QVERIFY(indexed);
    QCOMPARE(indexed->format(), QImage::Format_Indexed8);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            QCOMPARE(indexed->pixel(x, y), x == y ? qRgba(0, 0, 0, 0) : qRgb(x * 16, y * 16, 7));
    QCOMPARE(indexed->colorCount(), 16 * 15 + 1); // the see-through diagonal is one colour
}

void ArtworkSourcesTest::exactPaletteRefusesMoreThan256Colours() {
    QImage image(257, 1, QImage::Format_RGB32);
    for (int x = 0; x < 257; ++x)
        image.setPixel(x, 0, qRgb(x % 256, x / 256, 0));
    QVERIFY(!toExactPalette(image));
    QVERIFY(toExactPalette(image.copy(0, 0, 256, 1)));
}

QTEST_GUILESS_MAIN(ArtworkSourcesTest)
#include "ArtworkSourcesTest.moc"
