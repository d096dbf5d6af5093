#include "WholeLevelset.h"

#include "ByteText.h"
#include "Files.h"
#include "Findings.h"

#include "analysis/TileCatalogue.h"

#include <algorithm>

namespace {

constexpr int GridSize = LevelRecord::GridSize;
using Kind = LevelsetField::Kind;

// A tile in a designer's words: "solid wall 89", or "tile 42" for an id the catalogue does not
// list.
QString tileWords(int id) {
    const QString name = tileShortName(id);
    return QStringLiteral("%1 %2").arg(name.isEmpty() ? QStringLiteral("tile") : name).arg(id);
}

QString typeWords(int value, int first, const char *firstName, const char *secondName) {
    if (value == first)
        return QLatin1String(firstName);
    if (value == first + 1)
        return QLatin1String(secondName);
    return QString::number(value);
}

} // namespace

WholeLevelset WholeLevelset::of(QByteArrayView fileStart, const Levelset &levelset) {
    WholeLevelset whole;
    QByteArray &bytes = whole.bytes;
    bytes.reserve(Size);
    bytes += fileStart.first(std::min<qsizetype>(fileStart.size(), TagLength));
    bytes.resize(TagLength, '\0');
    bytes += static_cast<char>(levelset.levelCount);
    bytes += static_cast<char>(levelset.reserved1);
    bytes += static_cast<char>(levelset.reserved2);
    for (const Levelset::Passcode &code : levelset.passcodes)
        bytes.append(code.data(), code.size());
    for (const LevelRecord &level : levelset.levels) {
        bytes.append(reinterpret_cast<const char *>(level.header.data()), level.header.size());
        for (int y = 0; y < GridSize; ++y)
            for (int x = 0; x < GridSize; ++x)
                bytes += static_cast<char>(level.tile(x, y));
    }
    Q_ASSERT(bytes.size() == Size);
    return whole;
}

Levelset WholeLevelset::levelset() const {
    Levelset levelset;
    levelset.levelCount = at(CountOffset);
    levelset.reserved1 = at(ReservedOffset);
    levelset.reserved2 = at(ReservedOffset + 1);
    const char *passcodes = bytes.constData() + PasscodeOffset;
    for (Levelset::Passcode &code : levelset.passcodes) {
        std::copy_n(passcodes, code.size(), code.begin());
        passcodes += code.size();
    }
    for (int index = 0; index < Levelset::MaxLevels; ++index) {
        LevelRecord &level = levelset.levels[index];
        for (int byte = 0; byte < LevelRecord::HeaderSize; ++byte)
            level.header[byte] = at(headerOffset(index, byte));
        for (int y = 0; y < GridSize; ++y)
            for (int x = 0; x < GridSize; ++x)
                level.tile(x, y) = at(cellOffset(index, x, y));
    }
    return levelset;
}

QByteArray WholeLevelset::file() const {
    QByteArray file = writeLevelset(levelset(), QString());
    file.replace(0, TagLength, bytes.first(TagLength));
    return file;
}

std::optional<ReadFile> readWholeLevelset(const QString &path, QString &error) {
    QString reason;
    const std::optional<QByteArray> bytes = readWholeFile(path, reason);
    if (!bytes) {
        error = path + QStringLiteral(": ") + reason;
        return std::nullopt;
    }
    Levelset levelset;
    const ReadReport report = readLevelset(levelset, *bytes);
    ReadFile read{WholeLevelset::of(*bytes, levelset), {}};
    // A level under 12 x 8 is read as it stands; only the rest changes what is compared.
    if (report.shortFile || report.countZero || report.countOver8 || report.oversizeLevel >= 0 ||
        report.trailingBytes)
        read.repairs = readerFindings(report, *bytes, levelset);
    return read;
}

QString LevelsetField::title() const {
    return level < 0 ? name : QStringLiteral("level %1: %2").arg(level + 1).arg(name);
}

QString LevelsetField::value(const WholeLevelset &levelset) const {
    const auto byte = [&](int i) { return levelset.at(offset + i); };
    switch (kind) {
    case Kind::Text:
        return QLatin1Char('"') + escapedBytes(levelset.bytes.sliced(offset, length)) +
               QLatin1Char('"');
    case Kind::Number:
        return QString::number(byte(0));
    case Kind::Pair:
        return QStringLiteral("%1, %2").arg(byte(0)).arg(byte(1));
    case Kind::Size: // height first, as the header holds it
        return QStringLiteral("%1 x %2").arg(byte(1)).arg(byte(0));
    case Kind::Position:
        return QStringLiteral("(%1, %2)").arg(byte(0)).arg(byte(1));
    case Kind::Tile:
        return tileWords(byte(0));
    case Kind::LevelType:
        return typeWords(byte(0), 0, "Normal", "Hatchery");
    case Kind::AlienType:
        return typeWords(byte(0), 3, "Normal", "Strong");
    }
    return {};
}

bool LevelsetField::differs(const WholeLevelset &a, const WholeLevelset &b) const {
    return a.bytes.sliced(offset, length) != b.bytes.sliced(offset, length);
}

QList<LevelsetField> levelsetWideFields() {
    QList<LevelsetField> fields{
        {-1, QStringLiteral("tag"), 0, WholeLevelset::TagLength, Kind::Text},
        {-1, QStringLiteral("level count"), WholeLevelset::CountOffset, 1, Kind::Number},
        {-1, QStringLiteral("reserved bytes"), WholeLevelset::ReservedOffset, 2, Kind::Pair},
    };
    // Slot i is the passcode of level i + 2; the first level has none.
    for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
        fields.append({slot + 1, QStringLiteral("passcode"),
                       WholeLevelset::PasscodeOffset + slot * Levelset::PasscodeLength,
                       Levelset::PasscodeLength, Kind::Text});
    return fields;
}

QList<LevelsetField> headerFields(int level) {
    const auto field = [level](const char *name, LevelRecord::HeaderByte first, int length,
                               Kind kind) {
        return LevelsetField{level, QLatin1String(name), WholeLevelset::headerOffset(level, first),
                             length, kind};
    };
    return {
        field("size", LevelRecord::Height, 2, Kind::Size),
        field("objectives", LevelRecord::Objectives, 1, Kind::Number),
        field("time", LevelRecord::Time, 1, Kind::Number),
        field("block to put", LevelRecord::PutX, 2, Kind::Position),
        field("block to take", LevelRecord::TakeX, 2, Kind::Position),
        field("block to put type", LevelRecord::PutType, 1, Kind::Tile),
        field("block to take type", LevelRecord::TakeType, 1, Kind::Tile),
        field("level type", LevelRecord::LevelType, 1, Kind::LevelType),
        field("alien type", LevelRecord::AlienType, 1, Kind::AlienType),
        field("finish", LevelRecord::FinishX, 2, Kind::Position),
        field("start", LevelRecord::StartX, 2, Kind::Position),
    };
}

LevelsetField cellField(int level, int x, int y) {
    return {level, QStringLiteral("cell (%1, %2)").arg(x).arg(y),
            WholeLevelset::cellOffset(level, x, y), 1, Kind::Tile};
}
