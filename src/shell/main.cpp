#include "shell/Main.h"
#include "shell/VersionText.h"
#include "shell/frmMain.h"

#include <QApplication>

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KstEdit"));
    QCoreApplication::setApplicationVersion(applicationVersion());
    // The installed menu entry's name: desktops match the window to its entry and icon by it.
    QGuiApplication::setDesktopFileName(QStringLiteral("example.kstedit.KstEdit"));

    const std::unique_ptr<frmMain> window = Main();
    return application.exec();
}
