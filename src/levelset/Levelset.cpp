#include "levelset/Levelset.h"

void LevelRecord::reset() {
    header = {8, 12, 0, 99, 1, 0, 2, 0, 89, 0, 0, 3, 0, 0, 0, 0};
    header[FinishX] = static_cast<std::uint8_t>(width() - 1);
    header[FinishY] = static_cast<std::uint8_t>(height() - 1);
    tiles.fill(0);
}

void Levelset::reset() {
    levelCount = 1;
    reserved1 = 0;
    reserved2 = 0;
    levelsetPath = UntitledPath;
    for (Passcode &slot : passcodes)
        slot.fill(' ');
    for (LevelRecord &level : levels)
        level.reset();
    currentLevel = 0;
}

void Levelset::storePasscode(int slot, const QString &text) {
    Passcode &code = passcodes[slot];
    code.fill(' ');
    const QString cut = text.left(PasscodeLength);
    for (qsizetype i = 0; i < cut.size(); ++i) {
        const char16_t c = cut[i].unicode();
        code[i] = c <= 0xFF ? static_cast<char>(c) : '?';
    }
}

QString Levelset::passcode(int slot) const {
    return QString::fromLatin1(passcodes[slot].data(), PasscodeLength);
}

QString windowTitle(const QString &levelsetPath) {
    return QLatin1Char('[') + levelsetPath + QStringLiteral("] - ") + ApplicationTitle;
}
