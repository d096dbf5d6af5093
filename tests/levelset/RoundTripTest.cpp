#include "LevelsetBytes.h"
#include "levelset/LevelsetFile.h"

#include <QTest>
#include <random>

namespace {

const QString Path = QStringLiteral("/levels/zkstlrnd.kst");

// A levelset the editor can hold: any byte anywhere, except the count and sizes, which stay
// within the model's bounds (sizes may fall under the editor's minimum, as a file can bring).
Levelset randomLevelset(std::mt19937 &generator) {
    auto byte = [&] { return std::uint8_t(generator()); };
    auto upTo = [&](int high) { return int(generator() % std::uint32_t(high + 1)); };
    Levelset levelset;
    levelset.levelCount = std::uint8_t(1 + upTo(7));
    levelset.reserved1 = byte();
    levelset.reserved2 = byte();
    for (Levelset::Passcode &code : levelset.passcodes)
        for (char &c : code)
            c = char(byte());
    for (LevelRecord &level : levelset.levels) {
        for (std::uint8_t &b : level.header)
            b = byte();
        level.header[LevelRecord::Height] = std::uint8_t(upTo(32));
        level.header[LevelRecord::Width] = std::uint8_t(upTo(32));
        for (std::uint8_t &tile : level.tiles)
            tile = byte();
    }
    levelset.currentLevel = std::int16_t(upTo(levelset.levelCount - 1));
    return levelset;
}

// What a file keeps of a level: its header and the cells inside its size.
bool sameStoredLevel(const LevelRecord &a, const LevelRecord &b) {
    if (a.header != b.header)
        return false;
    for (int x = 0; x < a.width(); ++x)
        for (int y = 0; y < a.height(); ++y)
            if (a.tile(x, y) != b.tile(x, y))
                return false;
    return true;
}

} // namespace

class RoundTripTest : public QObject {
    Q_OBJECT
private slots:
    void writeReadWriteIsStable();
    void everyCutOfAValidFileKeepsTheInvariants();
};

void RoundTripTest::writeReadWriteIsStable() {
    std::mt19937 generator(20261122u);
    for (int round = 0; round < 3000; ++round) {
        const Levelset original = randomLevelset(generator);
        const QByteArray written = writeLevelset(original, Path);

        Levelset reread;
        const ReadReport report = readLevelset(reread, written);
        QVERIFY(!report.shortFile && !report.trailingBytes && report.oversizeLevel < 0);
        QVERIFY(!report.countZero && !report.countOver8);
        QCOMPARE(reread.levelCount, original.levelCount);
        QCOMPARE(reread.reserved1, original.reserved1);
        QCOMPARE(reread.reserved2, original.reserved2);
        QCOMPARE(reread.passcodes, original.passcodes);
        for (int i = 0; i < original.levelCount; ++i)
            QVERIFY2(sameStoredLevel(reread.levels[i], original.levels[i]),
                     qPrintable(QStringLiteral("round %1, level %2").arg(round).arg(i)));
        QCOMPARE(writeLevelset(reread, Path), written);
    }
}

void RoundTripTest::everyCutOfAValidFileKeepsTheInvariants() {
    std::mt19937 generator(7u);
    for (int round = 0; round < 200; ++round) {
        const QByteArray written = writeLevelset(randomLevelset(generator), Path);
        const qsizetype cut = qsizetype(generator() % std::uint32_t(written.size()));
        Levelset levelset;
        const ReadReport report = readLevelset(levelset, written.left(cut));
        LevelsetBytes::verifyInvariants(levelset);
        QVERIFY2(report.shortFile, qPrintable(QStringLiteral("cut at %1").arg(cut)));
        const QByteArray rewritten = writeLevelset(levelset, Path);
        Levelset again;
        readLevelset(again, rewritten);
        QCOMPARE(writeLevelset(again, Path), rewritten);
    }
}

QTEST_APPLESS_MAIN(RoundTripTest)
#include "RoundTripTest.moc"
