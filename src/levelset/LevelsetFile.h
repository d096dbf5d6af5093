#pragma once

#include "levelset/Levelset.h"
#include "levelset/ReplaceFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <optional>

// The levelset file: a 7-byte tag, the level count, two reserved bytes, 42 passcode bytes and,
// for each level in use, its 16 header bytes and its in-level cells row by row. Every number
// is one byte; characters are stored as Latin-1.

inline constexpr int LevelsetFilePrologueSize = 52;
inline constexpr int LevelsetFileMaxSize =
    LevelsetFilePrologueSize +
    Levelset::MaxLevels * (LevelRecord::HeaderSize + LevelRecord::GridSize * LevelRecord::GridSize);

// The whole file's bytes. The tag comes from the file name in its save form (a file named
// ZKSTLxyz.KST is tagged KST0XYZ, as where names ignore case); nothing is checked and the
// levelset is not changed.
QByteArray writeLevelset(const Levelset &levelset, const QString &path);

// What the reader met that a file written by this editor never holds. The reader repairs only
// what would break the levelset's invariants and keeps everything else as it stands.
struct ReadReport {
    bool shortFile = false;     // the file ended before its counts said; missing bytes read as 0
    bool countZero = false;     // levelCount 0, loaded as 1 (level 0 keeps its defaults)
    bool countOver8 = false;    // levelCount above 8: levels 0..7 read, the count clamped to 8
    int oversizeLevel = -1;     // the first level wider or higher than 32: its cells were read
                                // up to the first one outside the grid, reading stopped there
                                // and its size bytes were clamped to 32
    bool trailingBytes = false; // the file holds bytes the reader did not read
    QList<int> undersizeLevels; // levels narrower than 12 or lower than 8, kept as they are

    bool clean() const;
    // The findings in a few words, for the status bar; empty when clean.
    QString summary() const;
};

// Reads a file's bytes over whatever the levelset holds: callers reset it first, so records the
// file does not cover keep their defaults. Afterwards levelCount is 1..8, every size is at most
// 32 and currentLevel is 0; levelsetPath is not touched.
ReadReport readLevelset(Levelset &levelset, QByteArrayView bytes);

// Writes the levelset's file at path in one piece: afterwards the file holds exactly the new
// bytes, or it is as it was and the result says why.
ReplaceResult saveLevelsetFile(const Levelset &levelset, const QString &path);

// Reads the file at path into the levelset. nullopt, with the levelset unchanged, when the
// file cannot be opened or read.
std::optional<ReadReport> readLevelsetFile(Levelset &levelset, const QString &path);
