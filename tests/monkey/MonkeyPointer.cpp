#include "MonkeyShared.h"
#include "analysis/TileCatalogue.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>

// Mouse strokes on the level view and clicks on the palette, and what they may change.

using namespace monkey;

namespace {

// The tiles a right-button mode writes: the wall, inside and outside families.
bool inFamily(int mode, int tile) {
    switch (mode) {
    case 1:
        return tile >= 89 && tile <= 97;
    case 2:
        return tile >= 10 && tile <= 13;
    case 3:
        return tile >= 7 && tile <= 9;
    default:
        return false;
    }
}

// QTest takes the point (0, 0) for "the widget's centre"; (0, 1) lies in the same cell.
QPoint notCentre(QPoint p) {
    return p.isNull() ? QPoint(0, 1) : p;
}

// A pointer position: mostly over the level and its near edges, sometimes anywhere on the view
// and, while a button is held, far outside it.
QPoint anyStrokePoint(std::mt19937 &random, const LevelRecord &level, QPoint near, bool mayLeave) {
    const auto in = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    switch (in(0, 5)) {
    case 0:
        return {in(0, ViewSize - 1), in(0, ViewSize - 1)};
    case 1:
        if (mayLeave)
            return {in(-300, ViewSize + 300), in(-300, ViewSize + 300)};
        [[fallthrough]];
    case 2:
        return {in(-20, Cell * level.width() + 20), in(-20, Cell * level.height() + 20)};
    default:
        return near + QPoint(in(-24, 24), in(-24, 24));
    }
}

QPoint strokePoint(std::mt19937 &random, const LevelRecord &level, QPoint near, bool mayLeave) {
    return notCentre(anyStrokePoint(random, level, near, mayLeave));
}

std::int16_t cellOf(int pixel) {
    return static_cast<std::int16_t>(pixel / Cell); // toward zero, as the view rounds
}

Qt::KeyboardModifiers anyModifiers(std::mt19937 &random) {
    static constexpr Qt::KeyboardModifier Choices[] = {
        Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier};
    return Choices[std::uniform_int_distribution<int>(0, 4)(random)];
}

} // namespace

QString MonkeyWalk::checkLevelCursor(const Before &before) const {
    const QPoint cursor = window_->levelCursor->pos();
    if (cursor != before.levelCursor &&
        !window_->levelset.current().contains(cursor.x() / Cell, cursor.y() / Cell))
        return QStringLiteral("levelCursor moved to %1, outside the %2 x %3 level")
            .arg(where(cursor))
            .arg(window_->levelset.current().width())
            .arg(window_->levelset.current().height());
    return {};
}

