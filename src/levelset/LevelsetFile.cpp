#include "levelset/LevelsetFile.h"

#include "levelset/LevelsetName.h"

#include <QFile>
#include <QStringList>
#include <algorithm>

namespace {

constexpr int GridSize = LevelRecord::GridSize;

// Bytes are taken strictly in file order; a byte past the end reads as 0.
class ByteReader {
public:
    explicit ByteReader(QByteArrayView bytes) : bytes_(bytes) {}

    std::uint8_t next() {
        if (position_ >= bytes_.size()) {
            pastEnd_ = true;
            return 0;
        }
        return static_cast<std::uint8_t>(bytes_[position_++]);
    }
    void skip(qsizetype count) {
        for (qsizetype i = 0; i < count; ++i)
            next();
    }
    bool pastEnd() const { return pastEnd_; }
    bool unread() const { return position_ < bytes_.size(); }

private:
    QByteArrayView bytes_;
    qsizetype position_ = 0;
    bool pastEnd_ = false;
};

// Reads a level's cells row by row. Returns false when a row or column reaches 32, which is
// where reading stops.
bool readCells(ByteReader &reader, LevelRecord &level) {
    for (int y = 0; y < level.height(); ++y)
        for (int x = 0; x < level.width(); ++x) {
            if (x >= GridSize || y >= GridSize)
                return false;
            level.tile(x, y) = reader.next();
        }
    return true;
}

bool isUndersize(const LevelRecord &level) {
    return level.width() < LevelRecord::MinWidth || level.height() < LevelRecord::MinHeight;
}

} // namespace

QByteArray writeLevelset(const Levelset &levelset, const QString &path) {
    // The model keeps these within bounds; the limits only make a broken model unable to read
    // past its arrays.
    const int levels = std::min<int>(levelset.levelCount, Levelset::MaxLevels);
    auto height = [](const LevelRecord &level) { return std::min(level.height(), GridSize); };
    auto width = [](const LevelRecord &level) { return std::min(level.width(), GridSize); };

    qsizetype size = LevelsetFilePrologueSize;
    for (int i = 0; i < levels; ++i)
        size += LevelRecord::HeaderSize + height(levelset.levels[i]) * width(levelset.levels[i]);
    QByteArray bytes(size, Qt::Uninitialized);
    char *out = bytes.data();
    auto put = [&out](std::uint8_t byte) { *out++ = static_cast<char>(byte); };

    // One byte per tag character: a character outside the BMP is one character, not two.
    for (char32_t c : levelsetTag(saveFormOfPath(path)).toUcs4())
        *out++ = c <= 0xFF ? static_cast<char>(c) : '?';
    put(levelset.levelCount);
    put(levelset.reserved1);
    put(levelset.reserved2);
    for (const Levelset::Passcode &code : levelset.passcodes)
        out = std::copy(code.begin(), code.end(), out);

    for (int i = 0; i < levels; ++i) {
        const LevelRecord &level = levelset.levels[i];
        for (std::uint8_t byte : level.header)
            put(byte);
        for (int y = 0; y < height(level); ++y)
            for (int x = 0; x < width(level); ++x)
                put(level.tile(x, y));
    }
    Q_ASSERT(out == bytes.data() + bytes.size());
    return bytes;
}

ReadReport readLevelset(Levelset &levelset, QByteArrayView bytes) {
    ReadReport report;
    ByteReader reader(bytes);

    reader.skip(LevelsetTagLength);
    const int count = reader.next();
    levelset.reserved1 = reader.next();
    levelset.reserved2 = reader.next();
    for (Levelset::Passcode &code : levelset.passcodes)
        for (char &c : code)
            c = static_cast<char>(reader.next());

    int levelsRead = 0;
    for (int i = 0; i < count; ++i) {
        if (i == Levelset::MaxLevels) {
            report.countOver8 = true;
            break;
        }
        LevelRecord &level = levelset.levels[i];
        for (std::uint8_t &byte : level.header)
            byte = reader.next();
        ++levelsRead;
        // A size over 32 stops reading at this level even when no cell lies outside the grid
        // (a height of 0 with a width of 40): the rest of the file cannot be trusted.
        if (!readCells(reader, level) || level.height() > GridSize || level.width() > GridSize) {
            report.oversizeLevel = i;
            level.header[LevelRecord::Height] = std::min(level.height(), GridSize);
            level.header[LevelRecord::Width] = std::min(level.width(), GridSize);
            break;
        }
    }
    for (int i = 0; i < levelsRead; ++i)
        if (isUndersize(levelset.levels[i]))
            report.undersizeLevels.append(i);

    report.countZero = count == 0;
    levelset.levelCount =
        static_cast<std::uint8_t>(std::clamp(count, 1, static_cast<int>(Levelset::MaxLevels)));
    levelset.currentLevel = 0;
    report.shortFile = reader.pastEnd();
    report.trailingBytes = reader.unread();
    return report;
}

bool ReadReport::clean() const {
    return !shortFile && !countZero && !countOver8 && oversizeLevel < 0 && !trailingBytes &&
           undersizeLevels.isEmpty();
}

QString ReadReport::summary() const {
    QStringList parts;
    if (shortFile)
        parts << QStringLiteral("the file ended early");
    if (countZero)
        parts << QStringLiteral("a level count of 0 was read as 1");
    if (countOver8)
        parts << QStringLiteral("only the first 8 levels were read");
    if (oversizeLevel >= 0)
        parts
            << QStringLiteral("level %1 is larger than 32 x 32 and was cut").arg(oversizeLevel + 1);
    if (trailingBytes)
        parts << QStringLiteral("bytes after the last level were ignored");
    for (int level : undersizeLevels)
        parts << QStringLiteral("level %1 is smaller than 12 x 8").arg(level + 1);
    return parts.join(QStringLiteral("; "));
}

ReplaceResult saveLevelsetFile(const Levelset &levelset, const QString &path) {
    return replaceFile(path, writeLevelset(levelset, path));
}

std::optional<ReadReport> readLevelsetFile(Levelset &levelset, const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // One byte more than the largest file tells whether anything trails; a huge or endless
    // file (a device) is never read whole.
    const QByteArray bytes = file.read(LevelsetFileMaxSize + 1);
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return readLevelset(levelset, bytes);
}
