#include "shell/frmMain.h"

#include "analysis/ObjectCounts.h"
#include "analysis/TileCatalogue.h"
#include "dialogs/Dialogs.h"
#include "view/CellFromPixel.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/SetFloor.h"
#include "view/TilePalette.h"
#include "view/Tileset.h"

#include <QAction>
#include <QLabel>
#include <QMenu>

// Mouse editing, the palette, the popup menus, the View items, the right-button modes,
// Set Floor and the counts.

namespace {

constexpr int CellSize = 16;

QPoint cellOrigin(int x, int y) {
    return {CellSize * x, CellSize * y};
}

// Opens a popup menu and runs the chosen item once. A platform menu triggers the item itself
// before it returns; a scripted answer only names it.
void runPopup(Dialogs &dialogs, QMenu &menu, const QPoint &globalPos) {
    bool triggered = false;
    const auto watch = QObject::connect(&menu, &QMenu::triggered, [&] { triggered = true; });
    QAction *chosen = dialogs.popup(menu, globalPos);
    QObject::disconnect(watch);
    if (chosen && !triggered)
        chosen->trigger();
}

// Flips a View item's check mark and shows or hides its markers to match.
void flipView(QAction *item, std::initializer_list<Marker *> markers) {
    item->setChecked(!item->isChecked());
    for (Marker *marker : markers)
        marker->setVisible(item->isChecked());
}

// Stores the popup cell into a position's two header bytes and moves its marker there.
void setPosition(LevelRecord &level, LevelRecord::HeaderByte xByte, std::int16_t x, std::int16_t y,
                 Marker *marker) {
    level.header[xByte] = static_cast<std::uint8_t>(x);
    level.header[xByte + 1] = static_cast<std::uint8_t>(y);
    marker->place(cellOrigin(x, y));
}

void showReport(Dialogs &dialogs, const CountReport &report) {
    dialogs.message(report.text, report.title, QMessageBox::Information, QMessageBox::Ok);
}

} // namespace

void frmMain::picLevel_MouseDown(Qt::MouseButton button, QPointF pos) {
    cursorX = cellFromPixel(pos.x());
    cursorY = cellFromPixel(pos.y());
    if (!checkInLevel(cursorX, cursorY))
        return;
    if (button == Qt::LeftButton) {
        doLeftButton();
    } else if (button == Qt::RightButton) {
        if (rightButtonMode == 0) {
            popupX = cursorX;
            popupY = cursorY;
            runPopup(dialogs(), *mnuLevelPopUp, picLevel->mapToGlobal(pos.toPoint()));
        } else {
            doRightButton(randomTiles.draw(rightButtonMode));
        }
    }
}

void frmMain::picLevel_MouseMove(Qt::MouseButtons buttons, QPointF pos) {
    const std::int16_t previousX = cursorX;
    const std::int16_t previousY = cursorY;
    cursorX = cellFromPixel(pos.x());
    cursorY = cellFromPixel(pos.y());
    // Painting happens once per cell entered, not once per movement.
    if (cursorX == previousX && cursorY == previousY)
        return;
    if (!checkInLevel(cursorX, cursorY))
        return;
    levelCursor->place(cellOrigin(cursorX, cursorY));
    if (buttons == Qt::NoButton) {
        setStatusText(QStringLiteral("X: %1, Y: %2, Tile: %3")
                          .arg(cursorX)
                          .arg(cursorY)
                          .arg(levelset.current().tile(cursorX, cursorY)));
    } else if (buttons == Qt::LeftButton) {
        doLeftButton();
    } else if (buttons == Qt::RightButton && rightButtonMode != 0) {
        doRightButton(randomTiles.draw(rightButtonMode));
    }
}

bool frmMain::checkInLevel(std::int16_t x, std::int16_t y) {
    if (levelset.current().contains(x, y))
        return true;
    setStatusText(QStringLiteral("Out of level"));
    return false;
}

