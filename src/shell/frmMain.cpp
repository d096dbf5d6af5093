#include "shell/frmMain.h"

#include "dialogs/Dialogs.h"
#include "levels/LevelList.h"
#include "levels/LevelResize.h"
#include "levels/PropertiesPanel.h"
#include "shell/Centring.h"
#include "shell/SystemInfo.h"
#include "shell/frmAbout.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilesetPicture.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QWindow>

// The window itself, the routines that show a level, the level list and resize commands and
// About. The controls are built in MainControls.cpp, the menus in MainMenus.cpp and the toolbar,
// with its dispatch, and the status bar in MainToolbar.cpp.

frmMain::frmMain(Dialogs *dialogs, QWidget *parent)
    : QMainWindow(parent, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                              Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                              Qt::MSWindowsFixedSizeDialogHint),
      dialogs_(dialogs) {
    if (!dialogs_) {
        ownDialogs_ = std::make_unique<PlatformDialogs>(this);
        dialogs_ = ownDialogs_.get();
    }
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(ApplicationTitle);
    QIcon icon;
    icon.addFile(QStringLiteral(":/images/icon32.png"), QSize(32, 32));
    icon.addFile(QStringLiteral(":/images/icon16.png"), QSize(16, 16));
    setWindowIcon(icon);

    createControls();
    createMarkers();
    createMenus();
    createPopupMenus();
    createToolbar();
    createStatusBar();
    giveMenuKeysToTheMenus();

    // The client area has a fixed size, so the window is as big as the menu bar and that area.
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    new Centring(*this, [this] { return screen() ? screen()->availableGeometry() : QRect(); });
}

frmMain::~frmMain() = default;

void frmMain::Form_Load() {
    newLevelset();
    selectedTile = 0;
    levelset.currentLevel = 0;
    rightButtonMode = 0;
    updateLevelLabel();
}

void frmMain::newLevelset() {
    levelset.reset();
    setWindowTitle(::windowTitle(levelset.levelsetPath));
    drawLevel(levelset.currentLevel);
    updateLevelLabel();
    loadLevel(levelset.currentLevel);
}

void frmMain::drawLevel(std::int16_t level) {
    picLevel->drawLevel(levelset.levels[level], picTileset->image());
    picLevel->present();
}

void frmMain::updateLevelLabel() {
    lblLevelNum->setText(levelLabel(levelset));
}

void frmMain::loadLevel(std::int16_t &level) {
    if (level < 0 || level >= Levelset::MaxLevels)
        return;
    const LevelRecord &record = levelset.levels[level];
    const auto cell = [&](LevelRecord::HeaderByte x, LevelRecord::HeaderByte y) {
        return QPoint(Tileset::CellSize * record.header[x], Tileset::CellSize * record.header[y]);
    };
    shpStart->place(cell(LevelRecord::StartX, LevelRecord::StartY));
    shpFinish->place(cell(LevelRecord::FinishX, LevelRecord::FinishY));
    shpPut->place(cell(LevelRecord::PutX, LevelRecord::PutY));
    shpTake->place(cell(LevelRecord::TakeX, LevelRecord::TakeY));
    shpPutType->place(Tileset::cellOrigin(record.header[LevelRecord::PutType]));
    shpTakeType->place(Tileset::cellOrigin(record.header[LevelRecord::TakeType]));
    panel->loadLevel(level);
}

void frmMain::setStatusText(const QString &text) {
    statusText->setText(text);
}

// Previous and Next show the level they moved to; the panel comes last because its handlers
// write into the level that is current by then.
void frmMain::showCurrentLevel() {
    drawLevel(levelset.currentLevel);
    updateLevelLabel();
    levelCursor->place(QPoint(0, 0));
    loadLevel(levelset.currentLevel);
}

void frmMain::mnuLevelRemove_Click() {
    if (removeLevel(levelset))
        updateLevelLabel();
}

void frmMain::mnuLevelAdd_Click() {
    addLevel(levelset);
    updateLevelLabel();
}

void frmMain::mnuLevelPrevious_Click() {
    if (previousLevel(levelset))
        showCurrentLevel();
}

void frmMain::mnuLevelNext_Click() {
    if (nextLevel(levelset))
        showCurrentLevel();
}

// A resize repaints even at a limit.
void frmMain::mnuLevelDecreaseWidth_Click() {
    decreaseWidth(levelset.current());
    drawLevel(levelset.currentLevel);
}

void frmMain::mnuLevelIncreaseWidth_Click() {
    increaseWidth(levelset.current());
    drawLevel(levelset.currentLevel);
}

void frmMain::mnuLevelDecreaseHeight_Click() {
    decreaseHeight(levelset.current());
    drawLevel(levelset.currentLevel);
}

void frmMain::mnuLevelIncreaseHeight_Click() {
    increaseHeight(levelset.current());
    drawLevel(levelset.currentLevel);
}

void frmMain::mnuHelpAbout_Click() {
    const std::unique_ptr<SystemInfo> systemInfo = platformSystemInfo();
    frmAbout about(dialogs(), *systemInfo, this);
    dialogs().showModal(about);
}

void frmMain::mnuFileExit_Click() {
    close();
}

void frmMain::closeEvent(QCloseEvent *event) {
    bool cancel = false;
    Form_QueryUnload(cancel);
    if (cancel) {
        event->ignore();
        return;
    }
    event->accept();
    Form_Unload();
}

// Closes every other open window, the most recently opened first. The toolkit lists its
// windows in the order they were created, which is the order they were first opened.
void frmMain::Form_Unload() {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (auto it = windows.crbegin(); it != windows.crend(); ++it) {
        QWindow *window = *it;
        if (window != windowHandle() && window->isVisible())
            window->close();
    }
}

bool frmMain::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride && menuOwns(*static_cast<QKeyEvent *>(event))) {
        event->ignore(); // refused by the control, the key goes to the item's shortcut
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}
