// The About window opened from the main window, its System Info button, the splash window and
// the order of start-up.

#include "ShellWindow.h"
#include "shell/Main.h"
#include "shell/VersionText.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"

#include <QFile>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

class AboutTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void aboutShowsTitleAndVersionEveryTime();
    void aboutIsOwnedByTheMainWindow();
    void realAboutWindowBlocksUntilOK();
    void okEnterAndEscapeCloseAbout_data();
    void okEnterAndEscapeCloseAbout();
    void systemInfoWithoutAToolReportsAndKeepsAboutOpen();
    void systemInfoStartsTheToolFoundOnThePath();
    void versionShowsMajorAndMinor_data();
    void versionShowsMajorAndMinor();
    void splashNamesProductPlatformAndVersion();
    void startUpClosesTheSplashBeforeShowingTheLoadedWindow();

private:
    QByteArray savedPath_ = qgetenv("PATH");
};

namespace {

// Makes an executable shell script in the folder.
bool putScript(const QString &path, const QByteArray &body) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("#!/bin/sh\n" + body + "\n");
    file.close();
    return file.setPermissions(file.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeUser);
}

// Runs a check on the About window while it is shown, then presses OK the way the user would.
void whileAboutIsOpen(ShellWindow &shell, std::function<void(frmAbout &)> check) {
    shell.dialogs.onModal = [check](QDialog &dialog) {
        auto *about = qobject_cast<frmAbout *>(&dialog);
        QVERIFY(about);
        about->show();
        QVERIFY(QTest::qWaitForWindowExposed(about));
        check(*about);
        if (about->isVisible())
            QTest::mouseClick(about->cmdOK, Qt::LeftButton);
        QVERIFY(!about->isVisible());
    };
}

// Records, in order, the showing of the splash and main windows and the end of the splash.
class StartUpRecorder : public QObject {
public:
    QStringList steps;
    QString labelWhenShown;
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Show && watched->isWidgetType()) {
            const QString name = watched->objectName();
            if (name == QLatin1String("frmSplash")) {
                steps.append(QStringLiteral("splash shown"));
                connect(watched, &QObject::destroyed, this,
                        [this] { steps.append(QStringLiteral("splash destroyed")); });
            }
            if (name == QLatin1String("frmMain")) {
                steps.append(QStringLiteral("main shown"));
                labelWhenShown = static_cast<frmMain *>(watched)->lblLevelNum->text();
            }
        }
        return false;
    }
};

} // namespace

void AboutTest::initTestCase() {
    QCoreApplication::setApplicationVersion(QStringLiteral("2.0"));
}

void AboutTest::cleanup() {
    qputenv("PATH", savedPath_);
    QCoreApplication::setApplicationVersion(QStringLiteral("2.0"));
}

void AboutTest::aboutShowsTitleAndVersionEveryTime() {
    ShellWindow shell;
    QStringList seen;
    whileAboutIsOpen(shell, [&seen](frmAbout &about) {
        seen << about.windowTitle() << about.lblTitle->text() << about.lblVersion->text();
    });
    shell.window.mnuHelpAbout_Click();
    shell.window.mnuHelpAbout_Click();
    QCOMPARE(shell.dialogs.modalCount, 2);
    const QStringList once{"About Kestrix: Levelset Editor", "Kestrix: Levelset Editor",
                           "Version 2.0"};
    QCOMPARE(seen, once + once);
}

void AboutTest::aboutIsOwnedByTheMainWindow() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    whileAboutIsOpen(shell, [&shell](frmAbout &about) {
        QCOMPARE(about.parentWidget(), &shell.window);
        const QPoint offCentre = about.geometry().center() - shell.window.frameGeometry().center();
        QVERIFY2(offCentre.manhattanLength() <= 16,
                 qPrintable(QStringLiteral("%1,%2").arg(offCentre.x()).arg(offCentre.y())));
        QVERIFY(!about.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
        QVERIFY(!about.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
        QCOMPARE(about.minimumSize(), about.maximumSize());
        QCOMPARE(about.cmdSysInfo->text(), QStringLiteral("&System Info..."));
        QVERIFY(about.lblDescription->text().startsWith(QStringLiteral("Levelset Editor for")));
        QVERIFY(about.lblDisclaimer->text().startsWith(QStringLiteral("Disclaimer: ")));
        QVERIFY(!about.picIcon->pixmap().isNull());
    });
    shell.window.mnuHelpAbout_Click();
    QCOMPARE(shell.dialogs.modalCount, 1);
}

void AboutTest::realAboutWindowBlocksUntilOK() {
    frmMain window; // the platform's own modal windows
    window.Form_Load();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QString modalTitle;
    QTimer closer;
    connect(&closer, &QTimer::timeout, [&] {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *about = qobject_cast<frmAbout *>(modal)) {
            modalTitle = about->windowTitle();
            QTest::mouseClick(about->cmdOK, Qt::LeftButton);
        } else if (modal) {
            modal->close();
        }
    });
    closer.start(50);
    window.mnuHelpAbout_Click();
    closer.stop();
    QCOMPARE(modalTitle, QStringLiteral("About Kestrix: Levelset Editor"));
    QVERIFY(!QApplication::activeModalWidget());
}

void AboutTest::okEnterAndEscapeCloseAbout_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Enter") << int(Qt::Key_Return);
}

