// The About window opened from the main window, its System Info button, the splash window and
// the order of start-up.

#include "shell/Main.h"
#include "shell/VersionText.h"
#include "shell/frmAbout.h"
#include "shell/frmSplash.h"
#include "support/EditorWindow.h"

#include <QFile>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

namespace {

// Runs a check on the About window while it is shown, then presses OK as the user would.
void whileAboutIsOpen(EditorWindow &e, std::function<void(frmAbout &)> check) {
    e.dialogs.onModal = [check](QDialog &dialog) {
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

// Records the showing of the splash and main windows and the end of the splash, in order.
class StartUpRecorder : public QObject {
public:
    QStringList steps;
    QString labelWhenShown;
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::Show)
            return false;
        if (watched->objectName() == "frmSplash") {
            steps.append("splash shown");
            connect(watched, &QObject::destroyed, this, [this] { steps.append("splash gone"); });
        } else if (auto *window = qobject_cast<frmMain *>(watched)) {
            steps.append("main shown");
            labelWhenShown = window->lblLevelNum->text();
        }
        return false;
    }
};

} // namespace

class AboutTest : public QObject {
    Q_OBJECT
    const QByteArray savedPath_ = qgetenv("PATH");

private slots:
    void cleanup() { qputenv("PATH", savedPath_); }

