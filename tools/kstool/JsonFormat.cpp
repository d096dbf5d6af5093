#include "JsonFormat.h"

#include "ByteText.h"
#include "HeaderFields.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QSet>

namespace {

const QString FormatName = QStringLiteral("kestrix-levelset");
constexpr int FormatVersion = 1;

// Bytes are characters U+0000..U+00FF, so any byte a file holds survives as text.
QString quoted(QByteArrayView latin1) {
    QString text = QStringLiteral("\"");
    for (char byte : latin1) {
        const auto u = static_cast<unsigned char>(byte);
        if (u == '"' || u == '\\')
            text += QStringLiteral("\\") + QLatin1Char(byte);
        else if (u < 0x20 || u == 0x7F)
            text += QStringLiteral("\\u%1").arg(u, 4, 16, QLatin1Char('0'));
        else
            text += QChar(u);
    }
    return text + QLatin1Char('"');
}

QString tileRow(const LevelDump &level, int y) {
    QString row;
    for (int x = 0; x < level.width(); ++x) {
        if (x > 0)
            row += QLatin1Char(' ');
        row += QStringLiteral("%1").arg(level.cell(x, y), 3);
    }
    return row;
}

QString textArray(const QStringList &lines, const QString &indent) {
    if (lines.isEmpty())
        return QStringLiteral("[]");
    QStringList items;
    for (const QString &line : lines)
        items << indent + QStringLiteral("  ") + quoted(line.toLatin1());
    return QStringLiteral("[\n") + items.join(QStringLiteral(",\n")) + QLatin1Char('\n') + indent +
           QLatin1Char(']');
}

QString levelObject(const LevelDump &level) {
    const QString indent = QStringLiteral("      ");
    QStringList fields;
    for (int i = 0; i < LevelRecord::HeaderSize; ++i)
        fields << indent + QStringLiteral("\"%1\": %2")
                               .arg(QLatin1String(HeaderFieldNames[i]))
                               .arg(level.header[i]);
    QStringList rows;
    for (int y = 0; y < level.height(); ++y)
        rows << tileRow(level, y);
    fields << indent + QStringLiteral("\"tiles\": ") + textArray(rows, indent);
    return QStringLiteral("    {\n") + fields.join(QStringLiteral(",\n")) +
           QStringLiteral("\n    }");
}

// Reading: every check names where it looked, so a hand-edited file can be fixed quickly.
class JsonReader {
public:
    explicit JsonReader(const QByteArray &defaultTag) : defaultTag_(defaultTag) {}

    ImportResult read(QByteArrayView json);

private:
    bool fail(const QString &error) {
        if (error_.isEmpty())
            error_ = error;
        return false;
    }
    bool onlyKnownFields(const QJsonObject &object, const QStringList &known, const QString &where);
    bool byteValue(const QJsonObject &object, const QString &key, const QString &where,
                   std::uint8_t &value);
    bool latin1Text(const QJsonValue &value, const QString &what, QByteArray &bytes);
    bool readPasscodes(const QJsonValue &value, LevelsetDump &dump);
    bool readLevel(const QJsonValue &value, int number, LevelDump &level);
    bool readTrailing(const QJsonValue &value, QByteArray &bytes);

