#include "shell/frmMain.h"

// Mouse editing, the palette, the popup menus, the View items, the right-button modes,
// Set Floor and the counts.

void frmMain::picLevel_MouseDown(Qt::MouseButton, QPointF) {}
void frmMain::picLevel_MouseMove(Qt::MouseButtons, QPointF) {}
void frmMain::picTiles_MouseDown(Qt::MouseButton, QPointF) {}
bool frmMain::checkInLevel(std::int16_t, std::int16_t) {
    return false;
}
void frmMain::doLeftButton() {}
void frmMain::doRightButton(int) {}
void frmMain::mnuTilePopUpPut_Click() {}
void frmMain::mnuTilePopUpTake_Click() {}
void frmMain::mnuLevelPopUpStart_Click() {}
void frmMain::mnuLevelPopUpFinish_Click() {}
void frmMain::mnuLevelPopUpPut_Click() {}
void frmMain::mnuLevelPopUpTake_Click() {}
void frmMain::mnuViewStart_Click() {}
void frmMain::mnuViewFinish_Click() {}
void frmMain::mnuViewBlockPut_Click() {}
void frmMain::mnuViewBlockTake_Click() {}
void frmMain::mnuToolsMouseChoice_Click(std::int16_t) {}
void frmMain::mnuToolsSetFloor_Click() {}
void frmMain::mnuToolsEnemies_Click() {}
void frmMain::mnuToolsPickups_Click() {}
void frmMain::mnuToolsDoors_Click() {}
