#include "ReaderCheck.h"

#include <QDir>
#include <QFile>
#include <QTest>

// Every checked-in seed goes through the fuzzer's own check in the normal build, so a change
// that breaks the reader on a known file fails here before anyone runs the fuzzer.
class SeedReplayTest : public QObject {
    Q_OBJECT
private slots:
    void seed_data();
    void seed();
};

void SeedReplayTest::seed_data() {
    QTest::addColumn<QString>("path");
    const QDir seeds(QStringLiteral(KST_SEED_DIR));
    const QStringList names = seeds.entryList(QDir::Files, QDir::Name);
    QVERIFY2(names.size() >= 10, "the seed folder is missing or nearly empty");
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << seeds.filePath(name);
}

void SeedReplayTest::seed() {
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const QString broken = readerViolation(bytes);
    QVERIFY2(broken.isEmpty(), qPrintable(broken));
}

QTEST_APPLESS_MAIN(SeedReplayTest)
#include "SeedReplayTest.moc"
