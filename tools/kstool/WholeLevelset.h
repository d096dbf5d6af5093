#pragma once

#include "levelset/LevelsetFile.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

// Everything a levelset holds, as the editor's reader leaves it, in one block of bytes laid
// out like a file of all 8 records with their whole 32 x 32 grids: the tag, the level count,
// the reserved bytes, the passcodes, then each record's 16 header bytes and its cells row by
// row. Cells outside a level's size and records past the count hold what the reader leaves
// there, so two levelsets compare and merge byte by byte.
struct WholeLevelset {
    static constexpr int TagLength = 7;
    static constexpr int CountOffset = 7;
    static constexpr int ReservedOffset = 8;
    static constexpr int PasscodeOffset = 10;
    static constexpr int FirstRecord = LevelsetFilePrologueSize;
    static constexpr int CellsPerRecord = LevelRecord::GridSize * LevelRecord::GridSize;
    static constexpr int RecordSize = LevelRecord::HeaderSize + CellsPerRecord;
    static constexpr int Size = FirstRecord + Levelset::MaxLevels * RecordSize;

    QByteArray bytes; // Size bytes

    // The tag is the first seven bytes of fileStart, padded with zeros as the reader reads a
    // short file.
    static WholeLevelset of(QByteArrayView fileStart, const Levelset &levelset);
    Levelset levelset() const;
    // The file the editor's writer makes of it, with this tag whatever the file is named.
    QByteArray file() const;

    static int headerOffset(int level, int byte) { return FirstRecord + level * RecordSize + byte; }
    static int cellOffset(int level, int x, int y) {
        return headerOffset(level, LevelRecord::HeaderSize) + y * LevelRecord::GridSize + x;
    }
    std::uint8_t at(int offset) const { return static_cast<std::uint8_t>(bytes[offset]); }
    int count() const { return at(CountOffset); }
    int width(int level) const { return at(headerOffset(level, LevelRecord::Width)); }
    int height(int level) const { return at(headerOffset(level, LevelRecord::Height)); }
};

// A levelset file read as the editor's Open reads it.
struct ReadFile {
    WholeLevelset levelset;
    // What the reader met, in kstool check's words, when it had to read anything other than
    // the file says (a short file, a level count of 0 or over 8, a level over 32 x 32,
    // trailing bytes); empty otherwise.
    QStringList repairs;
};
// nullopt with the reason in error ("PATH: cannot read: ...") when the file cannot be read.
std::optional<ReadFile> readWholeLevelset(const QString &path, QString &error);

// One thing a designer names in a levelset, where its bytes stand in the whole levelset and
// how its value reads: "level 2: time" is 99, "level 1: cell (3, 4)" is "solid wall 89".
struct LevelsetField {
    enum class Kind { Text, Number, Pair, Size, Position, Tile, LevelType, AlienType };

    int level; // the level it belongs to, 0-based; -1 for the tag, the count and the reserved bytes
    QString name;
    int offset;
    int length;
    Kind kind;

    // "level 2: time", or "level count"
    QString title() const;
    QString value(const WholeLevelset &levelset) const;
    bool differs(const WholeLevelset &a, const WholeLevelset &b) const;
};

// The tag, the level count, the reserved bytes and the passcodes, in file order.
QList<LevelsetField> levelsetWideFields();
// The header values of one level in file order: size, objectives, time, block to put, block
// to take, their types, level type, alien type, finish, start.
QList<LevelsetField> headerFields(int level);
LevelsetField cellField(int level, int x, int y);
