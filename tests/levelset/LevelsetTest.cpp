#include "ReaderCheck.h"
#include "analysis/HolesAndGuards.h"
#include "analysis/ObjectCounts.h"
#include "analysis/TileCatalogue.h"
#include "levelset/LevelsetFile.h"
#include "levelset/LevelsetName.h"
#include "support/FileBytes.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>
#include <random>

namespace {

const QString AbcPath = QStringLiteral("/levels/zkstlabc.kst");
const QByteArray FreshFile = "KST0ABC" + QByteArray("\x01\0\0", 3) + QByteArray(42, ' ') +
                             QByteArray("\x08\x0C\0\x63\x01\0\x02\0\x59\0\0\x03\x0B\x07\0\0", 16) +
                             QByteArray(96, '\0');
constexpr int Untouched = 0xEE; // what cells the reader must leave alone held before

// The fuzzer's seed files, named after what they hold.
QByteArray seed(const QString &name) {
    return fileBytes(QStringLiteral(KST_SEED_DIR "/") + name);
}

// A default level resized to width x height, filled with tiles row by row from the top-left.
LevelRecord levelWith(const QList<int> &tiles, int width = 12, int height = 8) {
    LevelRecord level = Levelset().levels[0];
    level.header[LevelRecord::Width] = std::uint8_t(width);
    level.header[LevelRecord::Height] = std::uint8_t(height);
    for (int i = 0; i < tiles.size(); ++i)
        level.tile(i % width, i / width) = std::uint8_t(tiles[i]);
    return level;
}

// Tile outside the first 12 x 8 and in its last cell: a count a column or row too far sees more.
LevelRecord edgesOf12x8(int tile, int width, int height) {
    LevelRecord level = levelWith({}, width, height);
    level.tiles.fill(std::uint8_t(tile));
    for (int i = 0; i < 95; ++i)
        level.tile(i % 12, i / 12) = 0;
    return level;
}

// The lines of the three object-count reports that are not zero.
QString counted(const LevelRecord &level) {
    const QString all = countDoors(level).text + '\r' + countEnemies(level).text + '\r';
    return (all + countPickups(level).text)
        .split('\r')
        .filter(QRegularExpression(": [1-9]"))
        .join('\r');
}

} // namespace

class LevelsetTest : public QObject {
    Q_OBJECT
private slots:
    // The fuzzer's seeds are the bad files. Each row: the file, what the reader reports, the level
    // count and probes (level, x, y, value: a cell after the read, or header byte x for y -1).
    void reading() {
        const int W = LevelRecord::Width, E = Untouched;
        const QString trailing = "; bytes after the last level were ignored",
                      small = "; level %1 is smaller than 12 x 8", early = "the file ended early",
                      cut = "level 1 is larger than 32 x 32 and was cut" + trailing;
        QString count255 = early + "; only the first 8 levels were read";
        for (int level = 4; level <= 8; ++level)
            count255 += small.arg(level);
        // Any tag at all, reserved bytes and lower-case passcodes are ignored or kept as they are.
        const QByteArray foreign =
            seed("foreign-header.kst")
                .replace(0, 22, QByteArray("\xff\0junk!\1\7\310abcdef\351\0xyz!", 22));
        const std::tuple<QByteArray, QString, int, QList<int>> rows[] = {
            {seed("fresh.kst"), "", 1, {}},
            {seed("empty.kst"), early + "; a level count of 0 was read as 1", 1, {}},
            {seed("truncated-header.kst"), early, 1, {0, LevelRecord::PutType, -1, 0}},
            // Cell 69 of level 1 is the last in the file; cell 70 reads as 0.
            {seed("truncated-grid.kst"), early, 2, {0, 11, 7, 1, 1, 9, 3, 2, 1, 10, 3, 0}},
            {seed("count-0.kst"), "a level count of 0 was read as 1", 1, {}},
            {seed("count-9.kst"), "only the first 8 levels were read" + trailing, 8, {7, 11, 7, 5}},
            {seed("count-255.kst"), count255, 8, {2, 11, 7, 6}},
            // Reading stops at the first cell outside the grid: row 1 and level 1 are never read.
            {seed("width-33.kst"), cut, 2, {0, 31, 0, 3, 0, 0, 1, E, 1, 0, 0, E, 0, W, -1, 32}},
            {seed("height-0.kst"), small.arg(1).mid(2) + small.arg(2), 2, {}},
            {seed("foreign-header.kst"), "", 1, {0, LevelRecord::LevelType, -1, 2}},
            {foreign, "", 1, {0, LevelRecord::AlienType, -1, 0}}};
        for (const auto &[file, summary, levelCount, probes] : rows) {
            Levelset levelset;
            levelset.levels[0].tiles.fill(Untouched);
            levelset.levels[1] = levelset.levels[0];
            QCOMPARE(readLevelset(levelset, file).summary(), summary);
            QCOMPARE(int(levelset.levelCount), levelCount);
            for (qsizetype i = 0; i < probes.size(); i += 4) {
                const LevelRecord &level = levelset.levels[probes[i]];
                const int x = probes[i + 1], y = probes[i + 2], value = probes[i + 3];
                QCOMPARE(int(y < 0 ? level.header[x] : level.tile(x, y)), value);
            }
            QCOMPARE(readerViolation(file), QString());
        }
        Levelset endless; // is not read whole
        QVERIFY(readLevelsetFile(endless, "/dev/zero")->trailingBytes);
    }

