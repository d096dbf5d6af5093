#pragma once

#include "levelset/Levelset.h"
#include "view/RandomTiles.h"

#include <QKeySequence>
#include <QMainWindow>
#include <array>
#include <cstdint>
#include <memory>

class Dialogs;
class LevelView;
class Marker;
class PropertiesPanel;
class QAction;
class QActionGroup;
class QKeyEvent;
class QLabel;
class QMenu;
class QStatusBar;
class QToolBar;
class TilePalette;
class TilesetPicture;

// The main window: owns the one levelset, the editing state and every control. Its handlers are
// grouped by concern: frmMain.cpp (window, menus, level list, resizing, About), MainToolbar.cpp
// (the toolbar's buttons and dispatch), frmMainEditing.cpp (mouse, palette, popups, view items,
// right-button modes, Set Floor, counts) and frmMainFiles.cpp (file commands, the close
// request, saveLevelset).
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    // Without dialogs the window asks through the platform's own boxes and dialogs.
    explicit frmMain(Dialogs *dialogs = nullptr, QWidget *parent = nullptr);
    ~frmMain() override;

    // Construction builds every control and menu; Form_Load then sets up the first levelset.
    void Form_Load();

    // The document and the editing state; tests read them directly.
    Levelset levelset;
    std::uint8_t selectedTile = 0;
    std::int16_t rightButtonMode = 0;
    std::int16_t cursorX = 0;
    std::int16_t cursorY = 0;
    std::int16_t popupX = 0;
    std::int16_t popupY = 0;
    std::int32_t popupTile = 0;
    RandomTiles randomTiles;

    // Controls, by the names users and tests know them by.
    QWidget *client = nullptr; // the 803 x 572 area below the menu bar
    QToolBar *tbToolBar = nullptr;
    QStatusBar *sbStatusBar = nullptr;
    QLabel *statusText = nullptr;
    QLabel *lblLevelNum = nullptr;
    LevelView *picLevel = nullptr;
    TilePalette *picTiles = nullptr;
    TilesetPicture *picTileset = nullptr;
    PropertiesPanel *panel = nullptr;
    Marker *levelCursor = nullptr;
    Marker *shpStart = nullptr;
    Marker *shpFinish = nullptr;
    Marker *shpPut = nullptr;
    Marker *shpTake = nullptr;
    Marker *tileCursor = nullptr;
    Marker *shpPutType = nullptr;
    Marker *shpTakeType = nullptr;

    QMenu *mnuFile = nullptr;
    QAction *mnuFileNew = nullptr;
    QAction *mnuFileOpen = nullptr;
    QAction *mnuFileSave = nullptr;
    QAction *mnuFileSaveAs = nullptr;
    QAction *mnuFileExit = nullptr;
    // The View items and the four right-button modes show check marks, but choosing one leaves
    // its mark alone: the item's handler sets the marks.
    QMenu *mnuView = nullptr;
    QAction *mnuViewStart = nullptr;
    QAction *mnuViewFinish = nullptr;
    QAction *mnuViewBlockPut = nullptr;
    QAction *mnuViewBlockTake = nullptr;
    QMenu *mnuLevel = nullptr;
    QAction *mnuLevelDecreaseWidth = nullptr;
    QAction *mnuLevelIncreaseWidth = nullptr;
    QAction *mnuLevelDecreaseHeight = nullptr;
    QAction *mnuLevelIncreaseHeight = nullptr;
    QAction *mnuLevelRemove = nullptr;
    QAction *mnuLevelAdd = nullptr;
    QAction *mnuLevelPrevious = nullptr;
    QAction *mnuLevelNext = nullptr;
    QMenu *mnuTools = nullptr;
    QMenu *mnuToolsMouse = nullptr;
    std::array<QAction *, 4> mnuToolsMouseChoice{};
    QAction *mnuToolsSetFloor = nullptr;
    QAction *mnuToolsEnemies = nullptr;
    QAction *mnuToolsPickups = nullptr;
    QAction *mnuToolsDoors = nullptr;
    QMenu *mnuHelp = nullptr;
    QAction *mnuHelpAbout = nullptr;
    QMenu *mnuTilePopUp = nullptr;
    QAction *mnuTilePopUpPut = nullptr;
    QAction *mnuTilePopUpTake = nullptr;
    QMenu *mnuLevelPopUp = nullptr;
    QAction *mnuLevelPopUpStart = nullptr;
    QAction *mnuLevelPopUpFinish = nullptr;
    QAction *mnuLevelPopUpPut = nullptr;
    QAction *mnuLevelPopUpTake = nullptr;

    Dialogs &dialogs() { return *dialogs_; }

    // Routines several commands share.
    void newLevelset();
    void drawLevel(std::int16_t level); // paints and presents the level view
    void updateLevelLabel();
    void loadLevel(std::int16_t &level); // places the six markers, then fills the panel
    void setStatusText(const QString &text);
    bool checkInLevel(std::int16_t x, std::int16_t y);
    void doLeftButton();
    void doRightButton(int tile);
    void saveLevelset(const QString &path);

    // frmMain.cpp
    void Form_Unload();
    void mnuFileExit_Click();
    void mnuLevelDecreaseWidth_Click();
    void mnuLevelIncreaseWidth_Click();
    void mnuLevelDecreaseHeight_Click();
    void mnuLevelIncreaseHeight_Click();
    void mnuLevelRemove_Click();
    void mnuLevelAdd_Click();
    void mnuLevelPrevious_Click();
    void mnuLevelNext_Click();
    void mnuHelpAbout_Click();

    // MainToolbar.cpp
    void tbToolBar_ButtonClick(const QString &key);

    // frmMainEditing.cpp
    void picLevel_MouseDown(Qt::MouseButton button, QPointF pos);
    void picLevel_MouseMove(Qt::MouseButtons buttons, QPointF pos);
    void picTiles_MouseDown(Qt::MouseButton button, QPointF pos);
    void mnuTilePopUpPut_Click();
    void mnuTilePopUpTake_Click();
    void mnuLevelPopUpStart_Click();
    void mnuLevelPopUpFinish_Click();
    void mnuLevelPopUpPut_Click();
    void mnuLevelPopUpTake_Click();
    void mnuViewStart_Click();
    void mnuViewFinish_Click();
    void mnuViewBlockPut_Click();
    void mnuViewBlockTake_Click();
    void mnuToolsMouseChoice_Click(std::int16_t index);
    void mnuToolsSetFloor_Click();
    void mnuToolsEnemies_Click();
    void mnuToolsPickups_Click();
    void mnuToolsDoors_Click();

    // frmMainFiles.cpp
    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void Form_QueryUnload(bool &cancel);

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Window construction: MainControls.cpp, MainMenus.cpp, MainToolbar.cpp.
    void createControls();
    void createMarkers();
    void createMenus();
    void createPopupMenus();
    void createToolbar();
    void createStatusBar();
    void giveMenuKeysToTheMenus();
    bool menuOwns(const QKeyEvent &key) const;
    QAction *addItem(QMenu *menu, const char *name, const QString &caption,
                     void (frmMain::*handler)(), const QKeySequence &shortcut = {});
    void updateClock();
    void showCurrentLevel();

    std::unique_ptr<Dialogs> ownDialogs_;
    Dialogs *dialogs_;
    QLabel *statusDate_ = nullptr;
    QLabel *statusTime_ = nullptr;
};
