#include "shell/frmAbout.h"

#include "dialogs/Dialogs.h"
#include "levelset/Levelset.h"
#include "shell/Centring.h"
#include "shell/SystemInfo.h"
#include "shell/VersionText.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QWindow>

namespace {

QLabel *label(const char *name, const QString &text, const QRect &place, QWidget *parent) {
    auto *shown = new QLabel(text, parent);
    shown->setObjectName(QLatin1StringView(name));
    shown->setGeometry(place);
    shown->setWordWrap(place.height() > 24);
    shown->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return shown;
}

// One of the two lines of the etched separator.
void etchLine(const QRect &place, const QColor &colour, QWidget *parent) {
    auto *line = new QFrame(parent);
    line->setObjectName(QStringLiteral("Line1"));
    line->setGeometry(place);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, colour);
    line->setPalette(palette);
}

} // namespace

frmAbout::frmAbout(Dialogs &dialogs, SystemInfo &systemInfo, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                         Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                         Qt::MSWindowsFixedSizeDialogHint),
      dialogs_(dialogs), systemInfo_(systemInfo) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Kestrix: Levelset Editor"));
    setFixedSize(440, 256);

    picIcon = label("picIcon", {}, QRect(16, 16, 32, 32), this);
    picIcon->setPixmap(QPixmap(QStringLiteral(":/images/icon32.png")));

    lblTitle = label("lblTitle", ApplicationTitle, QRect(72, 16, 352, 22), this);
    QFont bold = lblTitle->font();
    bold.setBold(true);
    lblTitle->setFont(bold);
    lblVersion = label("lblVersion", versionText(), QRect(72, 42, 352, 17), this);
    lblDescription = label("lblDescription",
                           QStringLiteral("Levelset Editor for the game Kestrix, for the TI-83, "
                                          "TI-83+ and TI-86 calculators."),
                           QRect(72, 68, 352, 34), this);
    lblAuthor = label("lblAuthor", QStringLiteral("Written by the KstEdit developers."),
                      QRect(72, 108, 352, 17), this);

    etchLine(QRect(8, 140, 424, 1), QColor(128, 128, 128), this);
    etchLine(QRect(8, 141, 424, 1), QColor(255, 255, 255), this);

    lblDisclaimer =
        label("lblDisclaimer",
              QStringLiteral("Disclaimer: The author of this program takes no responsibility for "
                             "the effects of using this software. It has been tested and at the "
                             "time of release no known bugs were apparent."),
              QRect(16, 156, 296, 88), this);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(328, 160, 100, 26);
    cmdOK->setDefault(true);
    cmdSysInfo = new QPushButton(QStringLiteral("&System Info..."), this);
    cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    cmdSysInfo->setGeometry(328, 196, 100, 26);

    if (owner)
        new Centring(*this, [owner] {
            return owner->windowHandle() ? owner->windowHandle()->frameGeometry()
                                         : owner->frameGeometry();
        });

    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
}

void frmAbout::cmdOK_Click() {
    done(QDialog::Accepted);
}

void frmAbout::cmdSysInfo_Click() {
    StartSysInfo();
}

void frmAbout::reject() {
    cmdOK->click();
}

void frmAbout::StartSysInfo() {
    const QString path = systemInfo_.toolPath();
    if (!path.isEmpty() && systemInfo_.start(path))
        return;
    dialogs_.message(QStringLiteral("System Information Is Unavailable At This Time"),
                     ApplicationTitle, QMessageBox::NoIcon, QMessageBox::Ok);
}
