// kstool export and import through Tiled maps: one map per level, lossless for every file a
// map can carry, readable by Tiled itself, and strict about what it takes back.
#include "KstoolRun.h"
#include "TestLevelsets.h"

#include "view/Tileset.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>
#include <QtEndian>
#include <memory>

using namespace TestLevelsets;

namespace {

// A map as a person or Tiled might write it, independent of kstool's writer.
struct MapText {
    int width = 12;
    int height = 8;
    QList<quint32> gids; // row by row; empty means a pattern of ids 0..95
    QString encoding = QStringLiteral("csv");
    QString compression;
    QString properties;
    QString orientation = QStringLiteral("orthogonal");
    QString infinite = QStringLiteral("0");
    int layers = 1;

    quint32 gid(int x, int y) const {
        return gids.isEmpty() ? quint32((x + y * width) % 96 + 1) : gids[y * width + x];
    }

    QByteArray xml() const {
        QString data;
        if (encoding == QLatin1String("csv")) {
            QStringList rows;
            for (int y = 0; y < height; ++y) {
                QStringList row;
                for (int x = 0; x < width; ++x)
                    row << QString::number(gid(x, y));
                rows << row.join(',');
            }
            data = "\n" + rows.join(",\n") + "\n";
        } else if (encoding == QLatin1String("base64")) {
            QByteArray raw;
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    char le[4];
                    qToLittleEndian(gid(x, y), le);
                    raw.append(le, 4);
                }
            if (compression == QLatin1String("zlib"))
                raw = qCompress(raw).mid(4); // a bare zlib stream, as Tiled writes it
            else if (compression == QLatin1String("gzip"))
                raw = "not read";
            data = QString::fromLatin1(raw.toBase64());
        } else {
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    data += QStringLiteral("<tile gid=\"%1\"/>").arg(gid(x, y));
        }
        const QString encodingAttribute = encoding == QLatin1String("xml")
                                              ? QString()
                                              : QStringLiteral(" encoding=\"%1\"").arg(encoding);
        const QString compressionAttribute =
            compression.isEmpty() ? QString()
                                  : QStringLiteral(" compression=\"%1\"").arg(compression);
        QString layerText;
        for (int i = 0; i < layers; ++i)
            layerText +=
                QStringLiteral(" <layer id=\"%1\" name=\"L%1\" width=\"%2\" height=\"%3\">\n"
                               "  <data%4%5>%6</data>\n </layer>\n")
                    .arg(i + 1)
                    .arg(width)
                    .arg(height)
                    .arg(encodingAttribute, compressionAttribute, data);
        return QStringLiteral(
                   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<map version=\"1.8\" orientation=\"%1\" renderorder=\"right-down\" "
                   "width=\"%2\" height=\"%3\" tilewidth=\"16\" tileheight=\"16\" "
                   "infinite=\"%4\">\n"
                   " <properties>\n%5 </properties>\n"
                   " <tileset firstgid=\"1\" name=\"k\" tilewidth=\"16\" tileheight=\"16\" "
                   "tilecount=\"256\" columns=\"8\">\n"
                   "  <image source=\"k.png\" width=\"128\" height=\"512\"/>\n"
                   " </tileset>\n%6</map>\n")
            .arg(orientation)
            .arg(width)
            .arg(height)
            .arg(infinite, properties, layerText)
            .toUtf8();
    }
};

QString mapProperty(const QString &name, const QString &value) {
    return QStringLiteral("  <property name=\"%1\" value=\"%2\"/>\n").arg(name, value);
}

bool mappable(const NamedFile &file) {
    // Files without a complete level have nothing to map.
    const QList<QByteArray> unmapped{"empty",   "truncated header", "truncated grid",
                                     "count 0", "width 33",         "noise"};
    return !unmapped.contains(file.name);
}

} // namespace

class KstoolTiledTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(folder->isValid());
    }

    void roundTrip_data();
    void roundTrip();
    void exportRefusesIdsAMapCannotBringBack();
    void exportWritesAMapPerLevel();
    void mapsHoldTheLevel();
    void importReads_data();
    void importReads();
    void importRefuses_data();
    void importRefuses();
    void levelsetValuesBelongOnTheFirstMap();

    void tiledReadsKstoolMaps();
    void tiledWrittenMapsImport();

private:
    QString path(const QString &name) const { return folder->filePath(name); }
    KstoolRun exportMaps(const QByteArray &bytes) {
        writeBytes(path("zkstlsrc.kst"), bytes);
        return runKstool({"export", "zkstlsrc.kst", "-o", "out.tmx"}, folder->path());
    }
    static QString tiled() { return QStandardPaths::findExecutable(QStringLiteral("tiled")); }
    // Tiled is a GUI program; it runs its command-line export without a display.
    void runTiled(const QStringList &arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder->path());
        process.start(tiled(), arguments);
        QVERIFY(process.waitForFinished(60000));
        QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
    }
    std::unique_ptr<QTemporaryDir> folder;
};

