#include "LevelsetDump.h"

namespace {

std::uint8_t byteAt(QByteArrayView bytes, qsizetype offset) {
    return static_cast<std::uint8_t>(bytes[offset]);
}

} // namespace

LevelsetDump LevelsetDump::fromBytes(QByteArrayView bytes) {
    LevelsetDump dump;
    if (bytes.size() < PrologueSize) {
        dump.trailing = bytes.toByteArray();
        return dump;
    }
    dump.hasPrologue = true;
    dump.tag = bytes.first(TagLength).toByteArray();
    dump.levelCount = byteAt(bytes, 7);
    dump.reserved1 = byteAt(bytes, 8);
    dump.reserved2 = byteAt(bytes, 9);
    for (int slot = 0; slot < PasscodeSlots; ++slot)
        dump.passcodes[slot] =
            bytes.sliced(10 + slot * PasscodeLength, PasscodeLength).toByteArray();

    qsizetype offset = PrologueSize;
    while (dump.levels.size() < std::min<int>(dump.levelCount, MaxLevels)) {
        if (bytes.size() - offset < LevelRecord::HeaderSize)
            break;
        LevelDump level;
        for (int i = 0; i < LevelRecord::HeaderSize; ++i)
            level.header[i] = byteAt(bytes, offset + i);
        if (level.width() > LevelRecord::GridSize || level.height() > LevelRecord::GridSize)
            break;
        const qsizetype cellCount = qsizetype(level.width()) * level.height();
        if (bytes.size() - offset - LevelRecord::HeaderSize < cellCount)
            break;
        level.cells = bytes.sliced(offset + LevelRecord::HeaderSize, cellCount).toByteArray();
        dump.levels.append(level);
        offset += LevelRecord::HeaderSize + cellCount;
    }
    dump.trailing = bytes.sliced(offset).toByteArray();
    return dump;
}

QByteArray LevelsetDump::toBytes() const {
    if (!hasPrologue)
        return trailing;
    QByteArray bytes = tag;
    bytes += static_cast<char>(levelCount);
    bytes += static_cast<char>(reserved1);
    bytes += static_cast<char>(reserved2);
    for (const QByteArray &code : passcodes)
        bytes += code;
    for (const LevelDump &level : levels) {
        bytes.append(reinterpret_cast<const char *>(level.header.data()), LevelRecord::HeaderSize);
        bytes += level.cells;
    }
    bytes += trailing;
    return bytes;
}
