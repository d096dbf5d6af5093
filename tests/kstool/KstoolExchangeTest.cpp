// kstool export and import through JSON and Tiled maps: lossless for every file each form can
// carry, readable, and strict about what it takes back.
#include "KstoolFixture.h"

#include "view/Tileset.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <QtEndian>

using namespace TestLevelsets;

namespace {

QByteArray exported(const KstoolFolder &folder, const QByteArray &bytes) {
    folder.write("zkstlsrc.kst", bytes);
    const KstoolRun run = folder.run({"export", "zkstlsrc.kst", "-o", "out.json"});
    [&] { QVERIFY2(run.exitCode == 0 && run.err.isEmpty(), qPrintable(run.err)); }();
    return folder.read("out.json");
}

QJsonObject exportedObject(const KstoolFolder &folder, const QByteArray &bytes) {
    return QJsonDocument::fromJson(exported(folder, bytes)).object();
}

// A row of the levels' "tiles", split into its ids.
QStringList rowOf(const QJsonObject &level, int y) {
    return level["tiles"].toArray()[y].toString().split(' ', Qt::SkipEmptyParts);
}

// A map as a person or Tiled might write it, independent of kstool's writer.
struct MapText {
    int width = 12;
    int height = 8;
    QHash<int, quint32> gidAt; // by cell index; other cells follow a pattern of ids 0..95
    QString encoding = QStringLiteral("csv");
    QString compression;
    QString properties;
    QString orientation = QStringLiteral("orthogonal");
    QString infinite = QStringLiteral("0");
    int layers = 1;

    MapText &size(int w, int h) {
        width = w;
        height = h;
        return *this;
    }
    MapText &set(QString MapText::*field, const QString &value) {
        this->*field = value;
        return *this;
    }
    MapText &property(const QString &name, const QString &value) {
        properties = QStringLiteral("  <property name=\"%1\" value=\"%2\"/>\n").arg(name, value);
        return *this;
    }

    QByteArray xml() const {
        QStringList gids;
        QByteArray raw;
        for (int cell = 0; cell < width * height; ++cell) {
            const quint32 gid = gidAt.value(cell, quint32(cell % 96 + 1));
            gids << QString::number(gid);
            const quint32 le = qToLittleEndian(gid);
            raw.append(reinterpret_cast<const char *>(&le), 4);
        }
        QString data;
        if (encoding == QLatin1String("csv")) {
            for (int y = 0; y < height; ++y)
                data += gids.mid(y * width, width).join(',') + (y + 1 < height ? ",\n" : "\n");
            data.prepend('\n');
        } else if (encoding == QLatin1String("base64")) {
            if (compression == QLatin1String("zlib"))
                raw = qCompress(raw).mid(4); // a bare zlib stream, as Tiled writes it
            else if (compression == QLatin1String("gzip"))
                raw = "not read";
            data = QString::fromLatin1(raw.toBase64());
        } else {
            for (const QString &gid : gids)
                data += QStringLiteral("<tile gid=\"%1\"/>").arg(gid);
        }
        QString attributes;
        if (encoding != QLatin1String("xml"))
            attributes += QStringLiteral(" encoding=\"%1\"").arg(encoding);
        if (!compression.isEmpty())
            attributes += QStringLiteral(" compression=\"%1\"").arg(compression);
        QString layerText;
        for (int i = 1; i <= layers; ++i)
            layerText += QStringLiteral(" <layer id=\"%1\" name=\"L%1\" width=\"%2\" height=\"%3\">"
                                        "\n  <data%4>%5</data>\n </layer>\n")
                             .arg(i)
                             .arg(width)
                             .arg(height)
                             .arg(attributes, data);
        return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<map version=\"1.8\" orientation=\"%1\" renderorder=\"right-down\" "
                              "width=\"%2\" height=\"%3\" tilewidth=\"16\" tileheight=\"16\" "
                              "infinite=\"%4\">\n <properties>\n%5 </properties>\n"
                              " <tileset firstgid=\"1\" name=\"k\" tilewidth=\"16\" "
                              "tileheight=\"16\" tilecount=\"256\" columns=\"8\">\n"
                              "  <image source=\"k.png\" width=\"128\" height=\"512\"/>\n"
                              " </tileset>\n%6</map>\n")
            .arg(orientation)
            .arg(width)
            .arg(height)
            .arg(infinite, properties, layerText)
            .toUtf8();
    }
};

} // namespace

class KstoolExchangeTest : public QObject {
    Q_OBJECT
private slots:
    void init() { folder.emplace(); }

