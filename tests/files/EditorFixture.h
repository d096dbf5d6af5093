#pragma once

// A real main window answered by a script, and the small file helpers the file-command tests
// share.

#include "levelset/Levelset.h"
#include "shell/frmMain.h"
#include "support/ScriptedDialogs.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <memory>

inline const QString PromptText = QStringLiteral("Save current Levelset?");
inline const QString InvalidNameText =
    QStringLiteral("Invalid file name! Must be of the format: zkstl???.kst, where ??? is the "
                   "Levelset name.");
inline const QString DialogFilter = QStringLiteral("KST Levelsets (zkstl*.kst)|zkstl*.kst");

struct Editor {
    ScriptedDialogs dialogs;
    frmMain window{&dialogs};

    Editor() {
        window.Form_Load();
        window.show();
    }

    Levelset &levelset() { return window.levelset; }
    QString title() const { return window.windowTitle(); }
    QString status() const { return window.statusText->text(); }
    QString label() const { return window.lblLevelNum->text(); }

    // Answers the next questions in order: prompt buttons first, then file names.
    void answer(std::initializer_list<QMessageBox::StandardButton> buttons) {
        for (auto b : buttons)
            dialogs.messageAnswers.enqueue(b);
    }
    void answerSave(const QString &path) { dialogs.saveAnswers.enqueue(path); }
    void answerOpen(const QString &path) { dialogs.openAnswers.enqueue(path); }
};

inline QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool putFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Every file below the folder, relative to it, sorted.
inline QStringList filesBelow(const QString &folder) {
    QStringList names;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        names.append(QDir(folder).relativeFilePath(it.next()));
    names.sort();
    return names;
}

// Five levels of different sizes and settings, seven passcodes and the reserved bytes, with
// tiles that stay clear of the alien holes and guards the save check counts.
inline void fillSample(Levelset &levelset) {
    levelset.levelCount = 5;
    levelset.reserved1 = 7;
    levelset.reserved2 = 200;
    for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
        levelset.storePasscode(slot, QStringLiteral("PASS%1x").arg(slot));
    for (int i = 0; i < 5; ++i) {
        LevelRecord &level = levelset.levels[i];
        level.header[LevelRecord::Width] = static_cast<std::uint8_t>(12 + 5 * i);
        level.header[LevelRecord::Height] = static_cast<std::uint8_t>(8 + 6 * i);
        level.header[LevelRecord::Time] = static_cast<std::uint8_t>(10 + i);
        level.header[LevelRecord::LevelType] = static_cast<std::uint8_t>(i % 2);
        level.header[LevelRecord::StartX] = static_cast<std::uint8_t>(i);
        for (int x = 0; x < LevelRecord::GridSize; ++x)
            for (int y = 0; y < LevelRecord::GridSize; ++y)
                level.tile(x, y) = static_cast<std::uint8_t>((x + 2 * y + i) % 60);
    }
}

// The first difference between what two levelsets would store in a file, or "" when none.
inline QString storedDifference(const Levelset &a, const Levelset &b) {
    if (a.levelCount != b.levelCount)
        return QStringLiteral("levelCount %1 != %2").arg(a.levelCount).arg(b.levelCount);
    if (a.reserved1 != b.reserved1 || a.reserved2 != b.reserved2)
        return QStringLiteral("reserved bytes");
    for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
        if (a.passcode(slot) != b.passcode(slot))
            return QStringLiteral("passcode %1: %2 != %3")
                .arg(slot)
                .arg(a.passcode(slot), b.passcode(slot));
    for (int i = 0; i < a.levelCount; ++i) {
        const LevelRecord &la = a.levels[i];
        const LevelRecord &lb = b.levels[i];
        if (la.header != lb.header)
            return QStringLiteral("header of level %1").arg(i);
        for (int y = 0; y < la.height(); ++y)
            for (int x = 0; x < la.width(); ++x)
                if (la.tile(x, y) != lb.tile(x, y))
                    return QStringLiteral("level %1 cell (%2, %3)").arg(i).arg(x).arg(y);
    }
    return {};
}
