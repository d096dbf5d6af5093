#include "MonkeyWalk.h"
#include "WindowInvariants.h"

#include "analysis/HolesAndGuards.h"
#include "levelset/LevelsetFile.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QTest>
#include <QToolBar>

// The walk itself and its commands: menu items, toolbar buttons and shortcut keys, the course
// the file commands must take with the answers given, and what every other command must do.

namespace {

// clang-format off
enum Command {
    New, Open, Save, SaveAs, Exit, Close, ViewStart, ViewFinish, ViewPut, ViewTake,
    DecreaseWidth, IncreaseWidth, DecreaseHeight, IncreaseHeight, Remove, Add, Previous, Next,
    Mode0, Mode1, Mode2, Mode3, SetFloor, Enemies, Pickups, Doors, About, CommandCount
};
// clang-format on

// The menu item and the toolbar button of each command; shortcut keys are the menu item's own.
struct CommandEntry {
    const char *menuItem; // null for the close box
    const char *toolbarKey;
};

const CommandEntry Commands[CommandCount] = {
    {"mnuFileNew", "New"},
    {"mnuFileOpen", "Open"},
    {"mnuFileSave", "Save"},
    {"mnuFileSaveAs", nullptr},
    {"mnuFileExit", nullptr},
    {nullptr, nullptr},
    {"mnuViewStart", nullptr},
    {"mnuViewFinish", nullptr},
    {"mnuViewBlockPut", nullptr},
    {"mnuViewBlockTake", nullptr},
    {"mnuLevelDecreaseWidth", "DWidth"},
    {"mnuLevelIncreaseWidth", "IWidth"},
    {"mnuLevelDecreaseHeight", "DHeight"},
    {"mnuLevelIncreaseHeight", "IHeight"},
    {"mnuLevelRemove", "RemoveLevel"},
    {"mnuLevelAdd", "AddLevel"},
    {"mnuLevelPrevious", "PreviousLevel"},
    {"mnuLevelNext", "NextLevel"},
    {"mnuToolsMouseChoice0", nullptr},
    {"mnuToolsMouseChoice1", nullptr},
    {"mnuToolsMouseChoice2", nullptr},
    {"mnuToolsMouseChoice3", nullptr},
    {"mnuToolsSetFloor", nullptr},
    {"mnuToolsEnemies", nullptr},
    {"mnuToolsPickups", nullptr},
    {"mnuToolsDoors", nullptr},
    {"mnuHelpAbout", "About"},
};

const QString InvalidNameText = QStringLiteral(
    "Invalid file name! Must be of the format: zkstl???.kst, where ??? is the Levelset name.");

std::array<bool, 4> viewItems(const frmMain &w) {
    return {w.mnuViewStart->isChecked(), w.mnuViewFinish->isChecked(),
            w.mnuViewBlockPut->isChecked(), w.mnuViewBlockTake->isChecked()};
}

} // namespace

bool sameLevelset(const Levelset &a, const Levelset &b) {
    return writeLevelset(a, UntitledPath) == writeLevelset(b, UntitledPath) &&
           a.levels == b.levels && a.currentLevel == b.currentLevel;
}

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
        ++statistics_[QStringLiteral("inactive window")];
    expectedPath_ = UntitledPath;
}

QString MonkeyWalk::brokenRule() const {
    const QString broken = brokenInvariant(*window_, expectedPath_);
    return broken.isEmpty() ? folder_.check() : broken;
}

QString MonkeyWalk::step() {
    dialogs_.forget();
    QString description;
    QString fault;
    const int kind = pick(100);
    if (kind < 30)
        fault = command(description);
    else if (kind < 70)
        fault = levelStroke(description);
    else if (kind < 82)
        fault = paletteClick(description);
    else
        fault = panelInput(description);
    ++statistics_[description.section(u' ', 0, 0)];

    recent_.append(QStringLiteral("#%1 %2").arg(++actionIndex_).arg(description));
    if (recent_.size() > 12)
        recent_.removeFirst();
    if (fault.isEmpty() && !window_->isVisible())
        fault = QStringLiteral("the window closed");
    return fault.isEmpty() ? brokenRule() : fault;
}

