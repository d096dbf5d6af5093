#include "shell/VersionText.h"

#include <QCoreApplication>
#include <QVersionNumber>

QString versionText() {
    const QVersionNumber version =
        QVersionNumber::fromString(QCoreApplication::applicationVersion());
    return QStringLiteral("Version %1.%2").arg(version.majorVersion()).arg(version.minorVersion());
}
