#include <QFile>
#include <QImage>
#include <QSet>
#include <QtTest>

namespace {

constexpr QRgb Black = 0xff000000;
constexpr QRgb White = 0xffffffff;
constexpr QRgb Grey = 0xffc0c0c0;
constexpr QRgb Yellow = 0xffffff00;

const QImage &tileset() {
    static const QImage image =
        QImage(QStringLiteral(":/images/tileset.bmp")).convertToFormat(QImage::Format_RGB32);
    return image;
}

QImage cell(int id) {
    return tileset().copy(16 * (id % 8), 16 * (id / 8), 16, 16);
}

QImage loadToolbarImage(const QString &key) {
    return QImage(QStringLiteral(":/images/toolbar/%1.png").arg(key))
        .convertToFormat(QImage::Format_ARGB32);
}

QSet<QRgb> colours(const QImage &image) {
    QSet<QRgb> found;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            found.insert(image.pixel(x, y));
    return found;
}

quint32 littleEndian(const QByteArray &bytes, int offset, int size) {
    quint32 value = 0;
    for (int i = size - 1; i >= 0; --i)
        value = value << 8 | quint8(bytes[offset + i]);
    return value;
}

} // namespace

class ArtworkImagesTest : public QObject {
    Q_OBJECT

private slots:
    void tilesetHeaderField_data();
    void tilesetHeaderField();
    void tilesetRowsAreStoredBottomUp();
    void tilesetLoadsAtItsSize();
    void placeableTilesAreDoubledBlackAndWhite();
    void cellsBeyondThePlaceableTilesArePlainGrey();
    void noTwoSpritesAlike();
    void catalogueAppearances_data();
    void catalogueAppearances();

    void toolbarImage_data();
    void toolbarImage();
    void toolbarPairsMatch_data();
    void toolbarPairsMatch();

    void icon_data();
    void icon();
    void splashIs256ColoursAtItsSize();
};

void ArtworkImagesTest::tilesetHeaderField_data() {
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<quint32>("expected");
    // 128 x 512 at 3 bytes a pixel: rows of 384 bytes need no padding.
    const quint32 pixelBytes = 128 * 512 * 3;
    QTest::newRow("signature BM") << 0 << 2 << quint32('B' | 'M' << 8);
    QTest::newRow("file size") << 2 << 4 << 54 + pixelBytes;
    QTest::newRow("reserved") << 6 << 4 << 0u;
    QTest::newRow("pixel data offset") << 10 << 4 << 54u;
    QTest::newRow("information header of 40 bytes") << 14 << 4 << 40u;
    QTest::newRow("width") << 18 << 4 << 128u;
    QTest::newRow("height, positive for bottom-up") << 22 << 4 << 512u;
    QTest::newRow("one plane") << 26 << 2 << 1u;
    QTest::newRow("24 bits a pixel") << 28 << 2 << 24u;
    QTest::newRow("no compression") << 30 << 4 << 0u;
    QTest::newRow("96 dpi across") << 38 << 4 << 3780u;
    QTest::newRow("96 dpi down") << 42 << 4 << 3780u;
    QTest::newRow("no colour table") << 46 << 4 << 0u;
}

