#pragma once

#include "MonkeyDialogs.h"
#include "MonkeyFolder.h"
#include "levelset/Levelset.h"

#include <QMap>
#include <QPoint>
#include <QStringList>
#include <memory>
#include <random>

class frmMain;

// A seeded random walk over a real main window: menu commands, toolbar buttons and shortcut
// keys, mouse strokes on the level view and the palette (buttons held past the edges, two
// buttons at once), typing into the panel, and closing the window, which is opened afresh when
// it really closed. Every question is answered at random from the same generator, so a seed
// replays the same walk.
//
// After every action the walk checks the rules that always hold (WindowInvariants), what the
// action must have done where that is certain (a level command's count, a stroke writing only
// the selected tile or its random family inside the level, a save writing exactly the writer's
// bytes for the levelset as it was) and every file of its folder.
class MonkeyWalk {
public:
    explicit MonkeyWalk(std::uint32_t seed);
    ~MonkeyWalk();

    bool isReady() const;
    // One action and its checks: "" when everything holds, otherwise what broke.
    QString step();
    // The last actions, oldest first, for reading a failure.
    QStringList recentActions() const { return recent_; }
    // How often each kind of action and outcome occurred.
    QString statistics() const;

    frmMain &window() { return *window_; }
    MonkeyFolder &folder() { return folder_; }
    // The checks that hold between any two actions.
    QString brokenRule() const;

private:
    struct Before {
        Levelset levelset;
        std::uint8_t selectedTile;
        std::int16_t rightButtonMode;
        QPoint levelCursor;
        std::array<bool, 4> viewItems;
    };
    enum class Command;
    struct CommandEntry;

    void openWindow();
    Before snapshot() const;
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    void count(const QString &what) { ++statistics_[what]; }

    QString commandAction(QString &description);
    QString checkCommand(Command command, const Before &before, QString &description);
    QString checkFileCommand(Command command, const Before &before);
    QString expectSave(const Levelset &before, bool forceDialog, bool statusShown);
    QString levelStroke(QString &description);
    QString levelHover(QString &description);
    QString paletteClick(QString &description);
    QString typing(QString &description);
    QString optionClick(QString &description);
    QString checkLevelCursor(const Before &before) const;

    std::mt19937 random_;
    MonkeyDialogs dialogs_{random_};
    MonkeyFolder folder_{random_};
    std::unique_ptr<frmMain> window_;
    QString expectedPath_ = UntitledPath;
    int actionIndex_ = 0;
    QStringList recent_;
    QMap<QString, int> statistics_;

    // Consumed while a file command's expected course is followed.
    int saveNamesUsed_ = 0;
    int invalidNameMessages_ = 0;
    int refusals_ = 0;
};
