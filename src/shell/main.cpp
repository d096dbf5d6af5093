#include "shell/Main.h"
#include "shell/frmMain.h"

#include <QApplication>

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KstEdit"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.0"));

    const std::unique_ptr<frmMain> window = Main();
    return application.exec();
}
