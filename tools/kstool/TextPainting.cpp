#include "TextPainting.h"

#include <cstdio>
#include <cstdlib>

namespace {

// Without a session, Qt warns that XDG_RUNTIME_DIR is not set; kstool uses no runtime folder.
void quietStandardPathsWarning(QtMsgType type, const QMessageLogContext &, const QString &message) {
    if (!message.contains(QLatin1String("XDG_RUNTIME_DIR")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg)
        std::abort();
}

// QGuiApplication keeps a reference to argc for its whole life.
int argumentCount = 1;
char programName[] = "kstool";
char *arguments[] = {programName, nullptr};

} // namespace

std::unique_ptr<QGuiApplication> startTextPainting() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietStandardPathsWarning);
    return std::make_unique<QGuiApplication>(argumentCount, arguments);
}
