#pragma once

#include <QString>

class frmMain;

// The rules that hold between any two user actions, whatever was done: the level count and
// the current level in range, every size within the grid, each marker where the current
// level's header puts it and shown as the View menu says, exactly one right-button mode
// checked, the title naming the levelset's path, the level label and the panel showing the
// current level. Returns the first rule broken, or "" when all hold.
QString brokenInvariant(const frmMain &window, const QString &expectedPath);