    // Noise, every seed and files cut anywhere keep the reader's invariants; thousands of random
    // levelsets written, read back and written again keep their bytes.
    void anyBytesKeepTheReaderSound() {
        std::mt19937 random(1234);
        const auto bytes = [&](int count) {
            QByteArray bytes(count, Qt::Uninitialized);
            std::generate(bytes.begin(), bytes.end(), [&] { return char(random()); });
            return bytes;
        };
        QCOMPARE(readerViolation(bytes(1 << 20)), QString());
        for (const QString &name : QDir(KST_SEED_DIR).entryList(QDir::Files))
            QCOMPARE(readerViolation(seed(name)), QString());
        for (int round = 0; round < 3000; ++round) {
            // 1..8 levels of 0..32 x 0..32; any other byte anything.
            QByteArray file = bytes(52);
            file[7] = char(1 + random() % 8);
            for (int i = 0; i < file[7]; ++i) {
                const int height = int(random() % 33), width = int(random() % 33);
                file += char(height) + (char(width) + bytes(14 + height * width));
            }
            Levelset levelset;
            ReadReport report = readLevelset(levelset, file);
            report.undersizeLevels.clear(); // a file may hold levels under 12 x 8
            QVERIFY(report.clean());
            QCOMPARE(writeLevelset(levelset, AbcPath).mid(7), file.mid(7));
            const QByteArray cut = file.left(qsizetype(random() % file.size()));
            QVERIFY(readLevelset(levelset, cut).shortFile);
            QCOMPARE(readerViolation(cut), QString());
        }
    }

    // A fresh or reset levelset is the listed bytes; cells go row by row, none outside the level.
    void freshLevelset() {
        Levelset levelset;
        readLevelset(levelset, seed("full.kst"));        // eight levels of 32 x 32
        readLevelset(levelset, seed("mixed-sizes.kst")); // reserved bytes and passcodes
        levelset.currentLevel = 4;
        levelset.levelsetPath = AbcPath;
        levelset.reset();
        for (const LevelRecord &level : levelset.levels)
            QCOMPARE(level, Levelset().levels[7]);
        for (const Levelset &each : {levelset, Levelset()}) {
            QCOMPARE(writeLevelset(each, "c:\\levels\\zkstlabc.kst"), FreshFile);
            QCOMPARE(each.currentLevel, 0);
            QCOMPARE(windowTitle(each.levelsetPath), "[Untitled] - Kestrix: Levelset Editor");
        }
        QCOMPARE(writeLevelset(levelset, "/levels/ZKSTLAbc.KST"), FreshFile);
        // One byte for each character of the tag, '?' for one without a Latin-1 form.
        QCOMPARE(writeLevelset(levelset, "/a/zkstl\U0001F600\u00e9z.kst").left(7), "KST0?\xc9Z");
        LevelRecord &level = levelset.levels[0];
        level.tile(3, 1) = 0xAB;
        level.tile(12, 0) = level.tile(0, 8) = level.tile(31, 31) = 5;
        QByteArray expected = FreshFile;
        expected[83] = '\xAB';
        QCOMPARE(writeLevelset(levelset, AbcPath), expected);

        // Passcodes go one after another into one slot, so each must clear what the last left.
        const QStringList given = {"ABCDEFGH", "abc", "", "\u00c9T\u00c9", "A\u20acB"};
        const QByteArrayList held = {"ABCDEF", "abc   ", "      ", "\xc9T\xc9   ", "A?B   "};
        for (int i = 0; i < given.size(); ++i) {
            levelset.storePasscode(6, given[i]);
            QCOMPARE(QByteArray(levelset.passcodes[6].data(), 6), held[i]);
            QCOMPARE(levelset.passcode(6), QString::fromLatin1(held[i]));
        }
    }