void KstoolTiledTest::roundTrip_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("mapped");
    for (const NamedFile &file : corpus())
        QTest::newRow(file.name) << file.bytes << mappable(file);
}

void KstoolTiledTest::roundTrip() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, mapped);

    KstoolRun run = exportMaps(bytes);
    if (!mapped) {
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains("holds no complete level"), qPrintable(run.err));
        QVERIFY(!QFile::exists(path("out-1.tmx")));
        return;
    }
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    run = runKstool({"import", "out.tmx", "-o", "zkstldst.kst"}, folder->path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(readBytes(path("zkstldst.kst")), bytes);
}

void KstoolTiledTest::exportRefusesIdsAMapCannotBringBack() {
    Levelset levelset;
    levelset.levelCount = 2;
    levelset.levels[1].tile(4, 6) = 178;
    const KstoolRun run = exportMaps(fileOf(levelset));
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("level 2, cell (4, 6) holds tile id 178"), qPrintable(run.err));
    QVERIFY(!QFile::exists(path("out-1.tmx")));
}

void KstoolTiledTest::exportWritesAMapPerLevel() {
    QCOMPARE(exportMaps(fileOf(varied())).exitCode, 0);
    for (const char *name : {"out-1.tmx", "out-2.tmx", "out-3.tmx", "out-tileset.png"})
        QVERIFY2(QFile::exists(path(name)), name);
    QVERIFY(!QFile::exists(path("out-4.tmx")));
    QVERIFY(!QFile::exists(path("out.tmx")));
    const QImage tileset(path("out-tileset.png"));
    QCOMPARE(tileset.convertToFormat(QImage::Format_RGB32), Tileset::image());

    // A shorter levelset exported under the same name leaves no map of the longer one.
    QCOMPARE(exportMaps(fresh()).exitCode, 0);
    QVERIFY(QFile::exists(path("out-1.tmx")));
    QVERIFY(!QFile::exists(path("out-2.tmx")));
    QVERIFY(!QFile::exists(path("out-3.tmx")));
}

void KstoolTiledTest::mapsHoldTheLevel() {
    QCOMPARE(exportMaps(fileOf(varied())).exitCode, 0);
    QXmlStreamReader xml(readBytes(path("out-2.tmx")));
    QHash<QString, QString> properties;
    QString csv;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == QLatin1String("map")) {
            QCOMPARE(attributes.value("width").toInt(), 32);
            QCOMPARE(attributes.value("height").toInt(), 20);
            QCOMPARE(attributes.value("orientation").toString(), "orthogonal");
        } else if (xml.name() == QLatin1String("property")) {
            properties.insert(attributes.value("name").toString(),
                              attributes.value("value").toString());
        } else if (xml.name() == QLatin1String("data")) {
            QCOMPARE(attributes.value("encoding").toString(), "csv");
            csv = xml.readElementText();
        }
    }
    QVERIFY(!xml.hasError());
    QCOMPARE(properties.value("time"), "255");
    QCOMPARE(properties.value("levelType"), "2");
    QCOMPARE(properties.value("startX"), "40");
    QCOMPARE(properties.value("passcode"), "ABC123");
    QVERIFY2(!properties.contains("tag"), "levelset-wide values ride on the first map only");
    const QStringList rows = csv.trimmed().split('\n');
    QCOMPARE(rows.size(), 20);
    const QStringList last = rows[19].split(',', Qt::SkipEmptyParts);
    QCOMPARE(last.size(), 32);
    for (int x = 0; x < 32; ++x)
        QCOMPARE(last[x].toInt(), 140 + x + 1); // gid = id + 1
}

void KstoolTiledTest::importReads_data() {
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    MapText map;
    QTest::newRow("csv") << map.xml() << 12 << 8;
    map.encoding = "base64";
    QTest::newRow("base64") << map.xml() << 12 << 8;
    map.compression = "zlib";
    QTest::newRow("base64 zlib") << map.xml() << 12 << 8;
    map.encoding = "xml";
    map.compression.clear();
    QTest::newRow("tile elements") << map.xml() << 12 << 8;
    MapText large;
    large.width = 32;
    large.height = 32;
    QTest::newRow("full grid") << large.xml() << 32 << 32;
    MapText small;
    small.width = 3;
    small.height = 2;
    QTest::newRow("smaller than the editor makes") << small.xml() << 3 << 2;
}

