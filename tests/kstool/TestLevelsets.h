#pragma once

#include "levelset/LevelsetFile.h"

#include <QByteArray>
#include <QList>
#include <random>

// Levelset files for the tests: real ones from the editor's writer, and broken ones made by
// changing a real one's bytes where the format puts each field.
namespace TestLevelsets {

inline constexpr int CountOffset = 7;
inline constexpr int FirstLevel = 52;

inline QByteArray fileOf(const Levelset &levelset,
                         const QString &name = QStringLiteral("zkstlabc.kst")) {
    return writeLevelset(levelset, QStringLiteral("/levels/") + name);
}

inline QByteArray fresh() {
    return fileOf(Levelset());
}

// Three levels of different sizes, passcodes with lower case and a byte no editor types,
// reserved bytes, header values no editor command writes, and a few objects.
inline Levelset varied() {
    Levelset levelset;
    levelset.levelCount = 3;
    levelset.reserved1 = 17;
    levelset.reserved2 = 250;
    levelset.storePasscode(0, QStringLiteral("ABC123"));
    levelset.storePasscode(1, QStringLiteral("low\\q"));
    levelset.passcodes[5][2] = '\x01';
    LevelRecord &first = levelset.levels[0];
    first.tile(3, 1) = 89;
    first.tile(11, 7) = 168;
    LevelRecord &second = levelset.levels[1];
    second.header[LevelRecord::Width] = 32;
    second.header[LevelRecord::Height] = 20;
    second.header[LevelRecord::LevelType] = 2;
    second.header[LevelRecord::AlienType] = 0;
    second.header[LevelRecord::StartX] = 40;
    second.header[LevelRecord::Time] = 255;
    for (int x = 0; x < 32; ++x)
        second.tile(x, 19) = static_cast<std::uint8_t>(x + 140);
    LevelRecord &third = levelset.levels[2];
    third.header[LevelRecord::Width] = 13;
    third.header[LevelRecord::Height] = 9;
    third.tile(12, 8) = 177;
    return levelset;
}

inline QByteArray withByte(QByteArray bytes, int offset, int value) {
    bytes[offset] = static_cast<char>(value);
    return bytes;
}

// A file whose count byte says `count` and which holds that many default levels.
inline QByteArray withLevels(int count) {
    Levelset levelset;
    levelset.levelCount = static_cast<std::uint8_t>(std::min(count, 8));
    QByteArray bytes = fileOf(levelset);
    const QByteArray level = bytes.mid(FirstLevel, LevelRecord::HeaderSize + 12 * 8);
    for (int i = 8; i < count; ++i)
        bytes += level;
    return withByte(bytes, CountOffset, count);
}

// `holes` alien holes (both pictures) and `guards` guards on the given level of three.
inline QByteArray withObjects(int levelIndex, int holes, int guards) {
    Levelset levelset;
    levelset.levelCount = 3;
    LevelRecord &level = levelset.levels[levelIndex];
    int cell = 0;
    for (int i = 0; i < holes; ++i, ++cell)
        level.tile(cell % 12, cell / 12) = i % 2 ? 70 : 69;
    for (int i = 0; i < guards; ++i, ++cell)
        level.tile(cell % 12, cell / 12) = 75;
    return fileOf(levelset);
}

// 1 MiB of noise whose count byte says 200 and whose first level is 20 x 40.
inline QByteArray noise() {
    std::mt19937 generator(7);
    QByteArray bytes(1024 * 1024, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(generator() & 0xFF);
    bytes[CountOffset] = static_cast<char>(200);
    bytes[FirstLevel + LevelRecord::Height] = 40;
    bytes[FirstLevel + LevelRecord::Width] = 20;
    return bytes;
}

struct NamedFile {
    const char *name;
    QByteArray bytes;
};

// Every kind of file the tools must take without losing a byte.
inline QList<NamedFile> corpus() {
    return {
        {"fresh", fresh()},
        {"varied", fileOf(varied())},
        {"eight full levels",
         [] {
             Levelset levelset;
             levelset.levelCount = 8;
             for (LevelRecord &level : levelset.levels) {
                 level.header[LevelRecord::Width] = 32;
                 level.header[LevelRecord::Height] = 32;
                 for (int i = 0; i < 32 * 32; ++i)
                     level.tiles[i] = static_cast<std::uint8_t>(i % 178);
             }
             return fileOf(levelset);
         }()},
        {"empty", QByteArray()},
        {"truncated header", fresh().left(30)},
        {"truncated grid", fresh().chopped(10)},
        {"count 0", withByte(fresh(), CountOffset, 0)},
        {"count 9", withLevels(9)},
        {"count 255", withByte(fresh(), CountOffset, 255)},
        {"width 33", withByte(fresh(), FirstLevel + LevelRecord::Width, 33)},
        {"height 0", withByte(fresh(), FirstLevel + LevelRecord::Height, 0)},
        {"noise", noise()},
        {"trailing bytes", fresh() + QByteArray("\x00\xffxyz", 5)},
        {"11 holes on level 3", withObjects(2, 11, 0)},
    };
}

} // namespace TestLevelsets
