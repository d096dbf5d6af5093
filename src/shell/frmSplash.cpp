#include "shell/frmSplash.h"

#include "levelset/Levelset.h"
#include "shell/VersionText.h"

#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QSysInfo>

namespace {

QLabel *label(const char *name, const QString &text, const QRect &place, QWidget *parent,
              qreal boldPoints = 0) {
    auto *shown = new QLabel(text, parent);
    shown->setObjectName(QLatin1StringView(name));
    shown->setGeometry(place);
    shown->setWordWrap(true);
    shown->setAlignment(Qt::AlignCenter);
    if (boldPoints > 0) {
        QFont font = shown->font();
        font.setPointSizeF(boldPoints);
        font.setBold(true);
        shown->setFont(font);
    }
    return shown;
}

} // namespace

frmSplash::frmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("frmSplash"));
    setFixedSize(480, 224);

    fraMainFrame = new QFrame(this);
    fraMainFrame->setObjectName(QStringLiteral("fraMainFrame"));
    fraMainFrame->setFrameStyle(QFrame::Box | QFrame::Plain);
    fraMainFrame->setGeometry(8, 8, 464, 208);

    picLogo = label("picLogo", {}, QRect(12, 12, 200, 134), fraMainFrame);
    picLogo->setPixmap(QPixmap(QStringLiteral(":/images/splash.png")));

    lblProductName =
        label("lblProductName", ApplicationTitle, QRect(220, 8, 236, 70), fraMainFrame, 18);
    lblPlatform = label("lblPlatform", QStringLiteral("for ") + platformName(),
                        QRect(220, 82, 236, 30), fraMainFrame, 13.5);
    lblVersion = label("lblVersion", versionText(), QRect(220, 116, 236, 26), fraMainFrame, 12);
    lblCompany = label("lblCompany", QStringLiteral("The KstEdit developers"),
                       QRect(12, 154, 440, 20), fraMainFrame);
    lblCopyright =
        label("lblCopyright", QStringLiteral("Copyright \u00A9 2026 the KstEdit developers"),
              QRect(12, 178, 440, 20), fraMainFrame);

    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        QRect place = rect();
        place.moveCenter(screen->availableGeometry().center());
        move(place.topLeft());
    }
}

QString frmSplash::platformName() {
#if defined(Q_OS_WIN)
    return QStringLiteral("Windows");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("macOS");
#elif defined(Q_OS_LINUX)
    return QStringLiteral("Linux");
#else
    return QSysInfo::kernelType();
#endif
}