void ArtworkImagesTest::tilesetHeaderField() {
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(quint32, expected);
    QFile file(QStringLiteral(":/images/tileset.bmp"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QCOMPARE(bytes.size(), 54 + 128 * 512 * 3);
    QCOMPARE(littleEndian(bytes, offset, size), expected);
}

void ArtworkImagesTest::tilesetRowsAreStoredBottomUp() {
    QFile file(QStringLiteral(":/images/tileset.bmp"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const int rowBytes = 128 * 3;
    // The first stored row is the bottom of the grey cells 248..255; the last is the top row of
    // tile 0, plain white.
    QCOMPARE(bytes.mid(54, rowBytes), QByteArray(rowBytes, char(192)));
    QCOMPARE(bytes.mid(bytes.size() - rowBytes, 16 * 3), QByteArray(16 * 3, char(255)));
}

void ArtworkImagesTest::tilesetLoadsAtItsSize() {
    QCOMPARE(tileset().size(), QSize(128, 512));
}

void ArtworkImagesTest::placeableTilesAreDoubledBlackAndWhite() {
    for (int id = 0; id < 178; ++id) {
        const QImage c = cell(id);
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x) {
                const QRgb p = c.pixel(x, y);
                if (p != Black && p != White)
                    QFAIL(qPrintable(QStringLiteral("tile %1 pixel (%2, %3) is #%4")
                                         .arg(id)
                                         .arg(x)
                                         .arg(y)
                                         .arg(p & 0xffffff, 6, 16, QLatin1Char('0'))));
                if (p != c.pixel(x & ~1, y & ~1))
                    QFAIL(qPrintable(QStringLiteral("tile %1 pixel (%2, %3) breaks its 2 x 2 block")
                                         .arg(id)
                                         .arg(x)
                                         .arg(y)));
            }
    }
}

void ArtworkImagesTest::cellsBeyondThePlaceableTilesArePlainGrey() {
    for (int id = 178; id < 256; ++id)
        QVERIFY2(colours(cell(id)) == QSet<QRgb>{Grey}, qPrintable(QString::number(id)));
}

void ArtworkImagesTest::noTwoSpritesAlike() {
    QHash<QByteArray, int> seen;
    for (int id = 0; id < 178; ++id) {
        const QImage c = cell(id);
        const QByteArray key(reinterpret_cast<const char *>(c.constBits()), c.sizeInBytes());
        const auto twin = seen.constFind(key);
        if (twin != seen.constEnd())
            QFAIL(qPrintable(QStringLiteral("tiles %1 and %2 look the same").arg(*twin).arg(id)));
        seen.insert(key, id);
    }
}

void ArtworkImagesTest::catalogueAppearances_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("hasWhite");
    QTest::addColumn<bool>("hasBlack");
    QTest::addColumn<int>("mostBlackPixels"); // upper bound on black pixels in the cell
    QTest::newRow("0: Normal floor, plain white") << 0 << true << false << 0;
    QTest::newRow("1: Hatchery floor, speckled") << 1 << true << true << 64;
    QTest::newRow("89: solid wall, all black") << 89 << false << true << 256;
    for (int id = 90; id <= 97; ++id)
        QTest::addRow("%d: wall with small white details", id) << id << true << true << 255;
}

void ArtworkImagesTest::catalogueAppearances() {
    QFETCH(int, id);
    QFETCH(bool, hasWhite);
    QFETCH(bool, hasBlack);
    QFETCH(int, mostBlackPixels);
    const QImage c = cell(id);
    int black = 0;
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            black += c.pixel(x, y) == Black;
    QCOMPARE(black > 0, hasBlack);
    QCOMPARE(black < 256, hasWhite);
    QVERIFY2(black <= mostBlackPixels, qPrintable(QString::number(black)));
    // "Small" details: a wall is still mostly black.
    if (id >= 90 && id <= 97)
        QVERIFY2(black >= 256 / 2, qPrintable(QString::number(black)));
}

void ArtworkImagesTest::toolbarImage_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QList<QRgb>>("needs"); // colours the description calls for
    const QList<QRgb> black = {Black};
    const QList<QRgb> yellowAndBlack = {Yellow, Black};
    QTest::newRow("New") << "New" << QList<QRgb>{Black, White};
    QTest::newRow("Open") << "Open" << black;
    QTest::newRow("Save") << "Save" << black;
    for (const char *key : {"DWidth", "IWidth", "DHeight", "IHeight", "PreviousLevel", "NextLevel"})
        QTest::newRow(key) << key << black;
    for (const char *key : {"AddLevel", "RemoveLevel", "About"})
        QTest::newRow(key) << key << yellowAndBlack;
}

void ArtworkImagesTest::toolbarImage() {
    QFETCH(QString, key);
    QFETCH(QList<QRgb>, needs);
    const QImage image = loadToolbarImage(key);
    QVERIFY2(!image.isNull(), qPrintable(key));
    QCOMPARE(image.size(), QSize(16, 16));
    // The corners are background, which the toolbar makes transparent.
    for (QPoint corner : {QPoint(0, 0), QPoint(15, 0), QPoint(0, 15), QPoint(15, 15)})
        QCOMPARE(image.pixel(corner), Grey);
    const QSet<QRgb> used = colours(image);
    for (QRgb colour : needs)
        QVERIFY2(used.contains(colour), qPrintable(QString::number(colour, 16)));
    // Black-only pictures (chevrons, arrows) are black on the background and nothing else.
    if (needs == QList<QRgb>{Black} && key != "Open" && key != "Save")
        QCOMPARE(used, (QSet<QRgb>{Black, Grey}));
}

void ArtworkImagesTest::toolbarPairsMatch_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("partner");
    QTest::addColumn<QString>("relation");
    QTest::newRow("Previous mirrors Next") << "PreviousLevel"
                                           << "NextLevel"
                                           << "mirrored";
    QTest::newRow("DWidth is symmetric") << "DWidth"
                                         << "DWidth"
                                         << "mirrored";
    QTest::newRow("IWidth is symmetric") << "IWidth"
                                         << "IWidth"
                                         << "mirrored";
    QTest::newRow("DHeight turns DWidth upright") << "DHeight"
                                                  << "DWidth"
                                                  << "transposed";
    QTest::newRow("IHeight turns IWidth upright") << "IHeight"
                                                  << "IWidth"
                                                  << "transposed";
    QTest::newRow("DWidth differs from IWidth") << "DWidth"
                                                << "IWidth"
                                                << "different";
    QTest::newRow("plus and minus differ") << "AddLevel"
                                           << "RemoveLevel"
                                           << "different";
}

