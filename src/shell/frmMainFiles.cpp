#include "shell/frmMain.h"

// The file commands, the close request and saveLevelset.

void frmMain::mnuFileNew_Click() {}
void frmMain::mnuFileOpen_Click() {}
void frmMain::mnuFileSave_Click() {}
void frmMain::mnuFileSaveAs_Click() {}
void frmMain::Form_QueryUnload(bool &) {}
void frmMain::saveLevelset(const QString &) {}
