#pragma once

#include <QDialog>

class Dialogs;
class QLabel;
class QPushButton;
class SystemInfo;

// The About window: title, version, description and a button that starts the system's own
// system-information tool. OK closes it, and so do Enter and Escape.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    frmAbout(Dialogs &dialogs, SystemInfo &systemInfo, QWidget *owner);

    QLabel *picIcon;
    QLabel *lblTitle;
    QLabel *lblVersion;
    QLabel *lblDescription;
    QLabel *lblAuthor;
    QLabel *lblDisclaimer;
    QPushButton *cmdOK;
    QPushButton *cmdSysInfo;

    void cmdOK_Click();
    void cmdSysInfo_Click();
    void StartSysInfo();

    // Escape and the close box press OK.
    void reject() override;

private:
    Dialogs &dialogs_;
    SystemInfo &systemInfo_;
};
