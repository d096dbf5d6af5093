#include "shell/VersionText.h"

#include <QVersionNumber>

QString applicationVersion() {
    return QStringLiteral(KST_VERSION);
}

QString versionText(const QString &version) {
    const QVersionNumber number = QVersionNumber::fromString(version);
    return QStringLiteral("Version %1.%2").arg(number.majorVersion()).arg(number.minorVersion());
}