    // The window is built anew each time it opens: a second opening shows the same texts.
    void aboutShowsTitleAndVersionEveryTime() {
        EditorWindow e;
        QVERIFY(e.activate());
        QStringList seen;
        whileAboutIsOpen(e, [&](frmAbout &about) {
            seen << about.windowTitle() << about.lblTitle->text() << about.lblVersion->text();
            QCOMPARE(about.parentWidget(), &e.window);
            // Frame on frame, title bars included, once the window manager has added them.
            QTRY_VERIFY_WITH_TIMEOUT((about.windowHandle()->frameGeometry().center() -
                                      e.window.windowHandle()->frameGeometry().center())
                                             .manhattanLength() <= 2,
                                     5000);
            QVERIFY(!about.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
            QVERIFY(!about.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
            QCOMPARE(about.minimumSize(), about.maximumSize());
            QCOMPARE(about.cmdSysInfo->text(), "&System Info...");
            QCOMPARE(about.lblDescription->text(), "Levelset Editor for the game Kestrix, for the "
                                                   "TI-83, TI-83+ and TI-86 calculators.");
            QCOMPARE(about.lblDisclaimer->text(),
                     "Disclaimer: The author of this program takes no responsibility for the "
                     "effects of using this software. It has been tested and at the time of "
                     "release no known bugs were apparent.");
            QVERIFY(!about.picIcon->pixmap().isNull());
        });
        e.window.mnuHelpAbout_Click();
        e.window.mnuHelpAbout_Click();
        QCOMPARE(e.dialogs.modalCount, 2);
        const QStringList once{"About Kestrix: Levelset Editor", "Kestrix: Levelset Editor",
                               "Version 2.0"};
        QCOMPARE(seen, once + once);
    }

    void realAboutWindowBlocksUntilOK() {
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
        QCOMPARE(modalTitle, "About Kestrix: Levelset Editor");
        QVERIFY(!QApplication::activeModalWidget());
    }

    // Both keys press OK: its handler runs once and the window closes accepted.
    void enterAndEscapeCloseAbout_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Escape") << Qt::Key_Escape;
        QTest::newRow("Enter") << Qt::Key_Return;
    }
    void enterAndEscapeCloseAbout() {
        QFETCH(Qt::Key, key);
        EditorWindow e;
        int okPresses = 0;
        whileAboutIsOpen(e, [key, &okPresses](frmAbout &about) {
            QObject::connect(about.cmdOK, &QPushButton::clicked, [&okPresses] { ++okPresses; });
            QTest::keyClick(&about, key);
            QVERIFY(!about.isVisible());
            QCOMPARE(about.result(), int(QDialog::Accepted));
        });
        e.window.mnuHelpAbout_Click();
        QCOMPARE(okPresses, 1);
    }

    // System Info looks on the PATH of the moment and starts what it finds; with nothing found,
    // or a tool that will not start, it says so. About stays open either way.
    void systemInfoStartsAToolFromThePathOrSaysThereIsNone_data() {
        QTest::addColumn<bool>("emptyPath");
        QTest::addColumn<bool>("executable");
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<bool>("starts");
        const QByteArray script = "#!/bin/sh\necho started > \"$0.started\"\n";
        QTest::newRow("nothing on the path") << false << false << script << false;
        QTest::newRow("empty path") << true << true << script << false;
        QTest::newRow("hardinfo on the path") << false << true << script << true;
        QTest::newRow("a tool that will not start") << false << true << QByteArray("junk") << false;
    }
    void systemInfoStartsAToolFromThePathOrSaysThereIsNone() {
        QFETCH(bool, emptyPath);
        QFETCH(bool, executable);
        QFETCH(QByteArray, program);
        QFETCH(bool, starts);
        QTemporaryDir tools;
        QFile tool(tools.filePath("hardinfo"));
        QVERIFY(tool.open(QIODevice::WriteOnly));
        tool.write(program);
        tool.close();
        if (executable)
            QVERIFY(tool.setPermissions(tool.permissions() | QFileDevice::ExeOwner));
        qputenv("PATH", emptyPath ? QByteArray() : tools.path().toLocal8Bit());
        EditorWindow e;
        whileAboutIsOpen(e, [](frmAbout &about) {
            QTest::mouseClick(about.cmdSysInfo, Qt::LeftButton);
            QVERIFY(about.isVisible());
        });
        e.window.mnuHelpAbout_Click();

        if (starts) {
            QTRY_VERIFY(QFile::exists(tools.filePath("hardinfo.started")));
            QVERIFY(e.dialogs.messages.isEmpty());
        } else {
            QCOMPARE(e.dialogs.messages.size(), 1);
            const ScriptedDialogs::Message &shown = e.dialogs.messages.first();
            QCOMPARE(shown.text, "System Information Is Unavailable At This Time");
            QCOMPARE(shown.title, "Kestrix: Levelset Editor");
            QCOMPARE(shown.icon, QMessageBox::NoIcon);
            QCOMPARE(shown.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        }
    }

    void versionShowsMajorAndMinor_data() {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("shown");
        QTest::newRow("patch level is not shown") << "3.14.2"
                                                  << "Version 3.14";
        QTest::newRow("major only") << "4"
                                    << "Version 4.0";
    }
    void versionShowsMajorAndMinor() {
        QFETCH(QString, version);
        QFETCH(QString, shown);
        QCOMPARE(versionText(version), shown);
    }

    void splashNamesProductPlatformAndVersion() {
        frmSplash splash;
        QCOMPARE(splash.windowTitle(), QString());
        QVERIFY(splash.windowFlags().testFlag(Qt::FramelessWindowHint));
        const struct {
            QLabel *label;
            const char *text;
            qreal points;
        } bold[] = {{splash.lblProductName, "Kestrix: Levelset Editor", 18.0},
                    {splash.lblPlatform, "for Linux", 13.5},
                    {splash.lblVersion, "Version 2.0", 12.0}};
        for (const auto &line : bold) {
            QCOMPARE(line.label->text(), line.text);
            QCOMPARE(line.label->font().pointSizeF(), line.points);
            QVERIFY(line.label->font().bold());
        }
        QVERIFY(!splash.lblCompany->text().isEmpty());
        QVERIFY(!splash.lblCopyright->text().isEmpty());
        QCOMPARE(splash.picLogo->pixmap().size(), QSize(200, 134));

        splash.show();
        QVERIFY(QTest::qWaitForWindowExposed(&splash));
        const QPoint centre = splash.screen()->availableGeometry().center();
        QVERIFY((splash.frameGeometry().center() - centre).manhattanLength() <= 2);
        // Only start-up closes it.
        QTest::mouseClick(&splash, Qt::LeftButton);
        QTest::keyClick(&splash, Qt::Key_Escape);
        QTest::keyClick(&splash, Qt::Key_Return);
        QVERIFY(splash.isVisible());
    }

    // The splash is on the screen, painted, before the main window is built.
    void startUpClosesTheSplashBeforeShowingTheLoadedWindow() {
        StartUpRecorder recorder;
        qApp->installEventFilter(&recorder);
        QImage onScreen, splashPicture;
        std::unique_ptr<frmMain> window = Main([&] {
            for (QWidget *top : QApplication::topLevelWidgets())
                if (auto *splash = qobject_cast<frmSplash *>(top)) {
                    onScreen = splash->screen()
                                   ->grabWindow(0, splash->x(), splash->y(), splash->width(),
                                                splash->height())
                                   .toImage();
                    splashPicture = splash->grab().toImage();
                }
            return std::make_unique<frmMain>();
        });
        qApp->removeEventFilter(&recorder);

        QVERIFY(!splashPicture.isNull());
        QCOMPARE(onScreen.convertToFormat(QImage::Format_RGB32),
                 splashPicture.convertToFormat(QImage::Format_RGB32));
        QCOMPARE(recorder.steps, (QStringList{"splash shown", "splash gone", "main shown"}));
        QCOMPARE(recorder.labelWhenShown, "Level: 1 / 1");
        QVERIFY(window->isVisible());
        QCOMPARE(window->windowTitle(), "[Untitled] - Kestrix: Levelset Editor");
        for (QWidget *top : QApplication::topLevelWidgets())
            QVERIFY(!qobject_cast<frmSplash *>(top));
    }
};

QTEST_MAIN(AboutTest)
#include "AboutTest.moc"
