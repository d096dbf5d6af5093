#pragma once

#include <functional>
#include <memory>

class frmMain;

// Builds the main window, hidden.
using MainWindowFactory = std::function<std::unique_ptr<frmMain>()>;

// Start-up: the splash window, then the main window built (by createMain, when given) and
// loaded while hidden, the splash closed, and the main window shown. Returns the program's one
// main window.
std::unique_ptr<frmMain> Main(const MainWindowFactory &createMain = {});
