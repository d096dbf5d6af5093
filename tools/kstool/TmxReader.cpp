#include "TmxFormat.h"

#include "ByteText.h"
#include "Files.h"
#include "HeaderFields.h"

#include "analysis/TileCatalogue.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtEndian>

namespace {

constexpr quint32 FlipFlags = 0xF0000000u;

struct Property {
    QString name;
    QString value;
};

// What a map file holds that a level needs, before any of it is judged.
struct TmxMap {
    QList<Property> properties;
    int firstGid = -1;
    int tileLayers = 0;
    int width = 0; // of the tile layer
    int height = 0;
    QList<quint32> gids;
};

class TmxParser {
public:
    explicit TmxParser(const QByteArray &xml) : xml_(xml) {}

    // An empty string, or why the text is not a map this tool can read.
    QString parse(TmxMap &map);

private:
    void readProperties(TmxMap &map);
    void readLayers(TmxMap &map, bool ofMap);
    void readLayer(TmxMap &map);
    void readData(TmxMap &map);
    void fail(const QString &error) {
        if (error_.isEmpty())
            error_ = error;
        xml_.raiseError(error);
    }
    int intAttribute(const QString &name, int fallback) const {
        bool ok = false;
        const int value = xml_.attributes().value(name).toInt(&ok);
        return ok ? value : fallback;
    }

    QXmlStreamReader xml_;
    QString error_;
};

QString TmxParser::parse(TmxMap &map) {
    if (!xml_.readNextStartElement() || xml_.name() != QLatin1String("map")) {
        if (!xml_.hasError())
            return QStringLiteral("not a Tiled map: no <map> element");
    } else if (xml_.attributes().value(QLatin1String("orientation")) !=
               QLatin1String("orthogonal")) {
        return QStringLiteral("the map is %1; a level is an orthogonal map")
            .arg(xml_.attributes().value(QLatin1String("orientation")).toString());
    } else if (xml_.attributes().value(QLatin1String("infinite")) == QLatin1String("1")) {
        return QStringLiteral("the map is infinite; a level is a map of fixed size");
    } else {
        readLayers(map, true);
    }
    if (!error_.isEmpty())
        return error_;
    if (xml_.hasError())
        return QStringLiteral("not a readable map: %1 (line %2)")
            .arg(xml_.errorString())
            .arg(xml_.lineNumber());
    return QString();
}

// The children of <map> or of a group layer.
void TmxParser::readLayers(TmxMap &map, bool ofMap) {
    while (xml_.readNextStartElement()) {
        const auto name = xml_.name();
        if (name == QLatin1String("properties") && ofMap)
            readProperties(map);
        else if (name == QLatin1String("tileset")) {
            // The tileset kstool writes is named kestrix; a map may have gained others.
            if (map.firstGid < 0 ||
                xml_.attributes().value(QLatin1String("name")) == QLatin1String("kestrix"))
                map.firstGid = intAttribute(QStringLiteral("firstgid"), 1);
            xml_.skipCurrentElement();
        } else if (name == QLatin1String("layer"))
            readLayer(map);
        else if (name == QLatin1String("group"))
            readLayers(map, false);
        else
            xml_.skipCurrentElement();
    }
}

void TmxParser::readProperties(TmxMap &map) {
    while (xml_.readNextStartElement()) {
        if (xml_.name() != QLatin1String("property")) {
            xml_.skipCurrentElement();
            continue;
        }
        Property property;
        property.name = xml_.attributes().value(QLatin1String("name")).toString();
        // Tiled writes a multi-line value as the element's text.
        if (xml_.attributes().hasAttribute(QLatin1String("value"))) {
            property.value = xml_.attributes().value(QLatin1String("value")).toString();
            xml_.skipCurrentElement();
        } else {
            property.value = xml_.readElementText();
        }
        map.properties.append(property);
    }
}

void TmxParser::readLayer(TmxMap &map) {
    if (++map.tileLayers > 1) {
        xml_.skipCurrentElement();
        return;
    }
    map.width = intAttribute(QStringLiteral("width"), 0);
    map.height = intAttribute(QStringLiteral("height"), 0);
    while (xml_.readNextStartElement()) {
        if (xml_.name() == QLatin1String("data"))
            readData(map);
        else
            xml_.skipCurrentElement();
    }
}

void TmxParser::readData(TmxMap &map) {
    const QString encoding = xml_.attributes().value(QLatin1String("encoding")).toString();
    const QString compression = xml_.attributes().value(QLatin1String("compression")).toString();
    if (encoding.isEmpty()) {
        while (xml_.readNextStartElement()) {
            if (xml_.name() == QLatin1String("tile"))
                map.gids.append(xml_.attributes().value(QLatin1String("gid")).toUInt());
            else if (xml_.name() == QLatin1String("chunk"))
                return fail(QStringLiteral("the layer is stored in chunks, as infinite maps are"));
            xml_.skipCurrentElement();
        }
        return;
    }
    const QString text = xml_.readElementText(QXmlStreamReader::SkipChildElements);
    if (encoding == QLatin1String("csv")) {
        static const QRegularExpression separators(QStringLiteral("[,\\s]+"));
        for (const QString &token : text.split(separators, Qt::SkipEmptyParts)) {
            bool ok = false;
            map.gids.append(token.toUInt(&ok));
            if (!ok)
                return fail(
                    QStringLiteral("the layer data holds \"%1\", which is not a tile").arg(token));
        }
        return;
    }
    if (encoding != QLatin1String("base64"))
        return fail(
            QStringLiteral("the layer data uses encoding \"%1\"; save it as CSV").arg(encoding));
    QByteArray bytes = QByteArray::fromBase64(text.trimmed().toLatin1());
    if (compression == QLatin1String("zlib")) {
        // qUncompress wants the expected size in front of the zlib stream.
        const quint32 expected = quint32(map.width) * quint32(map.height) * 4;
        QByteArray sized(4, '\0');
        qToBigEndian(expected, sized.data());
        bytes = qUncompress(sized + bytes);
    } else if (!compression.isEmpty()) {
        return fail(
            QStringLiteral("the layer data uses %1 compression; save it as CSV").arg(compression));
    }
    for (qsizetype i = 0; i + 4 <= bytes.size(); i += 4)
        map.gids.append(qFromLittleEndian<quint32>(bytes.constData() + i));
}

QString parseByte(const QString &text, std::uint8_t &value) {
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    if (!ok || number < 0 || number > 255)
        return QStringLiteral("must be a whole number 0..255, not \"%1\"").arg(text);
    value = static_cast<std::uint8_t>(number);
    return QString();
}

QString parseText(const QString &text, int length, bool pad, QByteArray &bytes) {
    const std::optional<QByteArray> parsed = unescapedBytes(text);
    if (!parsed)
        return QStringLiteral("holds a character that is not one byte, or a broken \\x escape");
    if (parsed->size() > length || (!pad && parsed->size() != length))
        return QStringLiteral("must be %1 %2 characters")
            .arg(pad ? "at most" : "exactly")
            .arg(length);
    bytes = parsed->leftJustified(length, ' ');
    return QString();
}

int headerIndex(const QString &name) {
    for (int i = 0; i < LevelRecord::HeaderSize; ++i)
        if (name == QLatin1String(HeaderFieldNames[i]))
            return i;
    return -1;
}

// Builds level `number` (1-based) of `mapCount` from a parsed map into dump.
class LevelBuilder {
public:
    LevelBuilder(LevelsetDump &dump, int number, int mapCount)
        : dump_(dump), number_(number), mapCount_(mapCount) {}

