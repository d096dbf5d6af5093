#pragma once

// A loaded, shown main window whose questions a script answers, driven by real mouse events on
// its real level view and palette.

#include "levels/PropertiesPanel.h"
#include "shell/frmMain.h"
#include "support/ScriptedDialogs.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"
#include "view/TilesetPicture.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTest>

struct EditorWindow {
    ScriptedDialogs dialogs;
    frmMain window{&dialogs};
    Qt::MouseButtons held;

    EditorWindow() {
        window.Form_Load();
        window.show();
    }
    ~EditorWindow() { releaseAll(); }
    bool activate() { // shortcut keys reach only the active window
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }

    Levelset &levelset() { return window.levelset; }
    LevelRecord &level() { return window.levelset.current(); }
    int tile(int x, int y) { return level().tile(x, y); }
    QString title() const { return window.windowTitle(); }
    QString status() const { return window.statusText->text(); }
    QString label() const { return window.lblLevelNum->text(); }
    QAction *item(const QString &name) const { return window.findChild<QAction *>(name); }
    void answer(std::initializer_list<QMessageBox::StandardButton> buttons) {
        dialogs.messageAnswers.append(buttons);
    }

    void press(Qt::MouseButton button, QPoint pos, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(window.picLevel, button, modifiers, pos);
        held |= button;
    }
    void releaseAll() {
        for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
            if (held.testFlag(button))
                QTest::mouseRelease(window.picLevel, button, Qt::NoModifier, QPoint(0, 0));
        held = {};
    }
    // With a button held the move reaches the view even outside it (pointer capture).
    void moveTo(QPoint pos) { QTest::mouseMove(window.picLevel, pos); }
    // A move with no button held, delivered as the platform delivers it.
    void hover(QPoint pos) {
        QMouseEvent event(QEvent::MouseMove, pos, window.picLevel->mapToGlobal(pos), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(window.picLevel, &event);
    }
    void clickPalette(Qt::MouseButton button, int id) {
        QTest::mouseClick(window.picTiles, button, {}, {16 * (id % 8) + 8, 16 * (id / 8) + 8});
    }
};