QString MonkeyWalk::statistics() const {
    QStringList lines;
    for (auto it = statistics_.cbegin(); it != statistics_.cend(); ++it)
        lines.append(QStringLiteral("%1: %2").arg(it.key()).arg(it.value()));
    return lines.join(QStringLiteral(", "));
}

QString MonkeyWalk::command(QString &description) {
    // The window is closed seldom, so that levelsets grow between fresh starts.
    int c = pick(CommandCount);
    if ((c == Close || c == Exit) && pick(4) != 0)
        c = pick(CommandCount);
    const CommandEntry &entry = Commands[c];
    frmMain &w = *window_;
    QAction *item = entry.menuItem ? w.findChild<QAction *>(entry.menuItem) : nullptr;
    const QKeyCombination key =
        item && !item->shortcut().isEmpty() ? item->shortcut()[0] : QKeyCombination();
    const Levelset before = window_->levelset;
    const std::array<bool, 4> viewBefore = viewItems(w);
    const int route = pick(3);
    if (c == Close) {
        description = QStringLiteral("close the window");
        w.close();
    } else if (route == 1 && entry.toolbarKey) {
        description = QStringLiteral("toolbar %1").arg(QLatin1StringView(entry.toolbarKey));
        QAction *button = w.findChild<QAction *>(QLatin1StringView(entry.toolbarKey));
        QTest::mouseClick(w.tbToolBar->widgetForAction(button), Qt::LeftButton);
    } else if (route == 2 && key != QKeyCombination() && QApplication::activeWindow() == &w) {
        description = QStringLiteral("key %1").arg(QKeySequence(key).toString());
        // Wherever the focus is, a panel field included: a menu key is the menu's.
        QTest::keyClick(&w, key.key(), key.keyboardModifiers());
    } else {
        description = QStringLiteral("menu %1").arg(QLatin1StringView(entry.menuItem));
        item->trigger();
    }
    if (c > Close)
        return checkCommand(c, before, viewBefore);

    QStringList answers;
    for (auto a : std::as_const(dialogs_.promptAnswers))
        answers.append(a == QMessageBox::Yes ? "Yes" : a == QMessageBox::No ? "No" : "Cancel");
    for (const QString &name : std::as_const(dialogs_.saveNames))
        answers.append(QStringLiteral("save \"%1\"").arg(name));
    for (const QString &name : std::as_const(dialogs_.openNames))
        answers.append(QStringLiteral("open \"%1\"").arg(name));
    description += QStringLiteral(" [%1]").arg(answers.join(QStringLiteral(", ")));
    return fileCommand(c, before);
}

