#pragma once

// What the parts of the walk share: the commands it gives, and small helpers for its reports.

#include "MonkeyWalk.h"
#include "levelset/LevelsetFile.h"

#include <QKeyCombination>
#include <QMessageBox>
#include <QPoint>
#include <QString>

enum class MonkeyWalk::Command {
    New,
    Open,
    Save,
    SaveAs,
    Exit,
    Close, // the system closing the window, as the close box does
    ViewStart,
    ViewFinish,
    ViewPut,
    ViewTake,
    DecreaseWidth,
    IncreaseWidth,
    DecreaseHeight,
    IncreaseHeight,
    Remove,
    Add,
    Previous,
    Next,
    Mode0,
    Mode1,
    Mode2,
    Mode3,
    SetFloor,
    Enemies,
    Pickups,
    Doors,
    About,
};

struct MonkeyWalk::CommandEntry {
    Command command;
    const char *menuItem;
    const char *toolbarKey; // null when there is no button
    QKeyCombination shortcut;
};

namespace monkey {

constexpr int Cell = 16;
constexpr int ViewSize = 512;

inline QString where(QPoint p) {
    return QStringLiteral("(%1,%2)").arg(p.x()).arg(p.y());
}

inline QString buttonName(QMessageBox::StandardButton button) {
    switch (button) {
    case QMessageBox::Yes:
        return QStringLiteral("Yes");
    case QMessageBox::No:
        return QStringLiteral("No");
    case QMessageBox::Cancel:
        return QStringLiteral("Cancel");
    default:
        return QStringLiteral("OK");
    }
}

// What a save would put on disk for this levelset, wherever it is: everything but the tag.
inline bool sameStoredContent(const Levelset &a, const Levelset &b) {
    return writeLevelset(a, UntitledPath) == writeLevelset(b, UntitledPath);
}

} // namespace monkey
