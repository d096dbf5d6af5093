#include "MonkeyWalk.h"

#include "analysis/TileCatalogue.h"
#include "levels/PropertiesPanel.h"
#include "levelset/LevelsetFile.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRadioButton>
#include <QTest>

// Mouse strokes on the level view, clicks and drags on the palette, typing into the panel and
// clicking its options, and what each may change.

namespace {

constexpr int Cell = 16;

QString where(QPoint p) {
    return QStringLiteral("(%1, %2)").arg(p.x()).arg(p.y());
}

// The tiles a right-button mode writes: the wall, inside and outside families.
bool inFamily(int mode, int tile) {
    return (mode == 1 && tile >= 89 && tile <= 97) || (mode == 2 && tile >= 10 && tile <= 13) ||
           (mode == 3 && tile >= 7 && tile <= 9);
}

// QTest takes the point (0, 0) for "the widget's centre"; (0, 1) lies in the same cell.
QPoint notCentre(QPoint p) {
    return p.isNull() ? QPoint(0, 1) : p;
}

// Mostly over the level and its near edges, sometimes anywhere on the view and, while a button
// is held, far outside it.
QPoint strokePoint(std::mt19937 &random, const LevelRecord &level, QPoint near, bool mayLeave) {
    const auto in = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    switch (in(0, 5)) {
    case 0:
        return notCentre({in(0, 511), in(0, 511)});
    case 1:
        if (mayLeave)
            return notCentre({in(-300, 812), in(-300, 812)});
        [[fallthrough]];
    case 2:
        return notCentre({in(-20, Cell * level.width() + 20), in(-20, Cell * level.height() + 20)});
    default:
        return notCentre(near + QPoint(in(-24, 24), in(-24, 24)));
    }
}

Qt::KeyboardModifiers anyModifiers(std::mt19937 &random) {
    static constexpr Qt::KeyboardModifier Choices[] = {
        Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier};
    return Choices[std::uniform_int_distribution<int>(0, 4)(random)];
}

} // namespace

