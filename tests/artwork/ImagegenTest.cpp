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

} // namespace

class ImagegenTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QFile broken(dir.filePath("tiles.txt"));
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("# 0: floor\n...o....\n") > 0);
    }

    // A faulty source fails the build: exit status 1, the reason, and no new or damaged image.
    void faultyRunWritesNothing_data() {
        QTest::addColumn<QStringList>("arguments"); // the output path is added last
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("earlierImage");
        const QString broken = dir.filePath("tiles.txt");
        QTest::newRow("a sprite row with a lower-case o")
            << QStringList{"tileset", broken} << broken + ":2: character 'o' in column 4" << false;
        QTest::newRow("the 32-pixel icon read as 16, over an earlier image")
            << QStringList{"picture", resource("colours.txt"), resource("icon32.txt"), "16x16"}
            << "row of 32 characters, expected 16" << true;
        QTest::newRow("an unknown mode")
            << QStringList{"tilesets", resource("tiles.txt")} << "usage:" << false;
    }

    void faultyRunWritesNothing() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        QFETCH(bool, earlierImage);
        const QString output = dir.filePath(QStringLiteral("out.image"));
        QFile::remove(output);
        const QByteArray earlier = "an image from an earlier build";
        QFile file(output);
        if (earlierImage) {
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(earlier) == earlier.size());
            file.close();
        }
        const Run run = imagegen(arguments << output);
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(error), qPrintable(run.errors));
        QCOMPARE(file.exists(), earlierImage);
        QVERIFY(!earlierImage || (file.open(QIODevice::ReadOnly) && file.readAll() == earlier));
    }

    void writesTheReferenceSheet() {
        const QString output = dir.filePath("sheet.png");
        QCOMPARE(imagegen({"sheet", resource("tiles.txt"), resource("font.txt"), output}).exitCode,
                 0);
        const QImage sheet(output);
        // Eight columns of 64-pixel cells and 32 rows of them, with room for the ids.
        QVERIFY(sheet.width() >= 8 * 64);
        QVERIFY(sheet.height() >= 32 * 64);
    }

private:
    QTemporaryDir dir;
};

QTEST_GUILESS_MAIN(ImagegenTest)
#include "ImagegenTest.moc"