    QString build(const TmxMap &map, bool &countGiven);

private:
    QString cells(const TmxMap &map, LevelDump &level);
    QString property(const Property &property, LevelDump &level, bool &countGiven);

    LevelsetDump &dump_;
    int number_;
    int mapCount_;
};

QString LevelBuilder::build(const TmxMap &map, bool &countGiven) {
    const QString where = QStringLiteral("level %1: ").arg(number_);
    if (map.tileLayers != 1)
        return where +
               QStringLiteral("the map has %1 tile layers; a level is one").arg(map.tileLayers);
    if (map.width < 0 || map.height < 0)
        return where + QStringLiteral("the map is %1 x %2").arg(map.width).arg(map.height);
    if (map.gids.size() != qsizetype(map.width) * map.height)
        return where + QStringLiteral("the layer holds %1 cells; a %2 x %3 map has %4")
                           .arg(map.gids.size())
                           .arg(map.width)
                           .arg(map.height)
                           .arg(qsizetype(map.width) * map.height);

    LevelDump level;
    QString error = cells(map, level);
    if (!error.isEmpty())
        return error;
    if (map.width > LevelRecord::GridSize || map.height > LevelRecord::GridSize)
        return where + QStringLiteral("the map is %1 x %2; a level is at most 32 x 32")
                           .arg(map.width)
                           .arg(map.height);
    // What the map does not say is what a new level holds; the finish sits bottom-right.
    LevelRecord fresh;
    fresh.reset();
    std::copy(fresh.header.begin(), fresh.header.end(), level.header.begin());
    level.header[LevelRecord::Width] = static_cast<std::uint8_t>(map.width);
    level.header[LevelRecord::Height] = static_cast<std::uint8_t>(map.height);
    level.header[LevelRecord::FinishX] = static_cast<std::uint8_t>(std::max(map.width - 1, 0));
    level.header[LevelRecord::FinishY] = static_cast<std::uint8_t>(std::max(map.height - 1, 0));
    for (const Property &each : map.properties) {
        error = property(each, level, countGiven);
        if (!error.isEmpty())
            return where + QStringLiteral("property \"%1\" ").arg(each.name) + error;
    }
    dump_.levels.append(level);
    return QString();
}

QString LevelBuilder::cells(const TmxMap &map, LevelDump &level) {
    const int firstGid = map.firstGid < 0 ? 1 : map.firstGid;
    for (int y = 0; y < map.height; ++y)
        for (int x = 0; x < map.width; ++x) {
            const QString where =
                QStringLiteral("level %1, cell (%2, %3): ").arg(number_).arg(x).arg(y);
            const quint32 gid = map.gids[y * map.width + x];
            if (x >= LevelRecord::GridSize || y >= LevelRecord::GridSize)
                return where + QStringLiteral("outside the 32 x 32 grid; the map is %1 x %2")
                                   .arg(map.width)
                                   .arg(map.height);
            if (gid & FlipFlags)
                return where +
                       QStringLiteral("the tile is flipped or rotated; level tiles cannot be");
            if (gid == 0)
                return where + QStringLiteral("empty; every cell of a level holds a tile");
            const qint64 id = qint64(gid) - firstGid;
            if (id < 0)
                return where + QStringLiteral("the tile comes from another tileset than kestrix");
            if (!isPlaceableTile(int(std::min<qint64>(id, 255))))
                return where +
                       QStringLiteral("tile id %1 is not one a level can hold (0..177)").arg(id);
            level.cells += static_cast<char>(id);
        }
    return QString();
}

QString LevelBuilder::property(const Property &property, LevelDump &level, bool &countGiven) {
    const QString &name = property.name;
    if (name == QLatin1String("width") || name == QLatin1String("height"))
        return QStringLiteral("is not read: the map's size is the level's size");
    const int header = headerIndex(name);
    if (header >= 0)
        return parseByte(property.value, level.header[header]);
    if (name == QLatin1String("passcode")) {
        if (number_ == 1)
            return QStringLiteral("cannot be kept: the first level has no passcode");
        return parseText(property.value, LevelsetDump::PasscodeLength, true,
                         dump_.passcodes[number_ - 2]);
    }
    if (number_ > 1)
        return QStringLiteral("is not a level property (levelset-wide values belong on the "
                              "first map)");
    if (name == QLatin1String("tag"))
        return parseText(property.value, LevelsetDump::TagLength, false, dump_.tag);
    if (name == QLatin1String("reserved1"))
        return parseByte(property.value, dump_.reserved1);
    if (name == QLatin1String("reserved2"))
        return parseByte(property.value, dump_.reserved2);
    if (name == QLatin1String("levelCount")) {
        countGiven = true;
        return parseByte(property.value, dump_.levelCount);
    }
    if (name == QLatin1String("trailing")) {
        const std::optional<QByteArray> bytes = fromHex(property.value);
        if (!bytes)
            return QStringLiteral("must hold pairs of hex digits, like \"0a ff\"");
        dump_.trailing = *bytes;
        return QString();
    }
    static const QRegularExpression spare(QStringLiteral("^passcode([2-8])$"));
    const QRegularExpressionMatch match = spare.match(name);
    if (match.hasMatch()) {
        const int owner = match.captured(1).toInt();
        if (owner <= mapCount_)
            return QStringLiteral("belongs on the map of level %1 as \"passcode\"").arg(owner);
        return parseText(property.value, LevelsetDump::PasscodeLength, true,
                         dump_.passcodes[owner - 2]);
    }
    return QStringLiteral("is not a property of a level or a levelset");
}

QStringList inputMaps(const QString &input) {
    const QString base = input.chopped(4); // ".tmx"
    QString first;
    if (base.endsWith(QLatin1String("-1")) && QFileInfo::exists(input))
        first = base.chopped(2);
    else if (QFileInfo::exists(input))
        return {input};
    else if (QFileInfo::exists(base + QStringLiteral("-1.tmx")))
        first = base;
    else
        return {};
    QStringList maps;
    for (int number = 1; QFileInfo::exists(first + QStringLiteral("-%1.tmx").arg(number)); ++number)
        maps << first + QStringLiteral("-%1.tmx").arg(number);
    return maps;
}

} // namespace

