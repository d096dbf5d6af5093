#pragma once

#include <memory>

class frmMain;

// Start-up: the splash window, then the main window built and loaded while hidden, the splash
// closed, and the main window shown. Returns the program's one main window.
std::unique_ptr<frmMain> Main();