    QByteArray defaultTag_;
    QString error_;
};

QString lineAndColumn(QByteArrayView json, qsizetype offset) {
    const QByteArrayView before = json.first(std::min(offset, json.size()));
    const qsizetype line = before.count('\n') + 1;
    const qsizetype lastBreak = QByteArray(before.data(), before.size()).lastIndexOf('\n');
    return QStringLiteral("line %1, column %2").arg(line).arg(offset - lastBreak);
}

ImportResult JsonReader::read(QByteArrayView json) {
    QJsonParseError parseError;
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray(json.data(), json.size()), &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return ImportResult::failure(
            QStringLiteral("not valid JSON: %1 at %2")
                .arg(parseError.errorString(), lineAndColumn(json, parseError.offset)));
    if (!document.isObject())
        return ImportResult::failure(QStringLiteral("the JSON text is not an object"));
    const QJsonObject root = document.object();
    if (root.value(QStringLiteral("format")).toString() != FormatName)
        return ImportResult::failure(
            QStringLiteral("not a levelset export: \"format\" must be \"%1\"").arg(FormatName));
    const QJsonValue version = root.value(QStringLiteral("version"));
    if (!version.isDouble() || version.toDouble() != FormatVersion)
        return ImportResult::failure(
            QStringLiteral("\"version\" must be %1, the only version this kstool reads")
                .arg(FormatVersion));

    LevelsetDump dump;
    if (root.value(QStringLiteral("truncated")).toBool()) {
        // A file too short for the levelset's first 52 bytes: nothing but its bytes.
        if (!onlyKnownFields(root, {"format", "version", "truncated", "trailing"}, QString()) ||
            !readTrailing(root.value(QStringLiteral("trailing")), dump.trailing))
            return ImportResult::failure(error_);
        return {dump, QString()};
    }

    const QStringList known{"format",    "version", "tag",        "reserved1", "reserved2",
                            "passcodes", "levels",  "levelCount", "trailing",  "truncated"};
    if (!onlyKnownFields(root, known, QString()))
        return ImportResult::failure(error_);
    dump.hasPrologue = true;
    dump.tag = defaultTag_;
    if (root.contains(QStringLiteral("tag"))) {
        if (!latin1Text(root.value(QStringLiteral("tag")), QStringLiteral("\"tag\""), dump.tag))
            return ImportResult::failure(error_);
        if (dump.tag.size() != LevelsetDump::TagLength)
            return ImportResult::failure(
                QStringLiteral("\"tag\" must be exactly 7 characters, not %1")
                    .arg(dump.tag.size()));
    }
    if ((root.contains(QStringLiteral("reserved1")) &&
         !byteValue(root, QStringLiteral("reserved1"), QString(), dump.reserved1)) ||
        (root.contains(QStringLiteral("reserved2")) &&
         !byteValue(root, QStringLiteral("reserved2"), QString(), dump.reserved2)) ||
        !readPasscodes(root.value(QStringLiteral("passcodes")), dump))
        return ImportResult::failure(error_);

    const QJsonValue levels = root.value(QStringLiteral("levels"));
    if (!levels.isArray())
        return ImportResult::failure(QStringLiteral("\"levels\" must be an array of levels"));
    if (levels.toArray().size() > LevelsetDump::MaxLevels)
        return ImportResult::failure(
            QStringLiteral("\"levels\" holds %1 levels; a levelset holds at most 8")
                .arg(levels.toArray().size()));
    for (qsizetype i = 0; i < levels.toArray().size(); ++i) {
        LevelDump level;
        if (!readLevel(levels.toArray().at(i), int(i) + 1, level))
            return ImportResult::failure(error_);
        dump.levels.append(level);
    }
    dump.levelCount = static_cast<std::uint8_t>(dump.levels.size());
    if (root.contains(QStringLiteral("levelCount")) &&
        !byteValue(root, QStringLiteral("levelCount"), QString(), dump.levelCount))
        return ImportResult::failure(error_);
    if (!readTrailing(root.value(QStringLiteral("trailing")), dump.trailing))
        return ImportResult::failure(error_);
    return {dump, QString()};
}

bool JsonReader::onlyKnownFields(const QJsonObject &object, const QStringList &known,
                                 const QString &where) {
    for (const QString &key : object.keys())
        if (!known.contains(key))
            return fail(where + QStringLiteral("unknown field \"%1\"").arg(key));
    return true;
}

bool JsonReader::byteValue(const QJsonObject &object, const QString &key, const QString &where,
                           std::uint8_t &value) {
    const QJsonValue field = object.value(key);
    if (field.isUndefined())
        return fail(where + QStringLiteral("\"%1\" is missing").arg(key));
    const double number = field.toDouble(-1);
    if (!field.isDouble() || number < 0 || number > 255 || number != int(number))
        return fail(where + QStringLiteral("\"%1\" must be a whole number 0..255").arg(key));
    value = static_cast<std::uint8_t>(number);
    return true;
}

bool JsonReader::latin1Text(const QJsonValue &value, const QString &what, QByteArray &bytes) {
    if (!value.isString())
        return fail(what + QStringLiteral(" must be a string"));
    const QString text = value.toString();
    for (QChar c : text)
        if (c.unicode() > 0xFF)
            return fail(what +
                        QStringLiteral(" holds \"%1\", which is not a one-byte (Latin-1) character")
                            .arg(c));
    bytes = text.toLatin1();
    return true;
}

bool JsonReader::readPasscodes(const QJsonValue &value, LevelsetDump &dump) {
    if (!value.isArray() || value.toArray().size() != LevelsetDump::PasscodeSlots)
        return fail(QStringLiteral(
            "\"passcodes\" must be an array of 7 strings, the passcodes of levels 2..8"));
    for (int slot = 0; slot < LevelsetDump::PasscodeSlots; ++slot) {
        const QString what = QStringLiteral("the passcode of level %1").arg(slot + 2);
        QByteArray code;
        if (!latin1Text(value.toArray().at(slot), what, code))
            return false;
        if (code.size() > LevelsetDump::PasscodeLength)
            return fail(what + QStringLiteral(" has %1 characters; at most 6").arg(code.size()));
        dump.passcodes[slot] = code.leftJustified(LevelsetDump::PasscodeLength, ' ');
    }
    return true;
}

bool JsonReader::readLevel(const QJsonValue &value, int number, LevelDump &level) {
    const QString where = QStringLiteral("level %1: ").arg(number);
    if (!value.isObject())
        return fail(where + QStringLiteral("must be an object"));
    const QJsonObject object = value.toObject();
    QStringList known{QStringLiteral("tiles")};
    for (const char *name : HeaderFieldNames)
        known << QLatin1String(name);
    if (!onlyKnownFields(object, known, where))
        return false;
    for (int i = 0; i < LevelRecord::HeaderSize; ++i)
        if (!byteValue(object, QLatin1String(HeaderFieldNames[i]), where, level.header[i]))
            return false;
    if (level.width() > LevelRecord::GridSize || level.height() > LevelRecord::GridSize)
        return fail(where + QStringLiteral("%1 x %2 does not fit the 32 x 32 grid")
                                .arg(level.width())
                                .arg(level.height()));

    const QJsonValue tiles = object.value(QStringLiteral("tiles"));
    if (!tiles.isArray() || tiles.toArray().size() != level.height())
        return fail(where + QStringLiteral(
                                "\"tiles\" must be an array of %1 rows, one per row of the level")
                                .arg(level.height()));
    for (int y = 0; y < level.height(); ++y) {
        const QString rowWhere = QStringLiteral("level %1, row %2: ").arg(number).arg(y);
        const QJsonValue row = tiles.toArray().at(y);
        if (!row.isString())
            return fail(rowWhere + QStringLiteral("must be a string of tile ids"));
        const QStringList ids = row.toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (ids.size() != level.width())
            return fail(rowWhere + QStringLiteral("holds %1 tile ids; the width is %2")
                                       .arg(ids.size())
                                       .arg(level.width()));
        for (int x = 0; x < level.width(); ++x) {
            bool ok = false;
            const uint id = ids[x].toUInt(&ok);
            if (!ok || id > 255)
                return fail(
                    QStringLiteral("level %1, cell (%2, %3): \"%4\" is not a tile id 0..255")
                        .arg(number)
                        .arg(x)
                        .arg(y)
                        .arg(ids[x]));
            level.cells += static_cast<char>(id);
        }
    }
    return true;
}

bool JsonReader::readTrailing(const QJsonValue &value, QByteArray &bytes) {
    if (value.isUndefined())
        return true;
    QString text;
    if (value.isArray()) {
        for (const QJsonValue &line : value.toArray()) {
            if (!line.isString())
                return fail(QStringLiteral("\"trailing\" must hold strings of hex bytes"));
            text += line.toString() + QLatin1Char(' ');
        }
    } else if (value.isString()) {
        text = value.toString();
    } else {
        return fail(QStringLiteral("\"trailing\" must hold strings of hex bytes"));
    }
    const std::optional<QByteArray> parsed = fromHex(text);
    if (!parsed)
        return fail(QStringLiteral("\"trailing\" must hold pairs of hex digits, like \"0a ff\""));
    bytes = *parsed;
    return true;
}

} // namespace