ImportResult importTmx(const QString &input, const QByteArray &defaultTag) {
    const QStringList maps = inputMaps(input);
    if (maps.isEmpty())
        return ImportResult::failure(
            QStringLiteral("%1: no such map, nor %2-1.tmx").arg(input, input.chopped(4)));
    if (maps.size() > LevelsetDump::MaxLevels)
        return ImportResult::failure(
            QStringLiteral("%1: %2 maps; a levelset holds at most 8 levels")
                .arg(maps.first())
                .arg(maps.size()));

    LevelsetDump dump;
    dump.hasPrologue = true;
    dump.tag = defaultTag;
    for (QByteArray &code : dump.passcodes)
        code = QByteArray(LevelsetDump::PasscodeLength, ' ');
    bool countGiven = false;
    for (int index = 0; index < maps.size(); ++index) {
        QString reason;
        const std::optional<QByteArray> xml = readWholeFile(maps[index], reason);
        if (!xml)
            return ImportResult::failure(maps[index] + QStringLiteral(": ") + reason);
        TmxMap map;
        QString error = TmxParser(*xml).parse(map);
        if (error.isEmpty())
            error = LevelBuilder(dump, index + 1, int(maps.size())).build(map, countGiven);
        if (!error.isEmpty())
            return ImportResult::failure(maps[index] + QStringLiteral(": ") + error);
    }
    if (!countGiven)
        dump.levelCount = static_cast<std::uint8_t>(dump.levels.size());
    return {dump, QString()};
}
