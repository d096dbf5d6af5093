#pragma once

// A real main window answered by a script, with the mouse driven by real events on the real
// level view and palette.

#include "shell/frmMain.h"
#include "support/ScriptedDialogs.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>

struct EditingWindow {
    ScriptedDialogs dialogs;
    frmMain window{&dialogs};
    Qt::MouseButtons held;

    EditingWindow() {
        window.Form_Load();
        window.show();
    }

    ~EditingWindow() { releaseAll(); }

    static QPoint cellCentre(int x, int y) { return {16 * x + 8, 16 * y + 8}; }

    LevelRecord &level() { return window.levelset.current(); }
    int tile(int x, int y) { return level().tile(x, y); }
    QString status() const { return window.statusText->text(); }

    void press(Qt::MouseButton button, QPoint pos) {
        QTest::mousePress(window.picLevel, button, Qt::NoModifier, pos);
        held |= button;
    }
    void release(Qt::MouseButton button, QPoint pos) {
        QTest::mouseRelease(window.picLevel, button, Qt::NoModifier, pos);
        held &= ~button;
    }
    void releaseAll() {
        for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
            if (held.testFlag(button))
                release(button, QPoint(0, 0));
    }
    // With a button held the move reaches the view even outside it (pointer capture).
    void moveTo(QPoint pos) { QTest::mouseMove(window.picLevel, pos); }
    // A move with no button held, delivered to the view as the platform would.
    void hover(QPoint pos) {
        QMouseEvent event(QEvent::MouseMove, pos, window.picLevel->mapToGlobal(pos), Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(window.picLevel, &event);
    }
    void clickPalette(Qt::MouseButton button, int id) {
        QTest::mouseClick(window.picTiles, button, Qt::NoModifier,
                          QPoint(16 * (id % 8) + 8, 16 * (id / 8) + 8));
    }

    void resize(int width, int height) {
        level().header[LevelRecord::Width] = static_cast<std::uint8_t>(width);
        level().header[LevelRecord::Height] = static_cast<std::uint8_t>(height);
        window.drawLevel(window.levelset.currentLevel);
    }

    // Right-button strokes in a random mode over every cell of a full-size level, row by row.
    void scatterOverEveryCell(std::int16_t mode) {
        resize(32, 32);
        window.mnuToolsMouseChoice_Click(mode);
        for (int y = 0; y < 32; ++y) {
            press(Qt::RightButton, cellCentre(0, y));
            for (int x = 1; x < 32; ++x)
                moveTo(cellCentre(x, y));
            release(Qt::RightButton, cellCentre(31, y));
        }
    }
};
