#pragma once

#include <QWidget>

class QFrame;
class QLabel;

// The window shown while the main window is built: no caption, centred on the screen, and
// deaf to clicks and keys.
class frmSplash : public QWidget {
    Q_OBJECT
public:
    frmSplash();

    // "Linux", "Windows", ...: the platform named under the title.
    static QString platformName();

    QFrame *fraMainFrame;
    QLabel *picLogo;
    QLabel *lblProductName;
    QLabel *lblPlatform;
    QLabel *lblVersion;
    QLabel *lblCompany;
    QLabel *lblCopyright;
};
