#pragma once

// A main window working on real files in a temporary folder, and the levelset the file tests
// write, read and compare.

#include "levelset/LevelsetFile.h"
#include "support/EditorWindow.h"

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

inline const QString PromptText = "Save current Levelset?";
inline const QString DialogFilter = "KST Levelsets (zkstl*.kst)|zkstl*.kst";

inline QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The permissions set on a file, without Qt's summary of what this user may do.
inline QFile::Permissions modeOf(const QString &path) {
    return QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
}

inline bool putFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// What a file would hold of the levelset, apart from the tag its name gives.
inline QByteArray stored(const Levelset &levelset) {
    return writeLevelset(levelset, "zkstlaaa.kst");
}

// Five levels of different sizes and settings, seven passcodes and the reserved bytes, with
// tiles that stay clear of the alien holes and guards the save check counts.
inline Levelset sample(int levelCount = 5) {
    Levelset levelset;
    levelset.levelCount = static_cast<std::uint8_t>(levelCount);
    levelset.reserved1 = 7;
    levelset.reserved2 = 200;
    for (int slot = 0; slot < Levelset::PasscodeSlots; ++slot)
        levelset.storePasscode(slot, QStringLiteral("PASS%1x").arg(slot));
    for (int i = 0; i < 5; ++i) {
        auto &header = levelset.levels[i].header;
        header[LevelRecord::Width] = static_cast<std::uint8_t>(12 + 5 * i);
        header[LevelRecord::Height] = static_cast<std::uint8_t>(8 + 6 * i);
        header[LevelRecord::Time] = static_cast<std::uint8_t>(10 + i);
        header[LevelRecord::LevelType] = static_cast<std::uint8_t>(i % 2);
        header[LevelRecord::StartX] = static_cast<std::uint8_t>(i);
        for (int x = 0; x < LevelRecord::GridSize; ++x)
            for (int y = 0; y < LevelRecord::GridSize; ++y)
                levelset.levels[i].tile(x, y) = static_cast<std::uint8_t>((x + 2 * y + i) % 60);
    }
    return levelset;
}

struct FileSession : EditorWindow {
    QTemporaryDir folder;

    QString at(const QString &name) const { return folder.filePath(name); }

    // Every file below the folder, relative to it, sorted.
    QStringList files() const {
        QStringList names;
        QDirIterator it(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            names.append(QDir(folder.path()).relativeFilePath(it.next()));
        names.sort();
        return names;
    }

    QString writeSample(const QString &name, int levelCount = 5) {
        return putFile(at(name), writeLevelset(sample(levelCount), at(name))) ? at(name) : "";
    }

    // The sample levelset in the window with its fifth level shown, as if it came from path.
    void showSampleAtLevel5(const QString &path) {
        levelset() = sample();
        levelset().levelsetPath = path;
        levelset().currentLevel = 4;
        window.updateLevelLabel();
        window.setWindowTitle(windowTitle(path));
    }

    // Gives the levelset a file by saving it once, and forgets what was asked on the way.
    QString saveAsOnce(const QString &name) {
        dialogs.saveAnswers.enqueue(at(name));
        window.mnuFileSaveAs_Click();
        dialogs.messages.clear();
        dialogs.saveQuestions.clear();
        return at(name);
    }
};