QString MonkeyWalk::levelStroke(QString &description) {
    frmMain &w = *window_;
    LevelView *view = w.picLevel;
    const Before before = snapshot();
    const LevelRecord &level = before.levelset.current();
    const Qt::KeyboardModifiers modifiers = anyModifiers(random_);

    static constexpr Qt::MouseButton Buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                                  Qt::RightButton, Qt::MiddleButton};
    QList<Qt::MouseButton> held;
    QList<QPoint> rightPresses;
    bool leftUsed = false;
    bool rightUsed = false;
    QPoint at = strokePoint(random_, level, {0, 0}, false);
    QStringList steps;
    const auto press = [&](Qt::MouseButton button) {
        held.append(button);
        leftUsed |= button == Qt::LeftButton;
        rightUsed |= button == Qt::RightButton;
        if (button == Qt::RightButton)
            rightPresses.append(at);
        steps.append(QStringLiteral("press %1 at %2").arg(int(button)).arg(where(at)));
        QTest::mousePress(view, button, modifiers, at);
    };

    press(Buttons[pick(std::size(Buttons))]);
    const int moves = pick(8);
    for (int i = 0; i < moves; ++i) {
        at = strokePoint(random_, level, at, true);
        steps.append(QStringLiteral("move %1").arg(where(at)));
        QTest::mouseMove(view, at);
        if (held.size() == 1 && pick(10) == 0) {
            const Qt::MouseButton second = Buttons[pick(std::size(Buttons))];
            if (second != held[0])
                press(second);
        }
    }
    while (!held.isEmpty()) {
        const Qt::MouseButton button = held.takeLast();
        steps.append(QStringLiteral("release %1").arg(int(button)));
        QTest::mouseRelease(view, button, modifiers, at);
    }
    description = QStringLiteral("level stroke, mode %1, tile %2, modifiers %3: %4")
                      .arg(before.rightButtonMode)
                      .arg(before.selectedTile)
                      .arg(int(modifiers))
                      .arg(steps.join(QStringLiteral(", ")));
    count(QStringLiteral("stroke"));

    // The level popup opens for each right press on a cell of the level in the Set Positions
    // mode, and the chosen item stores that cell.
    LevelRecord expectedHeader = level;
    int popupsExpected = 0;
    for (const QPoint &p : std::as_const(rightPresses)) {
        const std::int16_t x = cellOf(p.x());
        const std::int16_t y = cellOf(p.y());
        if (before.rightButtonMode != 0 || !level.contains(x, y))
            continue;
        if (popupsExpected >= dialogs_.popupChoices.size())
            return QStringLiteral("no level popup for the right press at %1").arg(where(p));
        const QString choice = dialogs_.popupChoices[popupsExpected++];
        description += QStringLiteral(" [popup %1]").arg(choice.isEmpty() ? "dismissed" : choice);
        static const QMap<QString, LevelRecord::HeaderByte> Positions = {
            {QStringLiteral("mnuLevelPopUpStart"), LevelRecord::StartX},
            {QStringLiteral("mnuLevelPopUpFinish"), LevelRecord::FinishX},
            {QStringLiteral("mnuLevelPopUpPut"), LevelRecord::PutX},
            {QStringLiteral("mnuLevelPopUpTake"), LevelRecord::TakeX},
        };
        if (const auto it = Positions.constFind(choice); it != Positions.cend()) {
            expectedHeader.header[*it] = static_cast<std::uint8_t>(x);
            expectedHeader.header[*it + 1] = static_cast<std::uint8_t>(y);
        }
    }
    if (dialogs_.popupChoices.size() != popupsExpected)
        return QStringLiteral("%1 level popups, %2 expected")
            .arg(dialogs_.popupChoices.size())
            .arg(popupsExpected);

    const Levelset &now = w.levelset;
    if (now.levelCount != before.levelset.levelCount ||
        now.currentLevel != before.levelset.currentLevel || !dialogs_.messages.isEmpty())
        return QStringLiteral("a stroke changed the level list or showed a message");
    for (int i = 0; i < Levelset::MaxLevels; ++i)
        if (i != now.currentLevel && now.levels[i] != before.levelset.levels[i])
            return QStringLiteral("a stroke on level %1 changed level %2")
                .arg(now.currentLevel)
                .arg(i);
    if (now.current().header != expectedHeader.header)
        return QStringLiteral("the header after the stroke is not what the popup chose");
    for (int x = 0; x < LevelRecord::GridSize; ++x)
        for (int y = 0; y < LevelRecord::GridSize; ++y) {
            const int was = level.tile(x, y);
            const int is = now.current().tile(x, y);
            if (was == is)
                continue;
            if (!level.contains(x, y))
                return QStringLiteral("cell (%1, %2) outside the %3 x %4 level was written")
                    .arg(x)
                    .arg(y)
                    .arg(level.width())
                    .arg(level.height());
            const bool byLeft = leftUsed && is == before.selectedTile;
            const bool byRight = rightUsed && inFamily(before.rightButtonMode, is);
            if (!byLeft && !byRight)
                return QStringLiteral("cell (%1, %2) became %3").arg(x).arg(y).arg(is);
        }
    return checkLevelCursor(before);
}

