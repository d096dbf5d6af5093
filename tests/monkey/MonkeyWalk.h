#pragma once

#include "MonkeyDialogs.h"
#include "MonkeyFolder.h"
#include "levelset/Levelset.h"

#include <QMap>
#include <QPoint>
#include <QStringList>
#include <array>
#include <memory>
#include <random>

class frmMain;

// Everything a save would store, wherever it goes, the levels past the count and the current
// level.
bool sameLevelset(const Levelset &a, const Levelset &b);

// A seeded random walk over a real main window: menu commands, toolbar buttons and shortcut
// keys, mouse strokes on the level view and the palette (buttons held past the edges, two
// buttons at once), typing into the panel, and closing the window, which is opened afresh when
// it really closed. After every action it checks the rules that always hold
// (WindowInvariants), what the action must have done where that is certain, and every file of
// its folder.
class MonkeyWalk {
public:
    explicit MonkeyWalk(std::uint32_t seed);
    ~MonkeyWalk();

    bool isReady() const;
    // One action and its checks: "" when everything holds, otherwise what broke.
    QString step();
    QStringList recentActions() const { return recent_; }
    QString statistics() const;

    frmMain &window() { return *window_; }
    MonkeyFolder &folder() { return folder_; }
    QString brokenRule() const;

private:
    void openWindow();
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    QString command(QString &description);
    QString checkCommand(int command, const Levelset &before, std::array<bool, 4> viewBefore);
    QString fileCommand(int command, const Levelset &before);
    QString expectSave(const Levelset &before, bool forceDialog, bool statusShown);
    QString levelStroke(QString &description);
    QString paletteClick(QString &description);
    QString panelInput(QString &description);

    std::mt19937 random_;
    MonkeyDialogs dialogs_{random_};
    MonkeyFolder folder_{random_};
    std::unique_ptr<frmMain> window_;
    QString expectedPath_;
    int actionIndex_ = 0;
    QStringList recent_;
    QMap<QString, int> statistics_;
    // Consumed while a file command's expected course is followed.
    int saveNamesUsed_ = 0;
    int invalidNames_ = 0;
    int refusals_ = 0;
};
