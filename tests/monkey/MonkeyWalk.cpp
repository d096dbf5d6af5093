#include "MonkeyWalk.h"

#include "WindowInvariants.h"
#include "analysis/HolesAndGuards.h"
#include "analysis/TileCatalogue.h"
#include "levels/PropertiesPanel.h"
#include "levelset/LevelsetFile.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRadioButton>
#include <QTest>
#include <QToolBar>

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

namespace {

using C = MonkeyWalk;
constexpr int Cell = 16;
constexpr int ViewSize = 512;
constexpr int RecentKept = 12;

const QString InvalidNameText = QStringLiteral(
    "Invalid file name! Must be of the format: zkstl???.kst, where ??? is the Levelset name.");
const QString InvalidCharacterText = QStringLiteral("Invalid character!");
const QString InvalidValueText = QStringLiteral("Invalid value! Must be between 0-255.");

QString buttonName(QMessageBox::StandardButton button) {
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

QString where(QPoint p) {
    return QStringLiteral("(%1,%2)").arg(p.x()).arg(p.y());
}

// What a save would put on disk for this levelset, wherever it is: everything but the tag.
bool sameStoredContent(const Levelset &a, const Levelset &b) {
    return writeLevelset(a, UntitledPath) == writeLevelset(b, UntitledPath);
}

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

} // namespace

MonkeyWalk::MonkeyWalk(std::uint32_t seed) : random_(seed) {
    dialogs_.makeSaveName = [this] { return folder_.saveName(); };
    dialogs_.makeOpenName = [this] { return folder_.openName(); };
    openWindow();
}

MonkeyWalk::~MonkeyWalk() = default;

bool MonkeyWalk::isReady() const {
    return folder_.isValid() && window_ && window_->isVisible();
}

void MonkeyWalk::openWindow() {
    window_.reset();
    window_ = std::make_unique<frmMain>(&dialogs_);
    window_->Form_Load();
    window_->show();
    window_->activateWindow();
    // Shortcut keys reach an active window only; they are left out while it is not.
    if (!QTest::qWaitForWindowActive(window_.get(), 1000))
        count(QStringLiteral("inactive window"));
    expectedPath_ = UntitledPath;
}

MonkeyWalk::Before MonkeyWalk::snapshot() const {
    const frmMain &w = *window_;
    return {w.levelset,
            w.selectedTile,
            w.rightButtonMode,
            w.levelCursor->pos(),
            {w.mnuViewStart->isChecked(), w.mnuViewFinish->isChecked(),
             w.mnuViewBlockPut->isChecked(), w.mnuViewBlockTake->isChecked()}};
}

QString MonkeyWalk::brokenRule() const {
    if (QString broken = brokenInvariant(*window_, expectedPath_); !broken.isEmpty())
        return broken;
    return folder_.check();
}

QString MonkeyWalk::step() {
    ++actionIndex_;
    dialogs_.forget();
    saveNamesUsed_ = invalidNameMessages_ = refusals_ = 0;

    QString description;
    QString fault;
    const int kind = pick(100);
    if (kind < 30)
        fault = commandAction(description);
    else if (kind < 62)
        fault = levelStroke(description);
    else if (kind < 70)
        fault = levelHover(description);
    else if (kind < 82)
        fault = paletteClick(description);
    else if (kind < 95)
        fault = typing(description);
    else
        fault = optionClick(description);

    recent_.append(QStringLiteral("#%1 %2").arg(actionIndex_).arg(description));
    if (recent_.size() > RecentKept)
        recent_.removeFirst();
    if (fault.isEmpty() && !window_->isVisible())
        fault = QStringLiteral("the window closed");
    if (fault.isEmpty())
        fault = brokenRule();
    return fault;
}

QString MonkeyWalk::statistics() const {
    QStringList lines;
    for (auto it = statistics_.cbegin(); it != statistics_.cend(); ++it)
        lines.append(QStringLiteral("%1: %2").arg(it.key()).arg(it.value()));
    return lines.join(QStringLiteral(", "));
}

// --- Commands ----------------------------------------------------------------------------------

QString MonkeyWalk::commandAction(QString &description) {
    static const CommandEntry Commands[] = {
        {Command::New, "mnuFileNew", "New", Qt::CTRL | Qt::Key_N},
        {Command::Open, "mnuFileOpen", "Open", Qt::CTRL | Qt::Key_O},
        {Command::Save, "mnuFileSave", "Save", Qt::CTRL | Qt::Key_S},
        {Command::SaveAs, "mnuFileSaveAs", nullptr, {}},
        {Command::Exit, "mnuFileExit", nullptr, {}},
        {Command::Close, nullptr, nullptr, {}},
        {Command::ViewStart, "mnuViewStart", nullptr, {}},
        {Command::ViewFinish, "mnuViewFinish", nullptr, {}},
        {Command::ViewPut, "mnuViewBlockPut", nullptr, {}},
        {Command::ViewTake, "mnuViewBlockTake", nullptr, {}},
        {Command::DecreaseWidth, "mnuLevelDecreaseWidth", "DWidth", Qt::Key_F1},
        {Command::IncreaseWidth, "mnuLevelIncreaseWidth", "IWidth", Qt::Key_F2},
        {Command::DecreaseHeight, "mnuLevelDecreaseHeight", "DHeight", Qt::Key_F3},
        {Command::IncreaseHeight, "mnuLevelIncreaseHeight", "IHeight", Qt::Key_F4},
        {Command::Remove, "mnuLevelRemove", "RemoveLevel", Qt::Key_F5},
        {Command::Add, "mnuLevelAdd", "AddLevel", Qt::Key_F6},
        {Command::Previous, "mnuLevelPrevious", "PreviousLevel", Qt::Key_F7},
        {Command::Next, "mnuLevelNext", "NextLevel", Qt::Key_F8},
        {Command::Mode0, "mnuToolsMouseChoice0", nullptr, {}},
        {Command::Mode1, "mnuToolsMouseChoice1", nullptr, {}},
        {Command::Mode2, "mnuToolsMouseChoice2", nullptr, {}},
        {Command::Mode3, "mnuToolsMouseChoice3", nullptr, {}},
        {Command::SetFloor, "mnuToolsSetFloor", nullptr, Qt::CTRL | Qt::Key_F},
        {Command::Enemies, "mnuToolsEnemies", nullptr, Qt::CTRL | Qt::Key_E},
        {Command::Pickups, "mnuToolsPickups", nullptr, Qt::CTRL | Qt::Key_P},
        {Command::Doors, "mnuToolsDoors", nullptr, Qt::CTRL | Qt::Key_D},
        {Command::About, "mnuHelpAbout", "About", Qt::Key_F12},
    };
    // The window is closed seldom, so that levelsets grow between fresh starts.
    const CommandEntry *entry = &Commands[pick(std::size(Commands))];
    if ((entry->command == Command::Close || entry->command == Command::Exit) && pick(4) != 0)
        entry = &Commands[pick(std::size(Commands))];

    const Before before = snapshot();
    frmMain &w = *window_;
    const int route = pick(3);
    if (entry->command == Command::Close) {
        description = QStringLiteral("close the window");
        w.close();
    } else if (route == 1 && entry->toolbarKey) {
        description = QStringLiteral("toolbar %1").arg(QLatin1StringView(entry->toolbarKey));
        QAction *button = w.findChild<QAction *>(QLatin1StringView(entry->toolbarKey));
        QTest::mouseClick(w.tbToolBar->widgetForAction(button), Qt::LeftButton);
    } else if (route == 2 && entry->shortcut != QKeyCombination() &&
               QApplication::activeWindow() == &w) {
        description = QStringLiteral("key %1").arg(QKeySequence(entry->shortcut).toString());
        w.picLevel->setFocus(); // a focused text field would take some Ctrl keys itself
        QTest::keyClick(&w, entry->shortcut.key(), entry->shortcut.keyboardModifiers());
    } else {
        description = QStringLiteral("menu %1").arg(QLatin1StringView(entry->menuItem));
        w.findChild<QAction *>(QLatin1StringView(entry->menuItem))->trigger();
    }
    count(description.section(u' ', 0, 0));
    return checkCommand(entry->command, before, description);
}

QString MonkeyWalk::checkCommand(Command command, const Before &before, QString &description) {
    switch (command) {
    case Command::New:
    case Command::Open:
    case Command::Save:
    case Command::SaveAs:
    case Command::Exit:
    case Command::Close: {
        QString fault = checkFileCommand(command, before);
        QStringList answers;
        for (auto a : dialogs_.promptAnswers)
            answers.append(buttonName(a));
        for (const QString &name : dialogs_.givenSaveNames)
            answers.append(QStringLiteral("save \"%1\"").arg(name));
        for (const QString &name : dialogs_.givenOpenNames)
            answers.append(QStringLiteral("open \"%1\"").arg(name));
        if (!answers.isEmpty())
            description += QStringLiteral(" [") + answers.join(QStringLiteral(", ")) + u']';
        return fault;
    }
    default:
        break;
    }

    const frmMain &w = *window_;
    const Levelset &now = w.levelset;
    const Levelset &was = before.levelset;
    int messagesExpected = 0;
    int modalsExpected = 0;
    bool levelsetMayChange = false;
    QString fault;
    const auto expectEqual = [&](const char *what, int actual, int expected) {
        if (fault.isEmpty() && actual != expected)
            fault = QStringLiteral("%1 is %2, expected %3")
                        .arg(QLatin1StringView(what))
                        .arg(actual)
                        .arg(expected);
    };
    const int n = was.levelCount;
    const int current = was.currentLevel;
    const LevelRecord &level = was.current();

    switch (command) {
    case Command::ViewStart:
    case Command::ViewFinish:
    case Command::ViewPut:
    case Command::ViewTake: {
        const int item = static_cast<int>(command) - static_cast<int>(Command::ViewStart);
        const Before after = snapshot();
        for (int i = 0; i < 4; ++i)
            expectEqual("a View check mark", after.viewItems[i],
                        i == item ? !before.viewItems[i] : before.viewItems[i]);
        break;
    }
    case Command::DecreaseWidth:
    case Command::IncreaseWidth:
    case Command::DecreaseHeight:
    case Command::IncreaseHeight: {
        levelsetMayChange = true;
        const bool widthAxis =
            command == Command::DecreaseWidth || command == Command::IncreaseWidth;
        const bool grow = command == Command::IncreaseWidth || command == Command::IncreaseHeight;
        const int size = widthAxis ? level.width() : level.height();
        const int least = widthAxis ? LevelRecord::MinWidth : LevelRecord::MinHeight;
        int expected = size;
        if (grow && size < LevelRecord::GridSize)
            ++expected;
        if (!grow && size > least)
            --expected;
        LevelRecord resized = level;
        resized.header[widthAxis ? LevelRecord::Width : LevelRecord::Height] =
            static_cast<std::uint8_t>(expected);
        if (now.current() != resized)
            fault = QStringLiteral("resizing a %1 x %2 level gave %3 x %4, tiles or header "
                                   "otherwise as before: %5")
                        .arg(level.width())
                        .arg(level.height())
                        .arg(now.current().width())
                        .arg(now.current().height())
                        .arg(now.current().tiles == level.tiles ? "yes" : "no");
        for (int i = 0; i < Levelset::MaxLevels && fault.isEmpty(); ++i)
            if (i != current && now.levels[i] != was.levels[i])
                fault = QStringLiteral("resizing level %1 changed level %2").arg(current).arg(i);
        break;
    }
    case Command::Remove:
        expectEqual("levelCount after Remove", now.levelCount,
                    (n > 1 && current + 1 < n) ? n - 1 : n);
        expectEqual("currentLevel after Remove", now.currentLevel, current);
        break;
    case Command::Add:
        expectEqual("levelCount after Add", now.levelCount, std::min(n + 1, 8));
        expectEqual("currentLevel after Add", now.currentLevel, current);
        break;
    case Command::Previous:
    case Command::Next: {
        // The panel's handlers may rewrite a foreign level or alien type of the level shown.
        levelsetMayChange = true;
        const int step = command == Command::Next ? 1 : -1;
        const int expected = (current + step >= 0 && current + step < n) ? current + step : current;
        expectEqual("levelCount", now.levelCount, n);
        expectEqual("currentLevel", now.currentLevel, expected);
        if (expected != current)
            expectEqual("levelCursor's left edge after a level change", w.levelCursor->pos().x(),
                        0);
        for (int i = 0; i < Levelset::MaxLevels && fault.isEmpty(); ++i)
            if (now.levels[i].tiles != was.levels[i].tiles)
                fault = QStringLiteral("changing the level changed the tiles of level %1").arg(i);
        break;
    }
    case Command::Mode0:
    case Command::Mode1:
    case Command::Mode2:
    case Command::Mode3:
        expectEqual("rightButtonMode", w.rightButtonMode,
                    static_cast<int>(command) - static_cast<int>(Command::Mode0));
        break;
    case Command::SetFloor: {
        levelsetMayChange = true;
        const int type = level.header[LevelRecord::LevelType];
        for (int x = 0; x < LevelRecord::GridSize && fault.isEmpty(); ++x)
            for (int y = 0; y < LevelRecord::GridSize && fault.isEmpty(); ++y) {
                int expected = level.tile(x, y);
                if (type == 0 && expected == 1)
                    expected = 0;
                else if (type == 1 && expected == 0)
                    expected = 1;
                if (now.current().tile(x, y) != expected)
                    fault = QStringLiteral("Set Floor on a level of type %1 left %2 at (%3, %4)")
                                .arg(type)
                                .arg(now.current().tile(x, y))
                                .arg(x)
                                .arg(y);
            }
        break;
    }
    case Command::Enemies:
    case Command::Pickups:
    case Command::Doors:
        messagesExpected = 1;
        if (dialogs_.messages.size() == 1 && dialogs_.messages[0].icon != QMessageBox::Information)
            fault = QStringLiteral("a count shown without the information icon");
        break;
    case Command::About:
        modalsExpected = 1;
        break;
    default:
        break;
    }
    const bool listCommand = command == Command::Add || command == Command::Remove ||
                             command == Command::Previous || command == Command::Next;
    if (fault.isEmpty() && !listCommand &&
        (now.levelCount != was.levelCount || now.currentLevel != was.currentLevel))
        fault = QStringLiteral("the level list changed");
    if (fault.isEmpty() && !levelsetMayChange &&
        (now.levels != was.levels || now.passcodes != was.passcodes ||
         now.reserved1 != was.reserved1 || now.reserved2 != was.reserved2))
        fault = QStringLiteral("the levelset changed");
    expectEqual("messages shown", static_cast<int>(dialogs_.messages.size()), messagesExpected);
    expectEqual("modal windows shown", dialogs_.modalCount, modalsExpected);
    expectEqual("file dialogs shown",
                static_cast<int>(dialogs_.saveQuestions.size() + dialogs_.openQuestions.size()), 0);
    return fault;
}

// Follows the course a file command must take with the answers the user gave, and compares.
QString MonkeyWalk::checkFileCommand(Command command, const Before &before) {
    const frmMain &w = *window_;
    const bool prompts = command != Command::Save && command != Command::SaveAs;
    QMessageBox::StandardButton answer = QMessageBox::No;
    if (prompts) {
        if (dialogs_.promptAnswers.size() != 1)
            return QStringLiteral("the save prompt was asked %1 times")
                .arg(dialogs_.promptAnswers.size());
        answer = dialogs_.promptAnswers[0];
    } else if (!dialogs_.promptAnswers.isEmpty()) {
        return QStringLiteral("a save asked whether to save");
    }

    QString fault;
    if (answer == QMessageBox::Yes || !prompts)
        fault = expectSave(before.levelset, command == Command::SaveAs, !prompts);
    if (!fault.isEmpty())
        return fault;

    if (saveNamesUsed_ != dialogs_.givenSaveNames.size())
        return QStringLiteral("the save dialog was shown %1 times, %2 expected")
            .arg(dialogs_.givenSaveNames.size())
            .arg(saveNamesUsed_);
    const auto messagesWith = [this](auto matches) {
        int found = 0;
        for (const auto &m : dialogs_.messages)
            found += matches(m);
        return found;
    };
    const int invalid = messagesWith(
        [](const auto &m) { return m.text == InvalidNameText && m.icon == QMessageBox::Warning; });
    const int refused = messagesWith([](const auto &m) {
        return m.title == QStringLiteral("Error!") && m.icon == QMessageBox::Critical;
    });
    if (invalid != invalidNameMessages_ || refused != refusals_ ||
        dialogs_.messages.size() != invalid + refused + (prompts ? 1 : 0))
        return QStringLiteral("%1 invalid-name and %2 refusal messages of %3, expected %4 and %5")
            .arg(invalid)
            .arg(refused)
            .arg(dialogs_.messages.size())
            .arg(invalidNameMessages_)
            .arg(refusals_);

    const bool cancelled = prompts && answer == QMessageBox::Cancel;
    const Levelset &now = w.levelset;
    if (cancelled || !prompts) {
        if (!sameStoredContent(now, before.levelset) ||
            now.currentLevel != before.levelset.currentLevel)
            return QStringLiteral("the levelset changed although nothing was to replace it");
        return {};
    }

    if (command == Command::Exit || command == Command::Close) {
        if (w.isVisible())
            return QStringLiteral("the window stayed open after %1").arg(buttonName(answer));
        count(QStringLiteral("reopened"));
        openWindow();
        return {};
    }

    if (command == Command::New) {
        expectedPath_ = UntitledPath;
        if (!sameStoredContent(now, Levelset()) || now.levels != Levelset().levels)
            return QStringLiteral("New left something of the old levelset");
        return {};
    }

    // Open
    if (dialogs_.givenOpenNames.size() != 1)
        return QStringLiteral("the open dialog was shown %1 times")
            .arg(dialogs_.givenOpenNames.size());
    const QString opened = dialogs_.givenOpenNames[0];
    if (opened.isEmpty()) {
        if (!sameStoredContent(now, before.levelset))
            return QStringLiteral("a cancelled Open changed the levelset");
        return {};
    }
    expectedPath_ = opened;
    count(QStringLiteral("opened"));
    if (now.currentLevel != 0)
        return QStringLiteral("Open left level %1 current").arg(now.currentLevel);
    const QFileInfo file(opened);
    if (!file.isFile()) {
        if (!sameStoredContent(now, Levelset()))
            return QStringLiteral("opening %1, which is no file, did not leave a fresh levelset")
                .arg(opened);
        return {};
    }
    // A file this walk saved reads back to exactly what was saved.
    if (folder_.writtenBySave(opened)) {
        QFile saved(opened);
        saved.open(QIODevice::ReadOnly);
        QByteArray expected = saved.readAll();
        // Showing the first level selects its options, which store a foreign level type as 1
        // and a foreign alien type as 4.
        constexpr int LevelType = LevelsetFilePrologueSize + LevelRecord::LevelType;
        constexpr int AlienType = LevelsetFilePrologueSize + LevelRecord::AlienType;
        const QByteArray reread = writeLevelset(now, opened);
        if (expected.size() > AlienType && reread.size() > AlienType) {
            const auto levelType = static_cast<std::uint8_t>(expected[LevelType]);
            const auto alienType = static_cast<std::uint8_t>(expected[AlienType]);
            if (levelType > 1 && reread[LevelType] == 1)
                expected[LevelType] = 1;
            if (alienType != 3 && alienType != 4 && reread[AlienType] == 4)
                expected[AlienType] = 4;
        }
        if (reread != expected)
            return QStringLiteral("%1 did not read back as it was saved").arg(opened);
    }
    return {};
}

// The course of Save (or Save As) for the levelset as it was before the command.
QString MonkeyWalk::expectSave(const Levelset &before, bool forceDialog, bool statusShown) {
    QString target;
    if (!forceDialog && expectedPath_ != UntitledPath) {
        target = MonkeyFolder::writtenForm(expectedPath_);
    } else {
        for (;;) {
            if (saveNamesUsed_ >= dialogs_.givenSaveNames.size())
                return QStringLiteral("the save dialog was not shown again");
            const QString name = dialogs_.givenSaveNames[saveNamesUsed_++];
            if (name.isEmpty())
                return {};
            if (folder_.followsNameRule(name)) {
                target = MonkeyFolder::writtenForm(name);
                break;
            }
            ++invalidNameMessages_;
        }
    }
    if (checkHolesAndGuards(before) != 0) {
        ++refusals_;
        count(QStringLiteral("save refused"));
        return {};
    }
    expectedPath_ = target;
    const MonkeyFolder::SaveOutcome outcome =
        folder_.noteSave(target, writeLevelset(before, target));
    count(outcome.written ? QStringLiteral("saved") : QStringLiteral("save failed"));
    if (!outcome.fault.isEmpty())
        return outcome.fault;
    const QString status = window_->statusText->text();
    if (statusShown && outcome.written && status != QStringLiteral("Saved ") + target)
        return QStringLiteral("status \"%1\" after saving %2").arg(status, target);
    if (statusShown && !outcome.written && !status.startsWith(QStringLiteral("Could not write ")))
        return QStringLiteral("status \"%1\" after failing to save %2").arg(status, target);
    return {};
}

// --- Mouse on the level view -------------------------------------------------------------------

namespace {

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

// --- Palette -----------------------------------------------------------------------------------

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

// --- Panel -------------------------------------------------------------------------------------

QString MonkeyWalk::typing(QString &description) {
    frmMain &w = *window_;
    const Before before = snapshot();
    QLineEdit *fields[] = {w.panel->txtPasscode, w.panel->txtObjectives, w.panel->txtTime};
    const int which = pick(3);
    QLineEdit *field = fields[which];
    QStringList steps;
    if (pick(3) == 0) {
        if (pick(2)) {
            QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(field, Qt::Key_Delete);
            steps.append(QStringLiteral("select all, delete"));
        } else {
            QTest::keyClick(field, Qt::Key_End);
            const int erase = pick(5);
            for (int i = 0; i < erase; ++i)
                QTest::keyClick(field, Qt::Key_Backspace);
            steps.append(QStringLiteral("end, %1 backspaces").arg(erase));
        }
    }
    const QString characters =
        which == 0 ? QStringLiteral("abcXYZ09 -!") : QStringLiteral("0123456789012345 -+x");
    QString text;
    const int length = pick(5);
    for (int i = 0; i < length; ++i)
        text += characters[pick(static_cast<int>(characters.size()))];
    QTest::keyClicks(field, text);
    steps.append(QStringLiteral("type \"%1\"").arg(text));
    description = QStringLiteral("%1: %2, shows \"%3\"")
                      .arg(field->objectName(), steps.join(QStringLiteral(", ")), field->text());
    count(QStringLiteral("typing"));

    for (const auto &m : std::as_const(dialogs_.messages))
        if (which == 0 || (m.text != InvalidCharacterText && m.text != InvalidValueText))
            return QStringLiteral("typing into %1 showed \"%2\"").arg(field->objectName(), m.text);

    // Typing changes one header byte, or one passcode slot, of the current level only.
    Levelset expected = before.levelset;
    const int current = expected.currentLevel;
    if (which == 0 && current > 0)
        expected.passcodes[current - 1] = w.levelset.passcodes[current - 1];
    if (which > 0) {
        const auto byte = which == 1 ? LevelRecord::Objectives : LevelRecord::Time;
        expected.levels[current].header[byte] = w.levelset.current().header[byte];
    }
    if (!sameStoredContent(expected, w.levelset) || expected.levels != w.levelset.levels)
        return QStringLiteral("typing into %1 changed more than its own value")
            .arg(field->objectName());
    return {};
}

QString MonkeyWalk::optionClick(QString &description) {
    frmMain &w = *window_;
    const Before before = snapshot();
    QRadioButton *options[] = {w.panel->optNormal, w.panel->optHatchery, w.panel->optWeak,
                               w.panel->optStrong};
    QRadioButton *option = options[pick(4)];
    QTest::mouseClick(option, Qt::LeftButton);
    description = QStringLiteral("click %1").arg(option->objectName());
    count(QStringLiteral("option"));

    Levelset expected = before.levelset;
    LevelRecord &level = expected.levels[expected.currentLevel];
    level.header[LevelRecord::LevelType] = w.levelset.current().header[LevelRecord::LevelType];
    level.header[LevelRecord::AlienType] = w.levelset.current().header[LevelRecord::AlienType];
    if (!option->isChecked())
        return QStringLiteral("%1 is not selected after a click").arg(option->objectName());
    if (!sameStoredContent(expected, w.levelset) || expected.levels != w.levelset.levels ||
        !dialogs_.messages.isEmpty())
        return QStringLiteral("clicking %1 changed more than the level's types")
            .arg(option->objectName());
    return {};
}