// A stroke with buttons held (two at once now and then, past the view's edges), or pointer moves
// with none held, as the platform delivers them.
QString MonkeyWalk::levelStroke(QString &description) {
    frmMain &w = *window_;
    const Levelset before = w.levelset;
    const LevelRecord &level = before.current();
    const int mode = w.rightButtonMode;
    const int selected = w.selectedTile;
    const QPoint cursorBefore = w.levelCursor->pos();
    const Qt::KeyboardModifiers modifiers = anyModifiers(random_);
    static constexpr Qt::MouseButton Buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                                  Qt::RightButton, Qt::MiddleButton};
    const bool hover = pick(5) == 0;
    QList<Qt::MouseButton> held;
    QList<QPoint> rightPresses;
    bool leftUsed = false;
    QPoint at = strokePoint(random_, level, {}, false);
    description = QStringLiteral("%1 in mode %2 with tile %3, modifiers %4:")
                      .arg(hover ? "hover" : "stroke")
                      .arg(mode)
                      .arg(selected)
                      .arg(int(modifiers));
    const auto press = [&](Qt::MouseButton button) {
        held.append(button);
        leftUsed |= button == Qt::LeftButton;
        if (button == Qt::RightButton)
            rightPresses.append(at);
        description += QStringLiteral(" press %1").arg(int(button));
        QTest::mousePress(w.picLevel, button, modifiers, at);
    };
    if (!hover)
        press(Buttons[pick(std::size(Buttons))]);
    for (int moves = pick(8); moves > 0; --moves) {
        at = strokePoint(random_, level, at, !hover);
        description += QStringLiteral(" to ") + where(at);
        if (hover) {
            QMouseEvent move(QEvent::MouseMove, at, w.picLevel->mapToGlobal(at), Qt::NoButton,
                             Qt::NoButton, modifiers);
            QApplication::sendEvent(w.picLevel, &move);
        } else {
            QTest::mouseMove(w.picLevel, at);
        }
        if (const auto second = Buttons[pick(std::size(Buttons))];
            held.size() == 1 && pick(10) == 0 && second != held[0])
            press(second);
    }
    while (!held.isEmpty())
        QTest::mouseRelease(w.picLevel, held.takeLast(), modifiers, at);

    // In the Set Positions mode each right press on a cell of the level opens the level popup,
    // and the chosen item stores that cell.
    LevelRecord expected = level;
    int popups = 0;
    for (const QPoint p : std::as_const(rightPresses)) {
        const int x = p.x() / Cell; // toward zero, as the view rounds
        const int y = p.y() / Cell;
        if (mode != 0 || !level.contains(x, y))
            continue;
        const QString choice = dialogs_.popupChoices.value(popups++, QStringLiteral("none"));
        description += QStringLiteral(" [popup %1]").arg(choice);
        static const QMap<QString, LevelRecord::HeaderByte> Positions = {
            {QStringLiteral("mnuLevelPopUpStart"), LevelRecord::StartX},
            {QStringLiteral("mnuLevelPopUpFinish"), LevelRecord::FinishX},
            {QStringLiteral("mnuLevelPopUpPut"), LevelRecord::PutX},
            {QStringLiteral("mnuLevelPopUpTake"), LevelRecord::TakeX},
        };
        if (const auto it = Positions.constFind(choice); it != Positions.cend()) {
            expected.header[*it] = static_cast<std::uint8_t>(x);
            expected.header[*it + 1] = static_cast<std::uint8_t>(y);
        }
    }
    const LevelRecord &now = w.levelset.current();
    if (dialogs_.popupChoices.size() != popups || !dialogs_.messages.isEmpty())
        return QString::asprintf("%d level popups (%d expected) and %d messages",
                                 int(dialogs_.popupChoices.size()), popups,
                                 int(dialogs_.messages.size()));
    Levelset others = before;
    others.current() = now;
    if (!sameLevelset(w.levelset, others))
        return QStringLiteral("a stroke changed more than its level");
    if (now.header != expected.header)
        return QStringLiteral("the header after the stroke is not what the popup chose");
    for (int x = 0; x < LevelRecord::GridSize; ++x)
        for (int y = 0; y < LevelRecord::GridSize; ++y)
            if (const int is = now.tile(x, y); is != level.tile(x, y)) {
                if (!level.contains(x, y))
                    return QString::asprintf("cell (%d, %d) outside the %d x %d level was written",
                                             x, y, level.width(), level.height());
                if (!(leftUsed && is == selected) &&
                    !(!rightPresses.isEmpty() && inFamily(mode, is)))
                    return QString::asprintf("cell (%d, %d) became %d", x, y, is);
            }
    const QPoint cursor = w.levelCursor->pos();
    if (cursor != cursorBefore && !now.contains(cursor.x() / Cell, cursor.y() / Cell))
        return QStringLiteral("levelCursor moved to %1, outside the level").arg(where(cursor));
    return {};
}

QString MonkeyWalk::paletteClick(QString &description) {
    frmMain &w = *window_;
    const Levelset before = w.levelset;
    const int selectedBefore = w.selectedTile;
    static constexpr Qt::MouseButton Buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                                  Qt::MiddleButton};
    const Qt::MouseButton button = Buttons[pick(std::size(Buttons))];
    QPoint at(pick(128), pick(512));
    // Now and then an alien hole or a guard, so that some saves meet the check that refuses a
    // level holding too many.
    if (pick(10) == 0) {
        static constexpr int Crowding[] = {Tile::AlienHole, Tile::AlienHoleOther,
                                           Tile::SecurityGuard};
        const int crowd = Crowding[pick(std::size(Crowding))];
        at = QPoint(Cell * (crowd % 8) + pick(Cell), Cell * (crowd / 8) + pick(Cell));
    }
    const int id = 8 * (at.y() / Cell) + at.x() / Cell;
    const bool placeable = id < 178;
    at = notCentre(at);
    const Qt::KeyboardModifiers modifiers = anyModifiers(random_);
    description =
        QStringLiteral("palette %1 at %2 (id %3)").arg(int(button)).arg(where(at)).arg(id);
    if (pick(4) == 0) {
        // The palette reads presses only: dragging across it or off it chooses nothing more.
        QTest::mousePress(w.picTiles, button, modifiers, at);
        for (int moves = 1 + pick(4); moves > 0; --moves) {
            at = notCentre(QPoint(pick(400) - 150, pick(700) - 100));
            QTest::mouseMove(w.picTiles, at);
        }
        QTest::mouseRelease(w.picTiles, button, modifiers, at);
        description += QStringLiteral(", dragged to %1").arg(where(at));
    } else {
        QTest::mouseClick(w.picTiles, button, modifiers, at);
    }

    const int selected = button == Qt::LeftButton && placeable ? id : selectedBefore;
    if (w.selectedTile != selected ||
        w.statusText->text() != QStringLiteral("Tile: %1").arg(selected))
        return QStringLiteral("selectedTile %1 and status \"%2\", expected tile %3")
            .arg(w.selectedTile)
            .arg(w.statusText->text())
            .arg(selected);
    const bool popupExpected = button == Qt::RightButton && placeable;
    if (dialogs_.popupChoices.size() != popupExpected)
        return QStringLiteral("%1 tile popups").arg(dialogs_.popupChoices.size());
    Levelset expected = before;
    if (popupExpected) {
        const QString choice = dialogs_.popupChoices[0];
        description += QStringLiteral(" [popup %1]").arg(choice);
        if (choice == QStringLiteral("mnuTilePopUpPut"))
            expected.current().header[LevelRecord::PutType] = static_cast<std::uint8_t>(id);
        else if (choice == QStringLiteral("mnuTilePopUpTake"))
            expected.current().header[LevelRecord::TakeType] = static_cast<std::uint8_t>(id);
    }
    if (!sameLevelset(w.levelset, expected))
        return QStringLiteral("the levelset is not what the palette click chose");
    return {};
}