QString MonkeyWalk::levelHover(QString &description) {
    LevelView *view = window_->picLevel;
    const Before before = snapshot();
    QPoint at = strokePoint(random_, before.levelset.current(), {0, 0}, false);
    QStringList steps;
    const int moves = 1 + pick(5);
    for (int i = 0; i < moves; ++i) {
        at = strokePoint(random_, before.levelset.current(), at, false);
        steps.append(where(at));
        QMouseEvent move(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         anyModifiers(random_));
        QApplication::sendEvent(view, &move);
    }
    description = QStringLiteral("hover %1").arg(steps.join(u' '));
    count(QStringLiteral("hover"));
    if (window_->levelset.levels != before.levelset.levels || !dialogs_.messages.isEmpty())
        return QStringLiteral("moving the pointer with no button held changed the levelset");
    return checkLevelCursor(before);
}

QString MonkeyWalk::paletteClick(QString &description) {
    frmMain &w = *window_;
    const Before before = snapshot();
    static constexpr Qt::MouseButton Buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                                  Qt::MiddleButton};
    const Qt::MouseButton button = Buttons[pick(std::size(Buttons))];
    QPoint at(pick(128), pick(512));
    // Now and then an alien hole or a guard, so that some saves meet the check that refuses
    // a level holding too many.
    if (pick(10) == 0) {
        static constexpr int Crowding[] = {Tile::AlienHole, Tile::AlienHoleOther,
                                           Tile::SecurityGuard};
        const int crowd = Crowding[pick(std::size(Crowding))];
        at = QPoint(Cell * (crowd % 8) + pick(Cell), Cell * (crowd / 8) + pick(Cell));
    }
    const int id = 8 * cellOf(at.y()) + cellOf(at.x());
    at = notCentre(at);
    const Qt::KeyboardModifiers modifiers = anyModifiers(random_);
    description =
        QStringLiteral("palette %1 at %2 (id %3)").arg(int(button)).arg(where(at)).arg(id);
    if (pick(4) == 0) {
        // The palette reads presses only: dragging across it or off it chooses nothing more.
        QTest::mousePress(w.picTiles, button, modifiers, at);
        QPoint to = at;
        for (int moves = 1 + pick(4); moves > 0; --moves) {
            to = notCentre(QPoint(pick(400) - 150, pick(700) - 100));
            QTest::mouseMove(w.picTiles, to);
        }
        QTest::mouseRelease(w.picTiles, button, modifiers, to);
        description += QStringLiteral(", dragged to %1").arg(where(to));
    } else {
        QTest::mouseClick(w.picTiles, button, modifiers, at);
    }
    count(QStringLiteral("palette"));

    const int selected = (button == Qt::LeftButton && id < 178) ? id : before.selectedTile;
    if (w.selectedTile != selected)
        return QStringLiteral("selectedTile %1, expected %2").arg(w.selectedTile).arg(selected);
    if (w.statusText->text() != QStringLiteral("Tile: %1").arg(selected))
        return QStringLiteral("status \"%1\" after a palette click").arg(w.statusText->text());

    LevelRecord expected = before.levelset.current();
    const bool popupExpected = button == Qt::RightButton && id < 178;
    if (dialogs_.popupChoices.size() != (popupExpected ? 1 : 0))
        return QStringLiteral("%1 tile popups, %2 expected")
            .arg(dialogs_.popupChoices.size())
            .arg(popupExpected ? 1 : 0);
    if (popupExpected) {
        const QString choice = dialogs_.popupChoices[0];
        description += QStringLiteral(" [popup %1]").arg(choice.isEmpty() ? "dismissed" : choice);
        if (choice == QStringLiteral("mnuTilePopUpPut"))
            expected.header[LevelRecord::PutType] = static_cast<std::uint8_t>(id);
        else if (choice == QStringLiteral("mnuTilePopUpTake"))
            expected.header[LevelRecord::TakeType] = static_cast<std::uint8_t>(id);
    }
    if (w.levelset.current() != expected)
        return QStringLiteral("the current level is not what the palette click chose");
    for (int i = 0; i < Levelset::MaxLevels; ++i)
        if (i != w.levelset.currentLevel && w.levelset.levels[i] != before.levelset.levels[i])
            return QStringLiteral("a palette click changed level %1").arg(i);
    return {};
}
