#include <QFile>
#include <QImage>
#include <QSet>
#include <QtTest>

namespace {

constexpr QRgb Black = 0xff000000;
constexpr QRgb White = 0xffffffff;
constexpr QRgb Grey = 0xffc0c0c0;
constexpr QRgb Yellow = 0xffffff00;

const QString TilesetPath = QStringLiteral(":/images/tileset.bmp");

QImage cell(int id) {
    static const QImage tileset = QImage(TilesetPath).convertToFormat(QImage::Format_RGB32);
    return tileset.copy(16 * (id % 8), 16 * (id / 8), 16, 16);
}

QImage toolbarPicture(const QString &key) {
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

QByteArray pixelBytes(const QImage &image) {
    return QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
}

} // namespace

class ArtworkImagesTest : public QObject {
    Q_OBJECT

private slots:
    void tilesetFileBytes_data() {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("size");
        QTest::addColumn<quint32>("expected"); // little-endian
        // 128 x 512 at 3 bytes a pixel: rows of 384 bytes need no padding.
        QTest::newRow("signature BM") << 0 << 2 << quint32('B' | 'M' << 8);
        QTest::newRow("file size") << 2 << 4 << 54u + 128 * 512 * 3;
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
        QTest::newRow("bottom row first: grey id 248") << 54 << 3 << 0xc0c0c0u;
        QTest::newRow("top row last: white id 0") << 54 + 511 * 384 << 3 << 0xffffffu;
    }

    void tilesetFileBytes() {
        QFETCH(int, offset);
        QFETCH(int, size);
        QFETCH(quint32, expected);
        QFile file(TilesetPath);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes.size(), 54 + 128 * 512 * 3);
        quint32 value = 0;
        for (int i = size - 1; i >= 0; --i)
            value = value << 8 | quint8(bytes[offset + i]);
        QCOMPARE(value, expected);
    }