QString MonkeyWalk::checkCommand(int c, const Levelset &before, std::array<bool, 4> viewBefore) {
    const frmMain &w = *window_;
    const Levelset &now = w.levelset;
    const char *name = Commands[c].menuItem;
    Levelset expected = before;
    LevelRecord &level = expected.current();
    const int n = before.levelCount;
    const int current = before.currentLevel;
    const bool resize = c >= DecreaseWidth && c <= IncreaseHeight;
    if (c >= ViewStart && c <= ViewTake) {
        viewBefore[c - ViewStart] = !viewBefore[c - ViewStart];
        if (viewItems(w) != viewBefore)
            return QStringLiteral("%1 did not toggle its check mark alone").arg(name);
    } else if (resize) {
        const bool width = c < DecreaseHeight;
        std::uint8_t &size = level.header[width ? LevelRecord::Width : LevelRecord::Height];
        if (c == IncreaseWidth || c == IncreaseHeight)
            size += size < LevelRecord::GridSize;
        else
            size -= size > (width ? LevelRecord::MinWidth : LevelRecord::MinHeight);
    } else if (c == Remove) {
        expected.levelCount = n > 1 && current + 1 < n ? n - 1 : n;
    } else if (c == Add) {
        expected.levelCount = std::min(n + 1, Levelset::MaxLevels);
    } else if (c == Previous || c == Next) {
        const int to = current + (c == Next ? 1 : -1);
        expected.currentLevel = to >= 0 && to < n ? to : current;
        if (expected.currentLevel != current && w.levelCursor->pos().x() != 0)
            return QStringLiteral("levelCursor not at the left edge after a level change");
    } else if (c >= Mode0 && c <= Mode3 && w.rightButtonMode != c - Mode0) {
        return QStringLiteral("rightButtonMode %1 after %2").arg(w.rightButtonMode).arg(name);
    } else if (c == SetFloor) {
        const int type = level.header[LevelRecord::LevelType];
        for (std::uint8_t &tile : level.tiles)
            if (type < 2 && tile == 1 - type)
                tile = static_cast<std::uint8_t>(type);
    }
    if (now.levelCount != expected.levelCount || now.currentLevel != expected.currentLevel)
        return QString::asprintf("after %s: %d levels, level %d current; expected %d and %d", name,
                                 now.levelCount, now.currentLevel, expected.levelCount,
                                 expected.currentLevel);
    // Add and Remove remake levels; showing another level may store a foreign type as shown.
    const auto sameTiles = [&] {
        for (int i = 0; i < Levelset::MaxLevels; ++i)
            if (now.levels[i].tiles != before.levels[i].tiles)
                return false;
        return true;
    };
    if (c == Add || c == Remove      ? false
        : c == Previous || c == Next ? !sameTiles()
                                     : !sameLevelset(now, expected))
        return QString::asprintf("%s on a %d x %d level of type %d left the levelset wrong", name,
                                 before.current().width(), before.current().height(),
                                 before.current().header[LevelRecord::LevelType]);
    const bool counts = c == Enemies || c == Pickups || c == Doors;
    if (dialogs_.messages.size() != counts || dialogs_.modalCount != (c == About) ||
        !dialogs_.saveQuestions.isEmpty() || !dialogs_.openQuestions.isEmpty() ||
        (counts && dialogs_.messages[0].icon != QMessageBox::Information))
        return QString::asprintf(
            "%s showed %d messages, %d modal windows, %d file dialogs", name,
            int(dialogs_.messages.size()), dialogs_.modalCount,
            int(dialogs_.saveQuestions.size() + dialogs_.openQuestions.size()));
    return {};
}