void KstoolTiledTest::importReads() {
    QFETCH(QByteArray, xml);
    QFETCH(int, width);
    QFETCH(int, height);
    writeBytes(path("hand.tmx"), xml);

    const KstoolRun run = runKstool({"import", "hand.tmx", "-o", "zkstlhnd.kst"}, folder->path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QByteArray bytes = readBytes(path("zkstlhnd.kst"));
    QCOMPARE(bytes.size(), 52 + 16 + width * height);
    QCOMPARE(bytes.left(7), "KST0HND");
    QCOMPARE(int(bytes[CountOffset]), 1);
    // What the map does not say is what a new level holds, finish in the bottom-right cell.
    const QList<int> header{height, width, 0, 99, 1,         0,          2, 0,
                            89,     0,     0, 3,  width - 1, height - 1, 0, 0};
    for (int i = 0; i < 16; ++i)
        QCOMPARE(quint8(bytes[FirstLevel + i]), header[i]);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            QCOMPARE(quint8(bytes[FirstLevel + 16 + y * width + x]), (x + y * width) % 96);
}

void KstoolTiledTest::importRefuses_data() {
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("message");

    const auto withGid = [](int x, int y, quint32 gid) {
        MapText map;
        for (int i = 0; i < map.width * map.height; ++i)
            map.gids << 1;
        map.gids[y * map.width + x] = gid;
        return map.xml();
    };
    QTest::newRow("id 178")
        << withGid(2, 1, 179)
        << "level 1, cell (2, 1): tile id 178 is not one a level can hold (0..177)";
    QTest::newRow("id 255") << withGid(11, 7, 256) << "cell (11, 7): tile id 255 is not one";
    QTest::newRow("empty cell")
        << withGid(0, 3, 0) << "level 1, cell (0, 3): empty; every cell of a level holds a tile";
    QTest::newRow("flipped tile") << withGid(5, 5, 0x80000005u)
                                  << "cell (5, 5): the tile is flipped";
    MapText wide;
    wide.width = 33;
    QTest::newRow("wider than the grid")
        << wide.xml() << "level 1, cell (32, 0): outside the 32 x 32 grid; the map is 33 x 8";
    MapText tall;
    tall.width = 32;
    tall.height = 40;
    QTest::newRow("taller than the grid") << tall.xml() << "cell (0, 32): outside the 32 x 32 grid";
    MapText flat;
    flat.width = 40;
    flat.height = 0;
    QTest::newRow("too wide without a row")
        << flat.xml() << "level 1: the map is 40 x 0; a level is at most 32 x 32";
    QByteArray otherTileset = MapText().xml();
    otherTileset.replace("firstgid=\"1\" name=\"k\"", "firstgid=\"2\" name=\"kestrix\"");
    QTest::newRow("tile of another tileset")
        << otherTileset << "cell (0, 0): the tile comes from another tileset than kestrix";

    MapText map;
    map.properties = mapProperty("colour", "red");
    QTest::newRow("unknown property")
        << map.xml() << "level 1: property \"colour\" is not a property of a level or a levelset";
    map.properties = mapProperty("time", "300");
    QTest::newRow("time over 255")
        << map.xml() << "property \"time\" must be a whole number 0..255, not \"300\"";
    map.properties = mapProperty("width", "12");
    QTest::newRow("width as a property") << map.xml() << "the map's size is the level's size";
    map.properties = mapProperty("passcode", "ABCDEF");
    QTest::newRow("passcode of the first level")
        << map.xml() << "cannot be kept: the first level has no passcode";
    map.properties = mapProperty("tag", "KST0AB");
    QTest::newRow("short tag") << map.xml() << "property \"tag\" must be exactly 7 characters";
    map.properties = mapProperty("tag", "KST0AB\\x4");
    QTest::newRow("broken escape") << map.xml() << "a broken \\x escape";
    map.properties = mapProperty("trailing", "0g");
    QTest::newRow("broken hex") << map.xml()
                                << "property \"trailing\" must hold pairs of hex digits";

    map.properties.clear();
    map.layers = 2;
    QTest::newRow("two tile layers") << map.xml() << "the map has 2 tile layers; a level is one";
    map.layers = 1;
    map.encoding = "base64";
    map.compression = "gzip";
    QTest::newRow("gzip") << map.xml() << "gzip compression; save it as CSV";
    map.encoding = "csv";
    map.compression.clear();
    map.orientation = "isometric";
    QTest::newRow("isometric") << map.xml() << "the map is isometric; a level is an orthogonal map";
    map.orientation = "orthogonal";
    map.infinite = "1";
    QTest::newRow("infinite") << map.xml() << "the map is infinite";
    QByteArray cut = MapText().xml();
    cut.chop(30);
    QTest::newRow("cut short") << cut << "not a readable map";
    QByteArray fewer = MapText().xml().replace(",96\n", "\n");
    QTest::newRow("cells missing") << fewer << "the layer holds 95 cells; a 12 x 8 map has 96";
}

void KstoolTiledTest::importRefuses() {
    QFETCH(QByteArray, xml);
    QFETCH(QString, message);
    writeBytes(path("bad.tmx"), xml);
    const QByteArray before("an earlier file");
    writeBytes(path("zkstlout.kst"), before);

    const KstoolRun run = runKstool({"import", "bad.tmx", "-o", "zkstlout.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.startsWith("kstool: bad.tmx: "), qPrintable(run.err));
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QCOMPARE(readBytes(path("zkstlout.kst")), before);
}

void KstoolTiledTest::levelsetValuesBelongOnTheFirstMap() {
    MapText first;
    first.properties = mapProperty("passcode2", "ABCDEF");
    MapText second;
    writeBytes(path("set-1.tmx"), first.xml());
    writeBytes(path("set-2.tmx"), second.xml());
    KstoolRun run = runKstool({"import", "set.tmx", "-o", "zkstlout.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("set-1.tmx: level 1: property \"passcode2\" belongs on the map of "
                              "level 2 as \"passcode\""),
             qPrintable(run.err));

    second.properties = mapProperty("tag", "KST0ABC");
    first.properties = mapProperty("passcode3", "XYZ   ");
    writeBytes(path("set-1.tmx"), first.xml());
    writeBytes(path("set-2.tmx"), second.xml());
    run = runKstool({"import", "set-1.tmx", "-o", "zkstlout.kst"}, folder->path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("set-2.tmx: level 2: property \"tag\" is not a level property"),
             qPrintable(run.err));

    // Named by its first map or by the export's name, the set is read as two levels.
    second.properties = mapProperty("passcode", "QQ");
    writeBytes(path("set-2.tmx"), second.xml());
    for (const char *input : {"set.tmx", "set-1.tmx"}) {
        run = runKstool({"import", input, "-o", "zkstlout.kst"}, folder->path());
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        const QByteArray bytes = readBytes(path("zkstlout.kst"));
        QCOMPARE(int(bytes[CountOffset]), 2);
        QCOMPARE(bytes.mid(10, 12), "QQ    XYZ   ");
    }
}

void KstoolTiledTest::tiledReadsKstoolMaps() {
    if (tiled().isEmpty())
        QSKIP("tiled is not on PATH");
    const Levelset levelset = varied();
    QCOMPARE(exportMaps(fileOf(levelset)).exitCode, 0);
    for (int index = 0; index < levelset.levelCount; ++index) {
        const QString map = QStringLiteral("out-%1.tmx").arg(index + 1);
        const QString json = QStringLiteral("tiled-%1.json").arg(index + 1);
        runTiled({"--export-map", "json", map, json});
        if (QTest::currentTestFailed())
            return;

        const QJsonObject root = QJsonDocument::fromJson(readBytes(path(json))).object();
        const LevelRecord &level = levelset.levels[index];
        QCOMPARE(root["width"].toInt(), level.width());
        QCOMPARE(root["height"].toInt(), level.height());
        const QJsonArray data = root["layers"].toArray()[0].toObject()["data"].toArray();
        QCOMPARE(data.size(), level.width() * level.height());
        for (int y = 0; y < level.height(); ++y)
            for (int x = 0; x < level.width(); ++x)
                QCOMPARE(data[y * level.width() + x].toInt() - 1, int(level.tile(x, y)));
    }
}

void KstoolTiledTest::tiledWrittenMapsImport() {
    if (tiled().isEmpty())
        QSKIP("tiled is not on PATH");
    const QByteArray original =
        withByte(fileOf(varied()) + QByteArray("\x01\x02", 2), CountOffset, 3);
    QCOMPARE(exportMaps(original).exitCode, 0);
    for (int number = 1; number <= 3; ++number) {
        runTiled({"--export-map", "tmx", QStringLiteral("out-%1.tmx").arg(number),
                  QStringLiteral("tiled-%1.tmx").arg(number)});
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(readBytes(path("tiled-1.tmx")).contains("tiledversion"), "Tiled wrote the maps");

    const KstoolRun run = runKstool({"import", "tiled.tmx", "-o", "zkstlabc.kst"}, folder->path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(readBytes(path("zkstlabc.kst")), original);
}

QTEST_GUILESS_MAIN(KstoolTiledTest)
#include "KstoolTiledTest.moc"