    // A Tiled map carries only complete levels; JSON carries any file.
    void roundTripIsByteExact_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("format");
        QTest::addColumn<bool>("carried");
        for (const NamedFile &file : corpus()) {
            QTest::addRow("%s, json", file.name) << file.bytes << "json" << true;
            QTest::addRow("%s, tmx", file.name) << file.bytes << "tmx" << file.mappable;
        }
    }
    void roundTripIsByteExact() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, format);
        QFETCH(bool, carried);
        folder->write("zkstlsrc.kst", bytes);
        KstoolRun run = folder->run({"export", "zkstlsrc.kst", "-o", "out." + format});
        if (!carried) {
            QCOMPARE(run.exitCode, 1);
            QVERIFY2(run.err.contains("holds no complete level"), qPrintable(run.err));
            QVERIFY(!folder->exists("out-1.tmx"));
            return;
        }
        QVERIFY2(run.exitCode == 0 && run.err.isEmpty(), qPrintable(run.err));
        if (format == "json") // what git's textconv reads is the very file
            QCOMPARE(folder->run({"export", "zkstlsrc.kst", "--stdout"}).out.toUtf8(),
                     folder->read("out.json"));
        run = folder->run({"import", "out." + format, "-o", "zkstldst.kst"});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QCOMPARE(folder->read("zkstldst.kst"), bytes);
    }

    void exportNamesEveryField() {
        const QJsonObject root = exportedObject(*folder, fileOf(varied()));
        QCOMPARE(root["tag"].toString(), "KST0ABC");
        QCOMPARE(root["reserved1"].toInt(), 17);
        QCOMPARE(root["reserved2"].toInt(), 250);
        const QJsonArray codes = root["passcodes"].toArray();
        QCOMPARE(codes.size(), 7);
        QCOMPARE(codes[0].toString(), "ABC123");
        QCOMPARE(codes[1].toString(), "low\\q ");
        QCOMPARE(codes[5].toString(), QStringLiteral("  \x01   "));
        QVERIFY2(!root.contains("levelCount"), "a count the levels explain is not repeated");
        QVERIFY(!root.contains("trailing"));

        const QJsonArray levels = root["levels"].toArray();
        QCOMPARE(levels.size(), 3);
        const QJsonObject second = levels[1].toObject();
        const std::pair<const char *, int> fields[] = {{"width", 32},    {"height", 20},
                                                       {"levelType", 2}, {"alienType", 0},
                                                       {"startX", 40},   {"time", 255}};
        for (const auto &[field, value] : fields)
            QCOMPARE(second[field].toInt(), value);
        QCOMPARE(second["tiles"].toArray().size(), 20);
        const QStringList lastRow = rowOf(second, 19);
        QCOMPARE(lastRow.size(), 32);
        for (int x = 0; x < 32; ++x)
            QCOMPARE(lastRow[x].toInt(), 140 + x);
        // Row 1 of the first level holds the wall at column 3: rows run downward, columns across.
        QCOMPARE(rowOf(levels[0].toObject(), 1)[3], "89");
    }

    void exportKeepsWhatTheLevelsDoNotExplain() {
        QJsonObject root = exportedObject(*folder, withLevels(9));
        QCOMPARE(root["levels"].toArray().size(), 8);
        QCOMPARE(root["levelCount"].toInt(), 9);
        QVERIFY(root["trailing"].isArray());

        root = exportedObject(*folder, fresh().left(30));
        QCOMPARE(root["truncated"].toBool(), true);
        QVERIFY(!root.contains("levels"));
        QCOMPARE(root["trailing"].toArray().size(), 1);
        QVERIFY(root["trailing"].toArray()[0].toString().startsWith("4b 53 54 30 41 42 43 01"));
    }

    void handEditsReachTheirCells() {
        QJsonObject root = exportedObject(*folder, fresh());
        QJsonArray levels = root["levels"].toArray();
        QJsonObject level = levels[0].toObject();
        QJsonArray rows = level["tiles"].toArray();
        rows[2] = QStringLiteral("0 0 0 0 0 0 0 75 0 0 0 0"); // spacing is free
        level["tiles"] = rows;
        level["time"] = 120;
        levels[0] = level;
        levels.append(level); // a second level, counted without a "levelCount"
        root["levels"] = levels;
        root.remove("tag"); // the tag then comes from the output's name, as the editor makes it
        folder->write("edited.json", QJsonDocument(root).toJson());

        const KstoolRun run = folder->run({"import", "edited.json", "-o", "zkstlq7z.kst"});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        const QByteArray bytes = folder->read("zkstlq7z.kst");
        QCOMPARE(bytes.size(), 52 + 2 * (16 + 96));
        QCOMPARE(bytes.left(7), "KST0Q7Z");
        QCOMPARE(int(bytes[CountOffset]), 2);
        QCOMPARE(quint8(bytes[FirstLevel + LevelRecord::Time]), 120);
        QCOMPARE(int(bytes[FirstLevel + 16 + 2 * 12 + 7]), 75); // row 2, column 7
        QCOMPARE(bytes.mid(FirstLevel + 112, 112), bytes.mid(FirstLevel, 112));
    }

    // The export of the varied levelset with one piece of text replaced.
    void jsonRefusals_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QString &from, const QString &to,
                            const QString &message) {
            QTest::newRow(name) << from << to << message;
        };
        const QString row0 = "  0" + QStringLiteral("   0").repeated(11);
        const QString end = "\n}\n";
        const QString level1 = "level 1: \"%1\" must be a whole number 0..255";
        row("not JSON", "\"levels\": [", "\"levels\": [[", "not valid JSON: ");
        row("another format", "\"kestrix-levelset\"", "\"tiled\"", "not a levelset export");
        row("a later version", "\"version\": 1", "\"version\": 2", "\"version\" must be 1");
        row("time over 255", "\"time\": 99", "\"time\": 256", level1.arg("time"));
        row("negative", "\"objectives\": 0", "\"objectives\": -1", level1.arg("objectives"));
        row("fraction", "\"putX\": 1", "\"putX\": 1.5", level1.arg("putX"));
        row("number as text", "\"putX\": 1", "\"putX\": \"1\"", level1.arg("putX"));
        row("missing field", "\"startY\": 0,\n", "", "level 1: \"startY\" is missing");
        row("misspelt field", "\"time\": 99", "\"tme\": 99", "level 1: unknown field \"tme\"");
        row("wider than the grid", "\"width\": 12", "\"width\": 33",
            "level 1: 33 x 8 does not fit the 32 x 32 grid");
        row("more rows than tiles", "\"height\": 8", "\"height\": 9",
            "level 1: \"tiles\" must be an array of 9 rows");
        row("short row", row0, row0.chopped(4),
            "level 1, row 0: holds 11 tile ids; the width is 12");
        row("word for an id", row0, "0 0 0 x" + row0.mid(15),
            "level 1, cell (3, 0): \"x\" is not a tile id 0..255");
        row("id over 255", row0, "256" + row0.mid(3),
            "level 1, cell (0, 0): \"256\" is not a tile id 0..255");
        row("long passcode", "\"ABC123\"", "\"ABC1234\"",
            "the passcode of level 2 has 7 characters; at most 6");
        row("passcode beyond Latin-1", "\"ABC123\"", "\"ABC\u20ac\"",
            "not a one-byte (Latin-1) character");
        row("eight passcodes", "\"passcodes\": [", "\"passcodes\": [\"\", ",
            "\"passcodes\" must be an array of 7 strings");
        row("short tag", "\"KST0ABC\"", "\"KST0AB\"",
            "\"tag\" must be exactly 7 characters, not 6");
        row("broken hex", end, ",\n  \"trailing\": [\"0g\"]" + end,
            "\"trailing\" must hold pairs of hex digits");
        row("odd hex", end, ",\n  \"trailing\": [\"0a f\"]" + end,
            "\"trailing\" must hold pairs of hex digits");
        row("count over a byte", end, ",\n  \"levelCount\": 300" + end,
            "\"levelCount\" must be a whole number 0..255");
    }
    void jsonRefusals() {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, message);
        QString json = QString::fromUtf8(exported(*folder, fileOf(varied())));
        const qsizetype at = json.indexOf(from);
        QVERIFY2(at >= 0, qPrintable(from));
        verifyImportRefused("bad.json", json.replace(at, from.size(), to).toUtf8(), message);
    }

    void refusesNineLevels() {
        QJsonObject root = exportedObject(*folder, withLevels(8));
        QJsonArray levels = root["levels"].toArray();
        levels.append(levels[0]);
        root["levels"] = levels;
        verifyImportRefused("nine.json", QJsonDocument(root).toJson(),
                            "holds 9 levels; a levelset holds at most 8");
    }

    void exportRefusesIdsAMapCannotBringBack() {
        Levelset levelset;
        levelset.levelCount = 2;
        levelset.levels[1].tile(4, 6) = 178;
        const KstoolRun run = exportMaps(fileOf(levelset));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains("level 2, cell (4, 6) holds tile id 178"), qPrintable(run.err));
        QVERIFY(!folder->exists("out-1.tmx"));
    }

    void exportWritesAMapPerLevel() {
        QCOMPARE(exportMaps(fileOf(varied())).exitCode, 0);
        for (const char *name : {"out-1.tmx", "out-2.tmx", "out-3.tmx", "out-tileset.png"})
            QVERIFY2(folder->exists(name), name);
        QVERIFY(!folder->exists("out-4.tmx") && !folder->exists("out.tmx"));
        QCOMPARE(QImage(folder->path("out-tileset.png")).convertToFormat(QImage::Format_RGB32),
                 Tileset::image());
        // A shorter levelset exported under the same name leaves no map of the longer one.
        QCOMPARE(exportMaps(fresh()).exitCode, 0);
        QVERIFY(folder->exists("out-1.tmx"));
        QVERIFY(!folder->exists("out-2.tmx") && !folder->exists("out-3.tmx"));
    }

    void mapsHoldTheLevel() {
        QCOMPARE(exportMaps(fileOf(varied())).exitCode, 0);
        QXmlStreamReader xml(folder->read("out-2.tmx"));
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

    void importReads_data() {
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
        QTest::newRow("full grid") << MapText().size(32, 32).xml() << 32 << 32;
        QTest::newRow("smaller than the editor makes") << MapText().size(3, 2).xml() << 3 << 2;
    }
    void importReads() {
        QFETCH(QByteArray, xml);
        QFETCH(int, width);
        QFETCH(int, height);
        folder->write("hand.tmx", xml);
        const KstoolRun run = folder->run({"import", "hand.tmx", "-o", "zkstlhnd.kst"});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        const QByteArray bytes = folder->read("zkstlhnd.kst");
        QCOMPARE(bytes.size(), 52 + 16 + width * height);
        QCOMPARE(bytes.left(8), "KST0HND\x01");
        // What the map does not say is what a new level holds, finish in the bottom-right cell.
        const QList<int> header{height, width, 0, 99, 1,         0,          2, 0,
                                89,     0,     0, 3,  width - 1, height - 1, 0, 0};
        for (int i = 0; i < 16; ++i)
            QCOMPARE(quint8(bytes[FirstLevel + i]), header[i]);
        for (int cell = 0; cell < width * height; ++cell)
            QCOMPARE(quint8(bytes[FirstLevel + 16 + cell]), cell % 96);
    }

    void mapRefusals_data() {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const MapText &map, const QString &message) {
            QTest::newRow(name) << map.xml() << message;
        };
        // A 12 x 8 map of id 0 but for one cell.
        const auto withGid = [](int x, int y, quint32 gid) {
            MapText map;
            for (int cell = 0; cell < 96; ++cell)
                map.gidAt[cell] = 1;
            map.gidAt[y * 12 + x] = gid;
            return map;
        };
        row("id 178", withGid(2, 1, 179),
            "level 1, cell (2, 1): tile id 178 is not one a level can hold (0..177)");
        row("id 255", withGid(11, 7, 256), "cell (11, 7): tile id 255 is not one");
        row("empty cell", withGid(0, 3, 0),
            "level 1, cell (0, 3): empty; every cell of a level holds a tile");
        row("flipped tile", withGid(5, 5, 0x80000005u), "cell (5, 5): the tile is flipped");
        row("wider than the grid", MapText().size(33, 8),
            "level 1, cell (32, 0): outside the 32 x 32 grid; the map is 33 x 8");
        row("taller than the grid", MapText().size(32, 40),
            "cell (0, 32): outside the 32 x 32 grid");
        row("too wide without a row", MapText().size(40, 0),
            "level 1: the map is 40 x 0; a level is at most 32 x 32");
        row("unknown property", MapText().property("colour", "red"),
            "level 1: property \"colour\" is not a property of a level or a levelset");
        row("time over 255", MapText().property("time", "300"),
            "property \"time\" must be a whole number 0..255, not \"300\"");
        row("width as a property", MapText().property("width", "12"),
            "the map's size is the level's size");
        row("passcode of the first level", MapText().property("passcode", "ABCDEF"),
            "cannot be kept: the first level has no passcode");
        row("short tag", MapText().property("tag", "KST0AB"),
            "property \"tag\" must be exactly 7 characters");
        row("broken escape", MapText().property("tag", "KST0AB\\x4"), "a broken \\x escape");
        row("broken hex", MapText().property("trailing", "0g"),
            "property \"trailing\" must hold pairs of hex digits");
        MapText twoLayers;
        twoLayers.layers = 2;
        row("two tile layers", twoLayers, "the map has 2 tile layers; a level is one");
        row("gzip", MapText().set(&MapText::encoding, "base64").set(&MapText::compression, "gzip"),
            "gzip compression; save it as CSV");
        row("isometric", MapText().set(&MapText::orientation, "isometric"),
            "the map is isometric; a level is an orthogonal map");
        row("infinite", MapText().set(&MapText::infinite, "1"), "the map is infinite");

        QByteArray otherTileset = MapText().xml();
        otherTileset.replace("firstgid=\"1\" name=\"k\"", "firstgid=\"2\" name=\"kestrix\"");
        QTest::newRow("tile of another tileset")
            << otherTileset << "cell (0, 0): the tile comes from another tileset than kestrix";
        QTest::newRow("cut short") << MapText().xml().chopped(30) << "not a readable map";
        QTest::newRow("cells missing") << MapText().xml().replace(",96\n", "\n")
                                       << "the layer holds 95 cells; a 12 x 8 map has 96";
    }
    void mapRefusals() {
        QFETCH(QByteArray, xml);
        QFETCH(QString, message);
        verifyImportRefused("bad.tmx", xml, message);
    }

    void levelsetValuesBelongOnTheFirstMap() {
        const auto import = [&](const MapText &first, const MapText &second, const char *input) {
            folder->write("set-1.tmx", first.xml());
            folder->write("set-2.tmx", second.xml());
            return folder->run({"import", input, "-o", "zkstlout.kst"});
        };
        KstoolRun run = import(MapText().property("passcode2", "ABCDEF"), MapText(), "set.tmx");
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains("set-1.tmx: level 1: property \"passcode2\" belongs on the map "
                                  "of level 2 as \"passcode\""),
                 qPrintable(run.err));
        const MapText first = MapText().property("passcode3", "XYZ   ");
        run = import(first, MapText().property("tag", "KST0ABC"), "set-1.tmx");
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains("set-2.tmx: level 2: property \"tag\" is not a level property"),
                 qPrintable(run.err));
        // Named by its first map or by the export's name, the set is read as two levels.
        for (const char *input : {"set.tmx", "set-1.tmx"}) {
            run = import(first, MapText().property("passcode", "QQ"), input);
            QVERIFY2(run.exitCode == 0, qPrintable(run.err));
            const QByteArray bytes = folder->read("zkstlout.kst");
            QCOMPARE(int(bytes[CountOffset]), 2);
            QCOMPARE(bytes.mid(10, 12), "QQ    XYZ   ");
        }
    }

    void tiledReadsKstoolMaps() {
        if (tiled().isEmpty())
            QSKIP("tiled is not on PATH");
        const Levelset levelset = varied();
        QCOMPARE(exportMaps(fileOf(levelset)).exitCode, 0);
        for (int index = 0; index < levelset.levelCount; ++index) {
            const QString json = QStringLiteral("tiled-%1.json").arg(index + 1);
            runTiled({"--export-map", "json", QStringLiteral("out-%1.tmx").arg(index + 1), json});
            if (QTest::currentTestFailed())
                return;
            const QJsonObject root = QJsonDocument::fromJson(folder->read(json)).object();
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

    void tiledWrittenMapsImport() {
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
        QVERIFY2(folder->read("tiled-1.tmx").contains("tiledversion"), "Tiled wrote the maps");
        const KstoolRun run = folder->run({"import", "tiled.tmx", "-o", "zkstlabc.kst"});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QCOMPARE(folder->read("zkstlabc.kst"), original);
    }

private:
    // An import that must fail with message and leave an earlier output file as it was.
    void verifyImportRefused(const QString &input, const QByteArray &content,
                             const QString &message) {
        folder->write(input, content);
        folder->write("zkstlout.kst", "an earlier file");
        const KstoolRun run = folder->run({"import", input, "-o", "zkstlout.kst"});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.startsWith("kstool: " + input + ": ") && run.err.contains(message),
                 qPrintable(run.err));
        QCOMPARE(folder->read("zkstlout.kst"), "an earlier file");
    }
    KstoolRun exportMaps(const QByteArray &bytes) {
        folder->write("zkstlsrc.kst", bytes);
        return folder->run({"export", "zkstlsrc.kst", "-o", "out.tmx"});
    }
    static QString tiled() { return QStandardPaths::findExecutable(QStringLiteral("tiled")); }
    // Tiled is a GUI program; it runs its command-line export without a display.
    void runTiled(const QStringList &arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder->path("."));
        process.start(tiled(), arguments);
        QVERIFY(process.waitForFinished(60000));
        QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
    }
    std::optional<KstoolFolder> folder;
};

QTEST_GUILESS_MAIN(KstoolExchangeTest)
#include "KstoolExchangeTest.moc"
