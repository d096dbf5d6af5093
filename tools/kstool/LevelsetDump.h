#pragma once

#include "levelset/LevelRecord.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <array>
#include <cstdint>

// A levelset file's bytes split into the fields the writer puts there, judged by nothing:
// whatever the editor's reader would stop at or repair stays here exactly as the file holds it,
// so that toBytes() gives back the very bytes fromBytes() was given.
struct LevelDump {
    std::array<std::uint8_t, LevelRecord::HeaderSize> header{};
    QByteArray cells; // height x width ids, row by row, as the file stores them

    int width() const { return header[LevelRecord::Width]; }
    int height() const { return header[LevelRecord::Height]; }
    std::uint8_t cell(int x, int y) const {
        return static_cast<std::uint8_t>(cells[y * width() + x]);
    }
};

struct LevelsetDump {
    static constexpr int TagLength = 7;
    static constexpr int PrologueSize = 52;
    static constexpr int MaxLevels = 8;
    static constexpr int PasscodeSlots = 7;
    static constexpr int PasscodeLength = 6;

    // False when the file is too short to hold the 52 bytes before the first level; then
    // every byte it has is in trailing and the fields below mean nothing.
    bool hasPrologue = false;
    QByteArray tag;              // 7 bytes
    std::uint8_t levelCount = 0; // as stored, which may differ from levels.size()
    std::uint8_t reserved1 = 0;
    std::uint8_t reserved2 = 0;
    std::array<QByteArray, PasscodeSlots> passcodes; // 6 bytes each
    // The complete level records, in order, as long as each fits the 32 x 32 grid, at most
    // levelCount and at most 8 of them.
    QList<LevelDump> levels;
    QByteArray trailing; // every byte after the last complete record

    static LevelsetDump fromBytes(QByteArrayView bytes);
    QByteArray toBytes() const;
};