void AboutTest::okEnterAndEscapeCloseAbout() {
    QFETCH(int, key);
    ShellWindow shell;
    int okPresses = 0;
    whileAboutIsOpen(shell, [key, &okPresses](frmAbout &about) {
        QObject::connect(about.cmdOK, &QPushButton::clicked, [&okPresses] { ++okPresses; });
        QTest::keyClick(&about, Qt::Key(key));
        QVERIFY(!about.isVisible());
        QCOMPARE(about.result(), int(QDialog::Accepted));
    });
    shell.window.mnuHelpAbout_Click();
    QCOMPARE(okPresses, 1);
}

void AboutTest::systemInfoWithoutAToolReportsAndKeepsAboutOpen() {
    QTemporaryDir empty;
    qputenv("PATH", empty.path().toLocal8Bit());
    ShellWindow shell;
    whileAboutIsOpen(shell, [&shell](frmAbout &about) {
        QTest::mouseClick(about.cmdSysInfo, Qt::LeftButton);
        QVERIFY(about.isVisible());
        QCOMPARE(shell.dialogs.messages.size(), 1);
        const ScriptedDialogs::Message &shown = shell.dialogs.messages.first();
        QCOMPARE(shown.text, QStringLiteral("System Information Is Unavailable At This Time"));
        QCOMPARE(shown.title, QStringLiteral("Kestrix: Levelset Editor"));
        QCOMPARE(shown.icon, QMessageBox::NoIcon);
        QCOMPARE(shown.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    });
    shell.window.mnuHelpAbout_Click();
}

void AboutTest::systemInfoStartsTheToolFoundOnThePath() {
    QTemporaryDir tools;
    const QString started = tools.filePath(QStringLiteral("started"));
    QVERIFY(putScript(tools.filePath(QStringLiteral("hardinfo")),
                      "echo started > '" + started.toLocal8Bit() + "'"));
    qputenv("PATH", tools.path().toLocal8Bit());
    ShellWindow shell;
    whileAboutIsOpen(shell, [](frmAbout &about) {
        QTest::mouseClick(about.cmdSysInfo, Qt::LeftButton);
        QVERIFY(about.isVisible());
    });
    shell.window.mnuHelpAbout_Click();
    QTRY_VERIFY(QFile::exists(started));
    QVERIFY(shell.dialogs.messages.isEmpty());
}

void AboutTest::versionShowsMajorAndMinor_data() {
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("shown");
    QTest::newRow("release") << "2.0"
                             << "Version 2.0";
    QTest::newRow("patch level is not shown") << "3.14.2"
                                              << "Version 3.14";
    QTest::newRow("major only") << "4"
                                << "Version 4.0";
}

void AboutTest::versionShowsMajorAndMinor() {
    QFETCH(QString, version);
    QFETCH(QString, shown);
    QCoreApplication::setApplicationVersion(version);
    QCOMPARE(versionText(), shown);
}

void AboutTest::splashNamesProductPlatformAndVersion() {
    frmSplash splash;
    QCOMPARE(splash.windowTitle(), QString());
    QVERIFY(splash.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(splash.lblProductName->text(), QStringLiteral("Kestrix: Levelset Editor"));
    QCOMPARE(splash.lblVersion->text(), QStringLiteral("Version 2.0"));
    QCOMPARE(splash.lblPlatform->text(), QStringLiteral("for Linux"));
    QCOMPARE(splash.lblProductName->font().pointSizeF(), 18.0);
    QCOMPARE(splash.lblPlatform->font().pointSizeF(), 13.5);
    QCOMPARE(splash.lblVersion->font().pointSizeF(), 12.0);
    for (QLabel *bold : {splash.lblProductName, splash.lblPlatform, splash.lblVersion})
        QVERIFY(bold->font().bold());
    QVERIFY(!splash.lblCompany->text().isEmpty());
    QVERIFY(!splash.lblCopyright->text().isEmpty());
    QCOMPARE(splash.picLogo->pixmap().size(), QSize(200, 134));

    splash.show();
    QVERIFY(QTest::qWaitForWindowExposed(&splash));
    const QPoint centre = splash.screen()->availableGeometry().center();
    QVERIFY((splash.frameGeometry().center() - centre).manhattanLength() <= 2);

    // Clicks and keys do not close it: only start-up does.
    QTest::mouseClick(&splash, Qt::LeftButton);
    QTest::keyClick(&splash, Qt::Key_Escape);
    QTest::keyClick(&splash, Qt::Key_Return);
    QVERIFY(splash.isVisible());
}

void AboutTest::startUpClosesTheSplashBeforeShowingTheLoadedWindow() {
    StartUpRecorder recorder;
    qApp->installEventFilter(&recorder);
    std::unique_ptr<frmMain> window = Main();
    qApp->removeEventFilter(&recorder);

    QCOMPARE(recorder.steps, (QStringList{"splash shown", "splash destroyed", "main shown"}));
    QCOMPARE(recorder.labelWhenShown, QStringLiteral("Level: 1 / 1"));
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowTitle(), QStringLiteral("[Untitled] - Kestrix: Levelset Editor"));
    QVERIFY(!qApp->findChild<frmSplash *>());
    for (QWidget *top : QApplication::topLevelWidgets())
        QVERIFY(!qobject_cast<frmSplash *>(top));
}

QTEST_MAIN(AboutTest)
#include "AboutTest.moc"