void ArtworkImagesTest::toolbarPairsMatch() {
    QFETCH(QString, key);
    QFETCH(QString, partner);
    QFETCH(QString, relation);
    const QImage a = loadToolbarImage(key);
    const QImage b = loadToolbarImage(partner);
    QImage expected;
    if (relation == "mirrored")
        expected = b.mirrored(true, false);
    else if (relation == "transposed")
        expected = b.transformed(QTransform(0, 1, 1, 0, 0, 0));
    if (relation == "different")
        QVERIFY(a != b);
    else
        QCOMPARE(a, expected.convertToFormat(a.format()));
}

void ArtworkImagesTest::icon_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("size");
    QTest::newRow("32") << ":/images/icon32.png" << 32;
    QTest::newRow("16") << ":/images/icon16.png" << 16;
}

void ArtworkImagesTest::icon() {
    QFETCH(QString, path);
    QFETCH(int, size);
    const QImage image = QImage(path).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(size, size));
    QSet<QRgb> opaque;
    for (QRgb colour : colours(image))
        if (qAlpha(colour) == 255)
            opaque.insert(colour);
        else
            QCOMPARE(qAlpha(colour), 0); // see-through or solid, never blended
    QVERIFY2(opaque.size() <= 16, qPrintable(QString::number(opaque.size())));
    QVERIFY(opaque.size() >= 3); // a picture, not a blank square
}

void ArtworkImagesTest::splashIs256ColoursAtItsSize() {
    const QImage image(QStringLiteral(":/images/splash.png"));
    QCOMPARE(image.size(), QSize(200, 134));
    QCOMPARE(image.format(), QImage::Format_Indexed8);
    QVERIFY(image.colorCount() <= 256);
    // The title is drawn over the scene: the picture is far from a flat colour.
    QVERIFY(colours(image.convertToFormat(QImage::Format_RGB32)).size() >= 16);
}

QTEST_GUILESS_MAIN(ArtworkImagesTest)
#include "ArtworkImagesTest.moc"
