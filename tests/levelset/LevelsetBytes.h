#pragma once

#include "levelset/Levelset.h"

#include <QByteArray>
#include <QTest>
#include <cstdint>

// Levelset files built byte by byte, the way another program might have written them.
namespace LevelsetBytes {

inline QByteArray prologue(int levelCount, const QByteArray &tag = "KST0ABC") {
    QByteArray bytes = tag;
    bytes += char(levelCount);
    bytes += '\0';
    bytes += '\0';
    bytes += QByteArray(42, ' ');
    return bytes;
}

// A record whose every stored cell holds fill; the other header bytes are the defaults.
inline QByteArray record(int height, int width, std::uint8_t fill = 0) {
    QByteArray bytes("\x08\x0c\x00\x63\x01\x00\x02\x00\x59\x00\x00\x03\x0b\x07\x00\x00", 16);
    bytes[0] = char(height);
    bytes[1] = char(width);
    return bytes + QByteArray(height * width, char(fill));
}

// What the rest of the editor relies on after any read.
inline void verifyInvariants(const Levelset &levelset) {
    QVERIFY(levelset.levelCount >= 1 && levelset.levelCount <= Levelset::MaxLevels);
    QCOMPARE(levelset.currentLevel, 0);
    for (const LevelRecord &level : levelset.levels) {
        QVERIFY(level.width() <= LevelRecord::GridSize);
        QVERIFY(level.height() <= LevelRecord::GridSize);
    }
}

} // namespace LevelsetBytes
