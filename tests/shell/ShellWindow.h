#pragma once

// A loaded main window whose questions a script answers, and a snapshot of everything a user
// can see of it, so two windows can be compared after the same command.

#include "levels/PropertiesPanel.h"
#include "shell/frmMain.h"
#include "support/ScriptedDialogs.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolBar>

struct ShellWindow {
    ScriptedDialogs dialogs;
    frmMain window{&dialogs};

    ShellWindow() { window.Form_Load(); }

    // Shows the window and makes it the active one, so shortcut keys reach it.
    bool showActive() {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }

    Levelset &levelset() { return window.levelset; }
    QString label() const { return window.lblLevelNum->text(); }
    QAction *item(const QString &name) const { return window.findChild<QAction *>(name); }
    QAction *button(const QString &key) const {
        for (QAction *action : window.tbToolBar->actions())
            if (action->data().toString() == key)
                return action;
        return nullptr;
    }
    void clickButton(const QString &key) const {
        QTest::mouseClick(window.tbToolBar->widgetForAction(button(key)), Qt::LeftButton);
    }
};

// What the user can see and what was asked, in one comparable value.
struct VisibleState {
    QByteArray levels; // headers and grids of all eight records
    int levelCount = 0;
    int currentLevel = 0;
    QString title;
    QString label;
    QString status;
    QString time;
    QList<QPoint> markers;
    QList<bool> markersShown;
    QImage view;
    QStringList messages;
    int openQuestions = 0;
    int saveQuestions = 0;
    int modals = 0;

    static VisibleState of(ShellWindow &shell) {
        frmMain &w = shell.window;
        VisibleState state;
        for (const LevelRecord &record : w.levelset.levels) {
            state.levels.append(reinterpret_cast<const char *>(record.header.data()),
                                record.header.size());
            state.levels.append(reinterpret_cast<const char *>(record.tiles.data()),
                                record.tiles.size());
        }
        state.levelCount = w.levelset.levelCount;
        state.currentLevel = w.levelset.currentLevel;
        state.title = w.windowTitle();
        state.label = w.lblLevelNum->text();
        state.status = w.statusText->text();
        state.time = w.panel->txtTime->text();
        for (const Marker *marker : {w.levelCursor, w.shpStart, w.shpFinish, w.shpPut, w.shpTake,
                                     w.tileCursor, w.shpPutType, w.shpTakeType}) {
            state.markers.append(marker->pos());
            state.markersShown.append(!marker->isHidden());
        }
        state.view = w.picLevel->image();
        state.messages = shell.dialogs.messageTexts();
        state.openQuestions = int(shell.dialogs.openQuestions.size());
        state.saveQuestions = int(shell.dialogs.saveQuestions.size());
        state.modals = shell.dialogs.modalCount;
        return state;
    }

    bool operator==(const VisibleState &) const = default;
};

// Whether a cell of the level view is painted plain grey, as cells outside the level are. Tile
// sprites are black and white only, so a cell inside the level is never grey at its centre.
inline bool cellIsGrey(const frmMain &window, int x, int y) {
    return QColor(window.picLevel->image().pixel(16 * x + 8, 16 * y + 8)) == QColor(192, 192, 192);
}
