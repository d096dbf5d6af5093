#pragma once

#include "levelset/LevelRecord.h"

#include <QString>
#include <array>
#include <cstdint>

inline const QString ApplicationTitle = QStringLiteral("Kestrix: Levelset Editor");
inline const QString UntitledPath = QStringLiteral("Untitled");

// The one document: eight level records, seven passcodes and a few levelset-wide bytes.
// Passcode characters are held as the bytes the file holds (Latin-1).
struct Levelset {
    static constexpr int MaxLevels = 8;
    static constexpr int PasscodeSlots = 7;
    static constexpr int PasscodeLength = 6;
    using Passcode = std::array<char, PasscodeLength>;

    std::array<LevelRecord, MaxLevels> levels;
    std::uint8_t levelCount = 1;
    std::uint8_t reserved1 = 0;
    std::uint8_t reserved2 = 0;
    std::array<Passcode, PasscodeSlots> passcodes;
    QString levelsetPath = UntitledPath;
    std::int16_t currentLevel = 0;

    Levelset() { reset(); }

    // The memory half of starting a fresh levelset: one default level, untitled, level 0 current.
    void reset();

    LevelRecord &current() { return levels[currentLevel]; }
    const LevelRecord &current() const { return levels[currentLevel]; }

    // Stores text into a slot, cut to 6 characters or padded with blanks; characters without
    // a Latin-1 form become '?'. The text is stored as given: callers upper-case it.
    void storePasscode(int slot, const QString &text);
    QString passcode(int slot) const;
};

// "[" + path + "] - Kestrix: Levelset Editor"
QString windowTitle(const QString &levelsetPath);
