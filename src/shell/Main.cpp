#include "shell/Main.h"

#include "shell/frmMain.h"
#include "shell/frmSplash.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <QWindow>

namespace {

// Longest wait for the window system to put the splash on the screen.
constexpr int SplashWaitMs = 2000;

// Shows the splash and waits until it is on the screen and painted. A window manager maps a
// window only after a few round trips, so one pass of the event loop may leave it unmapped.
void showOnScreen(frmSplash &splash) {
    splash.show();
    QTimer wake; // the wait for events below returns at least this often
    wake.start(10);
    const QDeadlineTimer deadline(SplashWaitMs);
    while (!splash.windowHandle()->isExposed() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    splash.repaint();
    // Hands the painted pixels to the window system before the main window's build holds the
    // event loop up.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

std::unique_ptr<frmMain> Main(const MainWindowFactory &createMain) {
    auto splash = std::make_unique<frmSplash>();
    showOnScreen(*splash);

    std::unique_ptr<frmMain> main = createMain ? createMain() : std::make_unique<frmMain>();
    main->Form_Load();

    splash->close();
    splash.reset();

    main->show();
    return main;
}
