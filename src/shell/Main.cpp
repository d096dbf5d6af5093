#include "shell/Main.h"

#include "shell/frmMain.h"
#include "shell/frmSplash.h"

#include <QCoreApplication>

std::unique_ptr<frmMain> Main() {
    auto splash = std::make_unique<frmSplash>();
    splash->show();
    splash->repaint();
    // Let the window system map and draw the splash before the main window is built.
    QCoreApplication::processEvents();

    auto main = std::make_unique<frmMain>();
    main->Form_Load();

    splash->close();
    splash.reset();

    main->show();
    return main;
}