    // Ids 0..177 are distinct black-and-white sprites with every pixel doubled; the rest is grey.
    void tilesetCells() {
        QCOMPARE(QImage(TilesetPath).size(), QSize(128, 512));
        QHash<QByteArray, int> seen;
        for (int id = 0; id < 256; ++id) {
            const QImage c = cell(id);
            if (id >= 178) {
                QVERIFY2(colours(c) == QSet<QRgb>{Grey}, qPrintable(QString::number(id)));
                continue;
            }
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x) {
                    const QRgb p = c.pixel(x, y);
                    if ((p != Black && p != White) || p != c.pixel(x & ~1, y & ~1))
                        QFAIL(qPrintable(QStringLiteral("tile %1 at %2,%3").arg(id).arg(x).arg(y)));
                }
            const QByteArray key = pixelBytes(c);
            if (seen.contains(key))
                QFAIL(qPrintable(
                    QStringLiteral("tiles %1 and %2 look the same").arg(seen.value(key)).arg(id)));
            seen.insert(key, id);
        }
    }

    void catalogueAppearances_data() {
        QTest::addColumn<int>("id");
        QTest::addColumn<int>("leastBlack"); // pixels of 256
        QTest::addColumn<int>("mostBlack");
        QTest::newRow("0: Normal floor, plain white") << 0 << 0 << 0;
        QTest::newRow("1: Hatchery floor, speckled") << 1 << 1 << 64;
        QTest::newRow("89: solid wall, all black") << 89 << 256 << 256;
        // Small details: the wall stays mostly black.
        for (int id = 90; id <= 97; ++id)
            QTest::addRow("%d: wall with small white details", id) << id << 128 << 255;
    }

    void catalogueAppearances() {
        QFETCH(int, id);
        QFETCH(int, leastBlack);
        QFETCH(int, mostBlack);
        const QImage c = cell(id);
        const auto *pixels = reinterpret_cast<const QRgb *>(c.constBits());
        const auto black = std::count(pixels, pixels + 256, Black);
        QVERIFY2(leastBlack <= black && black <= mostBlack, qPrintable(QString::number(black)));
    }

    void toolbarImage_data() {
        QTest::addColumn<QList<QRgb>>("needs"); // colours the description calls for
        QTest::addColumn<bool>("onlyThose");    // and nothing else on the background
        QTest::addColumn<QString>("twin");      // another picture this one turns into
        const auto row = [](const char *key, const QList<QRgb> &needs, bool onlyThose,
                            const QString &twin) {
            QTest::newRow(key) << needs << onlyThose << twin;
        };
        row("New", {Black, White}, false, "");
        row("Open", {Black}, false, "");
        row("Save", {Black}, false, "");
        row("DWidth", {Black}, true, "DWidth mirrored");
        row("IWidth", {Black}, true, "IWidth mirrored");
        row("DHeight", {Black}, true, "DWidth transposed");
        row("IHeight", {Black}, true, "IWidth transposed");
        row("PreviousLevel", {Black}, true, "NextLevel mirrored");
        row("NextLevel", {Black}, true, "");
        row("AddLevel", {Yellow, Black}, false, "");
        row("RemoveLevel", {Yellow, Black}, false, "");
        row("About", {Yellow, Black}, false, "");
    }

    void toolbarImage() {
        QFETCH(QList<QRgb>, needs);
        QFETCH(bool, onlyThose);
        QFETCH(QString, twin);
        const QImage image = toolbarPicture(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(image.size(), QSize(16, 16));
        // The corners are background, which the toolbar makes transparent.
        for (QPoint corner : {QPoint(0, 0), QPoint(15, 0), QPoint(0, 15), QPoint(15, 15)})
            QCOMPARE(image.pixel(corner), Grey);
        const QSet<QRgb> used = colours(image);
        for (QRgb colour : needs)
            QVERIFY2(used.contains(colour), qPrintable(QString::number(colour, 16)));
        if (onlyThose)
            QCOMPARE(used, QSet<QRgb>(needs.begin(), needs.end()) << Grey);
        if (!twin.isEmpty()) {
            const QImage other = toolbarPicture(twin.section(' ', 0, 0));
            QCOMPARE(image, twin.endsWith("mirrored")
                                ? other.mirrored(true, false)
                                : other.transformed(QTransform(0, 1, 1, 0, 0, 0))
                                      .convertToFormat(image.format()));
        }
        // No two buttons alike, checked against the rows before this one.
        static QHash<QByteArray, QByteArray> earlier;
        QVERIFY2(!earlier.contains(pixelBytes(image)), earlier.value(pixelBytes(image)));
        earlier.insert(pixelBytes(image), QTest::currentDataTag());
    }

    void iconsAreSharpAtTheirSizes() {
        for (int size : {32, 16}) {
            const QImage image = QImage(QStringLiteral(":/images/icon%1.png").arg(size))
                                     .convertToFormat(QImage::Format_ARGB32);
            QCOMPARE(image.size(), QSize(size, size));
            QSet<QRgb> opaque;
            for (QRgb colour : colours(image))
                if (qAlpha(colour) == 255)
                    opaque.insert(colour);
                else
                    QCOMPARE(qAlpha(colour), 0); // see-through or solid, never blended
            // A picture, not a blank square, in few colours so it stays clear at 16 x 16.
            QVERIFY2(opaque.size() >= 3 && opaque.size() <= 16,
                     qPrintable(QString::number(opaque.size())));
        }
    }

    void splashIs256ColoursAtItsSize() {
        const QImage image(QStringLiteral(":/images/splash.png"));
        QCOMPARE(image.size(), QSize(200, 134));
        QCOMPARE(image.format(), QImage::Format_Indexed8);
        QVERIFY(image.colorCount() <= 256);
        // The title is drawn over the scene: the picture is far from a flat colour.
        QVERIFY(colours(image.convertToFormat(QImage::Format_RGB32)).size() >= 16);
    }
};

QTEST_GUILESS_MAIN(ArtworkImagesTest)
#include "ArtworkImagesTest.moc"
