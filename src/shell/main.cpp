#include "shell/Main.h"
#include "shell/VersionText.h"
#include "shell/frmMain.h"

#include <QApplication>

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KstEdit"));
    QCoreApplication::setApplicationVersion(applicationVersion());

    const std::unique_ptr<frmMain> window = Main();
    return application.exec();
}