// The left button writes the selected tile exactly as the right button writes a random one.
void frmMain::doLeftButton() {
    doRightButton(selectedTile);
}

void frmMain::doRightButton(int tile) {
    setStatusText(QStringLiteral("X:  %1, Y:  %2").arg(cursorX).arg(cursorY));
    levelset.current().tile(cursorX, cursorY) = static_cast<std::uint8_t>(tile);
    drawLevel(levelset.currentLevel);
}

void frmMain::picTiles_MouseDown(Qt::MouseButton button, QPointF pos) {
    const int column = cellFromPixel(pos.x());
    const int row = cellFromPixel(pos.y());
    const int id = Tileset::Columns * row + column;
    if (button == Qt::LeftButton) {
        const auto tile = static_cast<std::uint8_t>(id);
        if (isPlaceableTile(tile)) {
            selectedTile = tile;
            tileCursor->place(cellOrigin(column, row));
        }
    } else if (button == Qt::RightButton) {
        popupTile = id;
        if (isPlaceableTile(popupTile))
            runPopup(dialogs(), *mnuTilePopUp, picTiles->mapToGlobal(pos.toPoint()));
    }
    picTiles->present();
    setStatusText(QStringLiteral("Tile: %1").arg(selectedTile));
}

void frmMain::mnuTilePopUpPut_Click() {
    levelset.current().header[LevelRecord::PutType] = static_cast<std::uint8_t>(popupTile);
    shpPutType->place(Tileset::cellOrigin(popupTile));
}

void frmMain::mnuTilePopUpTake_Click() {
    levelset.current().header[LevelRecord::TakeType] = static_cast<std::uint8_t>(popupTile);
    shpTakeType->place(Tileset::cellOrigin(popupTile));
}

void frmMain::mnuLevelPopUpStart_Click() {
    setPosition(levelset.current(), LevelRecord::StartX, popupX, popupY, shpStart);
}

void frmMain::mnuLevelPopUpFinish_Click() {
    setPosition(levelset.current(), LevelRecord::FinishX, popupX, popupY, shpFinish);
}

void frmMain::mnuLevelPopUpPut_Click() {
    setPosition(levelset.current(), LevelRecord::PutX, popupX, popupY, shpPut);
}

void frmMain::mnuLevelPopUpTake_Click() {
    setPosition(levelset.current(), LevelRecord::TakeX, popupX, popupY, shpTake);
}

void frmMain::mnuViewStart_Click() {
    flipView(mnuViewStart, {shpStart});
}

void frmMain::mnuViewFinish_Click() {
    flipView(mnuViewFinish, {shpFinish});
}

void frmMain::mnuViewBlockPut_Click() {
    flipView(mnuViewBlockPut, {shpPut, shpPutType});
}

void frmMain::mnuViewBlockTake_Click() {
    flipView(mnuViewBlockTake, {shpTake, shpTakeType});
}

void frmMain::mnuToolsMouseChoice_Click(std::int16_t index) {
    if (index < 0 || index >= std::int16_t(mnuToolsMouseChoice.size()))
        return;
    rightButtonMode = index;
    // Every mark is set, so exactly one item is checked whatever the marks were before.
    for (std::size_t i = 0; i < mnuToolsMouseChoice.size(); ++i)
        mnuToolsMouseChoice[i]->setChecked(std::int16_t(i) == index);
}

void frmMain::mnuToolsSetFloor_Click() {
    setFloor(levelset.current());
    drawLevel(levelset.currentLevel);
}

void frmMain::mnuToolsEnemies_Click() {
    showReport(dialogs(), countEnemies(levelset.current()));
}

void frmMain::mnuToolsPickups_Click() {
    showReport(dialogs(), countPickups(levelset.current()));
}

void frmMain::mnuToolsDoors_Click() {
    showReport(dialogs(), countDoors(levelset.current()));
}