QByteArray levelsetToJson(const LevelsetDump &dump) {
    QStringList fields{QStringLiteral("  \"format\": ") + quoted(FormatName.toLatin1()),
                       QStringLiteral("  \"version\": %1").arg(FormatVersion)};
    if (!dump.hasPrologue) {
        fields << QStringLiteral("  \"truncated\": true");
    } else {
        fields << QStringLiteral("  \"tag\": ") + quoted(dump.tag)
               << QStringLiteral("  \"reserved1\": %1").arg(dump.reserved1)
               << QStringLiteral("  \"reserved2\": %1").arg(dump.reserved2);
        QStringList codes;
        for (const QByteArray &code : dump.passcodes)
            codes << quoted(code);
        fields << QStringLiteral("  \"passcodes\": [") + codes.join(QStringLiteral(", ")) +
                      QLatin1Char(']');
        QStringList levels;
        for (const LevelDump &level : dump.levels)
            levels << levelObject(level);
        fields << (levels.isEmpty()
                       ? QStringLiteral("  \"levels\": []")
                       : QStringLiteral("  \"levels\": [\n") + levels.join(QStringLiteral(",\n")) +
                             QStringLiteral("\n  ]"));
        // Only a count the levels do not explain is written, so adding a level by hand needs
        // no second edit.
        if (dump.levelCount != dump.levels.size())
            fields << QStringLiteral("  \"levelCount\": %1").arg(dump.levelCount);
    }
    if (!dump.trailing.isEmpty())
        fields << QStringLiteral("  \"trailing\": ") +
                      textArray(hexLines(dump.trailing), QStringLiteral("  "));
    return (QStringLiteral("{\n") + fields.join(QStringLiteral(",\n")) + QStringLiteral("\n}\n"))
        .toUtf8();
}

ImportResult levelsetFromJson(QByteArrayView json, const QByteArray &defaultTag) {
    return JsonReader(defaultTag).read(json);
}