    // The tag, the rule for a newly chosen save name, and the path such a save writes to.
    void names() {
        const PathStyle P = PathStyle::Posix, W = PathStyle::Windows;
        const std::tuple<const char *, PathStyle, bool, const char *, const char *> rows[] = {
            {"/levels/zkstlabc.kst", P, true, "/levels/zkstlabc.kst", "KST0ABC"},
            {"c:\\levels\\zkstlabc.kst", P, false, "c:\\levels\\zkstlabc.kst", "KST0ABC"},
            {"C:/Levels\\ZKSTLXyz.KST", W, true, "c:/levels\\zkstlxyz.kst", "KST0   "},
            {"/Home/Levels/ZKSTLAbc.KST", P, true, "/Home/Levels/zkstlabc.kst", "KST0   "},
            {"ZKSTLABC.KST", P, false, "zkstlabc.kst", "KST0   "},
            {"/levels/zkstlab.kst", P, false, "/levels/zkstlab.kst", "KST0AB."},
            {"/levels/zkstlabcd.kst", P, false, "/levels/zkstlabcd.kst", "KST0ABC"},
            {"/levels/abc.kst", P, false, "/levels/abc.kst", "KST0   "},
            {"c:\\zkstlold\\zkstlnew.kst", W, true, "c:\\zkstlold\\zkstlnew.kst", "KST0OLD"},
            {"/L/ZKSTL\u0130AB.KST", P, true, "/L/zkstl\u0130ab.kst", "KST0   "}, // one character
            {"/l/zkstl\U0001F600ab.kst", P, true, "/l/zkstl\U0001F600ab.kst", "KST0\U0001F600AB"},
        };
        for (const auto &[given, style, valid, savedForm, tag] : rows) {
            const QString path = QString::fromUtf8(given), saved = QString::fromUtf8(savedForm);
            QCOMPARE(isValidLevelsetFileName(path, style) + isValidLevelsetFileName(saved, style),
                     2 * valid);
            // Save rewrites the very file; only where names ignore case is its lower case the same.
            QCOMPARE(
                QStringList({levelsetTag(path), saveFormOfPath(path, style),
                             saveFormOfPath(saved, style), resavePath(path, style)}),
                QStringList({QString::fromUtf8(tag), saved, saved, style == W ? saved : path}));
        }
    }

    // The non-zero lines of the count reports, and the holes-and-guards check of the level.
    void countsAndHolesAndGuards() {
        const QList<int> limit = QList<int>(10, 69) + QList<int>(5, 75);
        const QList<int> all = {168, 169, 170, 171, 171, 173, 174, 175, 176, 177, 176,
                                177, 70,  69,  71,  71,  71,  72,  73,  73,  74,  75,
                                75,  75,  75,  75,  75,  60,  59,  59,  58,  58,  58,
                                54,  54,  55,  56,  57,  57,  57,  61,  62,  62,  63};
        const std::tuple<LevelRecord, const char *, int> rows[] = {
            {levelWith(all),
             "Normal Doors: 2\rSecurity Doors: 3\rWhite Doors: 1\rCheckered Doors: 2\r"
             "Black Doors: 4\rHoles: 2\rWorms: 3\rFace Huggers: 1\rNormal Aliens: 2\r"
             "Strong Aliens: 1\rSecurity Guards: 6\rCredits: 120\rAmmo: 60\rKey Passes: 2\r"
             "White Keys: 1\rCheckered Keys: 1\rBlack Keys: 3\rFirst Aids: 1\r"
             "Invincibilities: 2\rExtra Lives: 1",
             1},
            {levelWith(limit), "Holes: 10\rSecurity Guards: 5", 0},
            {levelWith(limit + QList<int>{70}), "Holes: 11\rSecurity Guards: 5", 1},
            {levelWith(limit + QList<int>{75}), "Holes: 10\rSecurity Guards: 6", 1},
            {levelWith(QList<int>(6, 69) + QList<int>(5, 70)), "Holes: 11", 1},
            {edgesOf12x8(75, 12, 8), "Security Guards: 1", 0},
            {edgesOf12x8(75, 13, 8), "Security Guards: 9", 1},
            {edgesOf12x8(69, 12, 9), "Holes: 13", 1},
            {levelWith(QList<int>(1024, 60), 32, 32), "Credits: 102400", 0},
        };
        Levelset levelset;
        for (const auto &[level, lines, check] : rows) {
            QCOMPARE(counted(level), lines);
            levelset.levels[0] = level;
            QCOMPARE(checkHolesAndGuards(levelset), check);
        }
        // Limits hold per level, and the first level in use that breaks one is named.
        levelset.levelCount = 8;
        levelset.levels.fill(levelWith(limit));
        QCOMPARE(checkHolesAndGuards(levelset), 0);
        levelset.levels[7] = levelset.levels[4] = levelset.levels[1] = levelWith(limit + limit);
        QCOMPARE(checkHolesAndGuards(levelset), 2);
        levelset.levelCount = 1;
        QCOMPARE(checkHolesAndGuards(levelset), 0);

        // The catalogue's groups; only doors, enemies and pick-ups are counted.
        using G = TileGroup;
        const std::tuple<G, int, int> groups[] = {
            {G::Floor, 0, 1},   {G::OutsideSet, 7, 9}, {G::InsideSet, 10, 13}, {G::PickUp, 54, 63},
            {G::Enemy, 69, 75}, {G::WallSet, 89, 97},  {G::Door, 168, 177}};
        for (int id = -1; id <= 256; ++id) {
            G expected = G::None;
            for (const auto &[group, first, last] : groups)
                expected = id >= first && id <= last ? group : expected;
            QCOMPARE(tileGroup(id), expected);
            if (id >= 0 && id <= 255)
                QCOMPARE(counted(levelWith({id})).isEmpty(),
                         expected != G::Door && expected != G::Enemy && expected != G::PickUp);
        }
    }
};

QTEST_APPLESS_MAIN(LevelsetTest)
#include "LevelsetTest.moc"
