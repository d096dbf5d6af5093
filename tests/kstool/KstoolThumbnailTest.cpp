// kstool thumbnail: the first level's cells, fitted by whole factors, or nothing at all.
#include "KstoolFixture.h"

#include "view/drawLevel.h"

#include <QImage>

using namespace TestLevelsets;

namespace {

// A first level of the given size whose cells, inside and outside it, hold many tiles.
Levelset firstLevel(int width, int height) {
    Levelset levelset;
    levelset.levelCount = 2;
    LevelRecord &level = levelset.levels[0];
    level.header[LevelRecord::Width] = std::uint8_t(width);
    level.header[LevelRecord::Height] = std::uint8_t(height);
    for (int i = 0; i < 32 * 32; ++i)
        level.tiles[i] = std::uint8_t(i * 7 % 180);
    return levelset;
}

} // namespace

class KstoolThumbnailTest : public QObject {
    Q_OBJECT
private slots:
    void init() { folder.emplace(); }

    void fitsByWholeFactors_data() {
        QTest::addColumn<QSize>("cells");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QSize>("expected");
        const auto row = [](const char *name, QSize cells, const QStringList &options,
                            QSize expected) {
            QTest::newRow(name) << cells << options << expected;
        };
        row("12 x 8 by default within 128: 8 a cell", {12, 8}, {}, {96, 64});
        row("32 x 32 within 128: 4", {32, 32}, {"--size", "128"}, {128, 128});
        row("32 x 32 within 256: 8", {32, 32}, {"--size", "256"}, {256, 256});
        row("32 x 32 within 32: 1", {32, 32}, {"--size", "32"}, {32, 32});
        row("32 x 20 within 100: 2", {32, 20}, {"--size", "100"}, {64, 40});
        row("13 x 9 within 200: 8", {13, 9}, {"--size", "200"}, {104, 72});
        row("12 x 32 within 512: the height decides", {12, 32}, {"--size", "512"}, {192, 512});
        row("5 x 3 within 128: 16", {5, 3}, {"--size=128"}, {80, 48});
        row("12 x 8 within 1024: 80", {12, 8}, {"--size", "1024"}, {960, 640});
    }
    void fitsByWholeFactors() {
        QFETCH(QSize, cells);
        QFETCH(QStringList, options);
        QFETCH(QSize, expected);
        const Levelset levelset = firstLevel(cells.width(), cells.height());
        folder->write("zkstlabc.kst", fileOf(levelset));
        const KstoolRun run =
            folder->run(QStringList{"thumbnail", "zkstlabc.kst", "-o", "out.png"} + options);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        const QImage image = QImage(folder->path("out.png")).convertToFormat(QImage::Format_RGB32);
        QCOMPARE(image.size(), expected);
        // From 8 pixels a cell up, every pixel of the 8 x 8 sprites survives whole, so a plain
        // nearest-pixel scaling of the level's cells is the same picture.
        if (expected.width() / cells.width() < 8)
            return;
        QImage view;
        drawLevel(levelset.levels[0], view);
        QCOMPARE(image, view.copy(QRect(QPoint(), cells * 16))
                            .scaled(expected, Qt::IgnoreAspectRatio, Qt::FastTransformation));
    }

    // Only the first level matters; a file that does not hold it whole gives no picture.
    void brokenFilesWriteNothing_data() {
        QTest::addColumn<QByteArray>("bytes"); // null: no file at all
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("status");
        const auto row = [](const char *name, const QByteArray &bytes, int status,
                            const QStringList &options = {}) {
            QTest::newRow(name) << bytes << options << status;
        };
        row("another tag", withByte(fresh(), 3, 'X'), 0);
        row("count 9", withLevels(9), 0);
        row("trailing bytes", fresh() + "xyz", 0);
        row("second level cut", fileOf(varied()).chopped(5), 0);
        row("no file", QByteArray(), 1);
        row("empty", QByteArray(""), 1);
        row("cut in the first level's cells", fresh().chopped(1), 1);
        row("cut in the first header", fresh().left(60), 1);
        row("count 0", withByte(fresh(), CountOffset, 0), 1);
        row("first level 33 wide", withByte(fresh(), FirstLevel + LevelRecord::Width, 33), 1);
        row("first level 0 high", withByte(fresh(), FirstLevel + LevelRecord::Height, 0), 1);
        row("first level 0 wide", withByte(fresh(), FirstLevel + LevelRecord::Width, 0), 1);
        row("noise", noise(), 1);
        row("size under 32", fresh(), 2, {"--size", "31"});
        row("size over 1024", fresh(), 2, {"--size", "1025"});
        row("no output named", fresh(), 2, {"-o", ""});
    }
    void brokenFilesWriteNothing() {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, options);
        QFETCH(int, status);
        if (!bytes.isNull())
            folder->write("zkstlabc.kst", bytes);
        const QStringList output =
            options.contains("-o") ? QStringList() : QStringList{"-o", "out.png"};
        const KstoolRun run =
            folder->run(QStringList{"thumbnail", "zkstlabc.kst"} + output + options);
        QCOMPARE(run.exitCode, status);
        QCOMPARE(run.err.isEmpty(), status == 0);
        QCOMPARE(run.err.contains(": no thumbnail: "), status == 1);
        QCOMPARE(!QImage(folder->path("out.png")).isNull(), status == 0);
    }

private:
    std::optional<KstoolFolder> folder;
};

QTEST_GUILESS_MAIN(KstoolThumbnailTest)
#include "KstoolThumbnailTest.moc"
