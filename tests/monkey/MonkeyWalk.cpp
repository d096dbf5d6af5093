#include "MonkeyShared.h"
#include "WindowInvariants.h"
#include "shell/frmMain.h"
#include "view/Marker.h"

#include <QAction>
#include <QTest>

// The walk itself: its window, one step, and what it counted.

namespace {
constexpr int RecentKept = 12;
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
