#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Run {
    int exitCode = -1;
    QString errors;
};

Run imagegen(const QStringList &arguments) {
    QProcess process;
    process.start(QStringLiteral(IMAGEGEN), arguments);
    process.waitForFinished();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAllStandardError())};
}

QString resource(const char *name) {
    return QStringLiteral(RESOURCES "/") + name;
}

QByteArray readAll(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class ImagegenTest : public QObject {
    Q_OBJECT

private slots:
    void faultySpritesNameTheLineAndWriteNothing();
    void failureKeepsAnEarlierImage();
    void refusesUnknownModes();
    void writesTheReferenceSheet();

private:
    QTemporaryDir dir;
};

void ImagegenTest::faultySpritesNameTheLineAndWriteNothing() {
    QByteArray tiles = readAll(resource("tiles.txt"));
    QVERIFY(!tiles.isEmpty());
    // Break tile 0's top row, the line after its header.
    QList<QByteArray> lines = tiles.split('\n');
    int row = 0;
    while (row < lines.size() && !lines[row].startsWith("# 0:"))
        ++row;
    ++row;
    QVERIFY(row < lines.size());
    lines[row] = "...o....";
    const QString source = dir.filePath("tiles.txt");
    QFile file(source);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(lines.join('\n'));
    file.close();

    const QString output = dir.filePath("tileset.bmp");
    const Run run = imagegen({"tileset", source, output});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.startsWith(
                 QStringLiteral("%1:%2: character 'o' in column 4").arg(source).arg(row + 1)),
             qPrintable(run.errors));
    QVERIFY(!QFile::exists(output));
}

void ImagegenTest::failureKeepsAnEarlierImage() {
    const QString output = dir.filePath("icon.png");
    QCOMPARE(imagegen({"picture", resource("colours.txt"), resource("icon16.txt"), "16x16", output})
                 .exitCode,
             0);
    const QByteArray before = readAll(output);
    QVERIFY(!before.isEmpty());
    // The 32-pixel source read as a 16-pixel picture is refused at its first row.
    const Run run =
        imagegen({"picture", resource("colours.txt"), resource("icon32.txt"), "16x16", output});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.contains("row of 32 characters, expected 16"), qPrintable(run.errors));
    QCOMPARE(readAll(output), before);
}

void ImagegenTest::refusesUnknownModes() {
    const Run run = imagegen({"tilesets", resource("tiles.txt"), dir.filePath("x.bmp")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.errors.startsWith("usage:"));
    QVERIFY(!QFile::exists(dir.filePath("x.bmp")));
}

void ImagegenTest::writesTheReferenceSheet() {
    const QString output = dir.filePath("sheet.png");
    QCOMPARE(imagegen({"sheet", resource("tiles.txt"), resource("font.txt"), output}).exitCode, 0);
    const QImage sheet(output);
    // Eight columns of 64-pixel cells and 32 rows of them, with room for the ids.
    QVERIFY(sheet.width() >= 8 * 64);
    QVERIFY(sheet.height() >= 32 * 64);
}

QTEST_GUILESS_MAIN(ImagegenTest)
#include "ImagegenTest.moc"