// Typing into the panel's fields (and erasing first now and then) and clicking its options
// change one value of the current level only: a passcode slot, a header byte, or its types.
QString MonkeyWalk::panelInput(QString &description) {
    frmMain &w = *window_;
    Levelset expected = w.levelset;
    const int which = pick(18);
    QWidget *target = nullptr;
    if (which >= 13) {
        auto *option = std::array{w.panel->optNormal, w.panel->optHatchery, w.panel->optWeak,
                                  w.panel->optStrong}[pick(4)];
        QTest::mouseClick(option, Qt::LeftButton);
        description = QStringLiteral("click %1").arg(option->objectName());
        if (!option->isChecked())
            return QStringLiteral("%1 is not selected after a click").arg(option->objectName());
        for (const auto byte : {LevelRecord::LevelType, LevelRecord::AlienType})
            expected.current().header[byte] = w.levelset.current().header[byte];
        target = option;
    } else {
        QLineEdit *field =
            std::array{w.panel->txtPasscode, w.panel->txtObjectives, w.panel->txtTime}[which % 3];
        description = QStringLiteral("typing into %1:").arg(field->objectName());
        if (pick(6) == 0) {
            QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(field, Qt::Key_Delete);
            description += QStringLiteral(" select all, delete,");
        } else if (const int erase = pick(15); erase < 5) {
            QTest::keyClick(field, Qt::Key_End);
            for (int i = 0; i < erase; ++i)
                QTest::keyClick(field, Qt::Key_Backspace);
            description += QStringLiteral(" end, %1 backspaces,").arg(erase);
        }
        const QString characters = field == w.panel->txtPasscode
                                       ? QStringLiteral("abcXYZ09 -!")
                                       : QStringLiteral("0123456789012345 -+x");
        QString text;
        for (int length = pick(5); length > 0; --length)
            text += characters[pick(static_cast<int>(characters.size()))];
        QTest::keyClicks(field, text);
        description += QStringLiteral(" type \"%1\", shows \"%2\"").arg(text, field->text());
        const int current = expected.currentLevel;
        if (field == w.panel->txtPasscode && current > 0)
            expected.passcodes[current - 1] = w.levelset.passcodes[current - 1];
        if (field != w.panel->txtPasscode) {
            const auto byte =
                field == w.panel->txtTime ? LevelRecord::Time : LevelRecord::Objectives;
            expected.current().header[byte] = w.levelset.current().header[byte];
        }
        target = field;
    }
    // Only a number field complains, and only of what was typed.
    for (const auto &m : std::as_const(dialogs_.messages))
        if (!qobject_cast<QLineEdit *>(target) || target == w.panel->txtPasscode ||
            (m.text != QStringLiteral("Invalid character!") &&
             m.text != QStringLiteral("Invalid value! Must be between 0-255.")))
            return QStringLiteral("%1 showed \"%2\"").arg(target->objectName(), m.text);
    if (!sameLevelset(w.levelset, expected))
        return QStringLiteral("%1 changed more than its own value").arg(target->objectName());
    return {};
}