QString MonkeyWalk::fileCommand(int c, const Levelset &before) {
    const frmMain &w = *window_;
    const bool prompts = c != Save && c != SaveAs;
    if (dialogs_.promptAnswers.size() != prompts)
        return QStringLiteral("the save prompt was asked %1 times")
            .arg(dialogs_.promptAnswers.size());
    const auto answer = prompts ? dialogs_.promptAnswers[0] : QMessageBox::Yes;
    saveNamesUsed_ = invalidNames_ = refusals_ = 0;
    if (answer == QMessageBox::Yes)
        if (QString fault = expectSave(before, c == SaveAs, !prompts); !fault.isEmpty())
            return fault;
    const auto &m = dialogs_.messages;
    const auto invalid = std::count_if(m.cbegin(), m.cend(), [](const auto &m) {
        return m.text == InvalidNameText && m.icon == QMessageBox::Warning;
    });
    const auto refused = std::count_if(m.cbegin(), m.cend(), [](const auto &m) {
        return m.title == QStringLiteral("Error!") && m.icon == QMessageBox::Critical;
    });
    if (saveNamesUsed_ != dialogs_.saveNames.size() || invalid != invalidNames_ ||
        refused != refusals_ || m.size() != invalid + refused + prompts)
        return QString::asprintf("%d save dialogs, %d invalid-name and %d refusal messages of %d; "
                                 "expected %d, %d and %d",
                                 int(dialogs_.saveNames.size()), int(invalid), int(refused),
                                 int(m.size()), saveNamesUsed_, invalidNames_, refusals_);

    const Levelset &now = w.levelset;
    const QString opened = dialogs_.openNames.value(0);
    if (!prompts || answer == QMessageBox::Cancel || (c == Open && opened.isEmpty())) {
        if (!sameLevelset(now, before))
            return QStringLiteral("the levelset changed although nothing was to replace it");
        return {};
    }
    if (c == Exit || c == Close) {
        if (w.isVisible())
            return QStringLiteral("the window stayed open after the prompt");
        ++statistics_[QStringLiteral("reopened")];
        openWindow();
        return {};
    }
    const bool readsFile = c == Open && QFileInfo(opened).isFile();
    expectedPath_ = c == New ? UntitledPath : opened;
    if (!readsFile && !sameLevelset(now, Levelset()))
        return QStringLiteral("%1 did not leave a fresh levelset").arg(c == New ? "New" : opened);
    if (now.currentLevel != 0)
        return QStringLiteral("Open left level %1 current").arg(now.currentLevel);
    statistics_[QStringLiteral("opened")] += readsFile;
    if (!readsFile || !folder_.writtenBySave(opened))
        return {};
    // A file this walk saved reads back as saved, but for showing the first level: its options
    // store a foreign level type as 1 and a foreign alien type as 4.
    QFile saved(opened);
    saved.open(QIODevice::ReadOnly);
    QByteArray expectedBytes = saved.readAll();
    const QByteArray reread = writeLevelset(now, opened);
    constexpr int LevelType = LevelsetFilePrologueSize + LevelRecord::LevelType;
    constexpr int AlienType = LevelsetFilePrologueSize + LevelRecord::AlienType;
    if (expectedBytes.size() > AlienType && reread.size() > AlienType) {
        const auto alienType = static_cast<std::uint8_t>(expectedBytes[AlienType]);
        if (static_cast<std::uint8_t>(expectedBytes[LevelType]) > 1 && reread[LevelType] == 1)
            expectedBytes[LevelType] = 1;
        if (alienType != 3 && alienType != 4 && reread[AlienType] == 4)
            expectedBytes[AlienType] = 4;
    }
    if (reread != expectedBytes)
        return QStringLiteral("%1 did not read back as it was saved").arg(opened);
    return {};
}

// The course of Save (or Save As) for the levelset as it was before the command: the save
// dialog until a name follows the rule, the check that refuses a crowded level, the writer.
QString MonkeyWalk::expectSave(const Levelset &before, bool forceDialog, bool statusShown) {
    QString target;
    if (!forceDialog && expectedPath_ != UntitledPath)
        target = expectedPath_; // the very file it came from, whatever the case of its name
    while (target.isEmpty()) {
        if (saveNamesUsed_ >= dialogs_.saveNames.size())
            return QStringLiteral("the save dialog was not shown again");
        const QString name = dialogs_.saveNames[saveNamesUsed_++];
        if (name.isEmpty())
            return {};
        if (folder_.followsNameRule(name))
            target = MonkeyFolder::writtenForm(name);
        else
            ++invalidNames_;
    }
    if (checkHolesAndGuards(before) != 0) {
        ++refusals_;
        ++statistics_[QStringLiteral("save refused")];
        return {};
    }
    expectedPath_ = target;
    const MonkeyFolder::SaveOutcome outcome =
        folder_.noteSave(target, writeLevelset(before, target));
    ++statistics_[outcome.written ? QStringLiteral("saved") : QStringLiteral("save failed")];
    const QString status = window_->statusText->text();
    if (!outcome.fault.isEmpty())
        return outcome.fault;
    if (statusShown && (outcome.written ? status != QStringLiteral("Saved ") + target
                                        : !status.startsWith(QStringLiteral("Could not write "))))
        return QStringLiteral("status \"%1\" after saving %2").arg(status, target);
    return {};
}
