// The main window as the user first sees it: caption, label, markers, check marks, geometry,
// focus order, menus, toolbar and status bar.

#include "ShellWindow.h"

#include <QFrame>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolButton>
#include <memory>

class MainWindowTest : public QObject {
    Q_OBJECT
private slots:
    void startsWithOneUntitledLevel();
    void startsWithCursorsAndPositionMarkersShown();
    void isFixedSizeWithoutMinimiseOrMaximise();
    void isCentredWhenFirstShown();
    void controlsSitAtTheirPlaces_data();
    void controlsSitAtTheirPlaces();
    void picturesHaveSunkenTwoPixelBorders();
    void hiddenTilesetLiesRightOfTheClientArea();
    void focusMovesInTheDesignedOrder();
    void menuBarReadsFileViewLevelToolsHelp();
    void menuItems_data();
    void menuItems();
    void popupMenusStayOffTheMenuBar();
    void shortcutRunsExactlyItsItem_data();
    void shortcutRunsExactlyItsItem();
    void shortcutWinsOverTheFocusedTextField_data();
    void shortcutWinsOverTheFocusedTextField();
    void checkMarksChangeOnlyThroughTheirHandlers();
    void toolbarHoldsTwelveButtonsAndThreeSeparators();
    void toolbarPicturesAreTransparentWhereGrey();
    void statusBarShowsTextDateAndTime();
};

void MainWindowTest::startsWithOneUntitledLevel() {
    ScriptedDialogs dialogs;
    const frmMain unloaded(&dialogs);
    QCOMPARE(unloaded.windowTitle(), QStringLiteral("Kestrix: Levelset Editor"));

    ShellWindow shell;
    QCOMPARE(shell.window.windowTitle(), QStringLiteral("[Untitled] - Kestrix: Levelset Editor"));
    QCOMPARE(shell.label(), QStringLiteral("Level: 1 / 1"));
    QCOMPARE(shell.window.statusText->text(), QStringLiteral("Status"));
    QCOMPARE(shell.window.selectedTile, 0);
    QCOMPARE(shell.window.rightButtonMode, 0);
    QCOMPARE(shell.levelset().currentLevel, 0);
    QCOMPARE(shell.levelset().levelCount, 1);
    // The default level is painted: 12 x 8 cells of tiles, grey beyond.
    QVERIFY(!cellIsGrey(shell.window, 11, 7));
    QVERIFY(cellIsGrey(shell.window, 12, 0));
    QVERIFY(cellIsGrey(shell.window, 0, 8));
    // The panel shows the default time.
    QCOMPARE(shell.window.panel->txtTime->text(), QStringLiteral("99"));
}

void MainWindowTest::startsWithCursorsAndPositionMarkersShown() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    frmMain &w = shell.window;

    QCOMPARE(w.tileCursor->pos(), QPoint(0, 0));
    QCOMPARE(w.levelCursor->pos(), QPoint(0, 0));
    QCOMPARE(w.shpStart->pos(), QPoint(0, 0));
    QCOMPARE(w.shpFinish->pos(), QPoint(16 * 11, 16 * 7));
    QCOMPARE(w.shpPut->pos(), QPoint(16, 0));
    QCOMPARE(w.shpTake->pos(), QPoint(32, 0));
    QCOMPARE(w.shpPutType->pos(), QPoint(16 * (89 % 8), 16 * (89 / 8)));
    QCOMPARE(w.shpTakeType->pos(), QPoint(0, 0));

    for (Marker *shown : {w.levelCursor, w.shpStart, w.shpFinish, w.tileCursor})
        QVERIFY2(shown->isVisible(), qPrintable(shown->objectName()));
    for (Marker *hidden : {w.shpPut, w.shpTake, w.shpPutType, w.shpTakeType})
        QVERIFY2(!hidden->isVisible(), qPrintable(hidden->objectName()));

    QVERIFY(w.mnuViewStart->isChecked());
    QVERIFY(w.mnuViewFinish->isChecked());
    QVERIFY(!w.mnuViewBlockPut->isChecked());
    QVERIFY(!w.mnuViewBlockTake->isChecked());
    QVERIFY(w.mnuToolsMouseChoice[0]->isChecked());
    for (int mode = 1; mode < 4; ++mode)
        QVERIFY(!w.mnuToolsMouseChoice[mode]->isChecked());

    // The cursors are drawn above the markers that share their square at start-up.
    const QObjectList onLevel = w.picLevel->children();
    QVERIFY(onLevel.indexOf(w.levelCursor) > onLevel.indexOf(w.shpStart));
    const QObjectList onPalette = w.picTiles->children();
    QVERIFY(onPalette.indexOf(w.tileCursor) > onPalette.indexOf(w.shpTakeType));

    // Level markers lie on the level view, type markers on the palette.
    for (Marker *marker : {w.levelCursor, w.shpStart, w.shpFinish, w.shpPut, w.shpTake})
        QCOMPARE(marker->parentWidget(), w.picLevel);
    for (Marker *marker : {w.tileCursor, w.shpPutType, w.shpTakeType})
        QCOMPARE(marker->parentWidget(), static_cast<QWidget *>(w.picTiles));
    QCOMPARE(w.levelCursor->colour(), QColor(255, 128, 0));
    QCOMPARE(w.shpStart->colour(), QColor(128, 255, 128));
    QCOMPARE(w.shpFinish->colour(), QColor(0, 192, 0));
    QCOMPARE(w.shpPut->colour(), w.shpPutType->colour());
    QCOMPARE(w.shpTake->colour(), w.shpTakeType->colour());
    QCOMPARE(w.shpTake->colour(), QColor(0, 0, 192));
}

void MainWindowTest::isFixedSizeWithoutMinimiseOrMaximise() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    frmMain &w = shell.window;

    QCOMPARE(w.client->size(), QSize(803, 572));
    QCOMPARE(w.client->geometry().top(), w.menuBar()->height());
    QCOMPARE(w.size(), QSize(803, w.menuBar()->height() + 572));
    QCOMPARE(w.minimumSize(), w.maximumSize());

    const QSize before = w.size();
    w.resize(1000, 800);
    QCOMPARE(w.size(), before);

    const Qt::WindowFlags flags = w.windowFlags();
    QVERIFY(!flags.testFlag(Qt::WindowMinimizeButtonHint));
    QVERIFY(!flags.testFlag(Qt::WindowMaximizeButtonHint));
    QVERIFY(flags.testFlag(Qt::WindowCloseButtonHint));
    QVERIFY(!w.windowIcon().isNull());
}

void MainWindowTest::isCentredWhenFirstShown() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    const QPoint centre = shell.window.screen()->availableGeometry().center();
    const QPoint shown = shell.window.frameGeometry().center();
    QVERIFY2((shown - centre).manhattanLength() <= 2,
             qPrintable(QStringLiteral("centre %1,%2").arg(shown.x()).arg(shown.y())));
}

void MainWindowTest::controlsSitAtTheirPlaces_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRect>("place"); // in client coordinates

    QTest::newRow("toolbar") << "tbToolBar" << QRect(0, 0, 803, 28);
    QTest::newRow("status bar") << "sbStatusBar" << QRect(0, 554, 803, 18);
    QTest::newRow("level label") << "lblLevelNum" << QRect(8, 40, 113, 17);
    QTest::newRow("level type frame") << "fraLevelType" << QRect(8, 104, 121, 81);
    QTest::newRow("normal level") << "optNormal" << QRect(16, 128, 105, 17);
    QTest::newRow("hatchery") << "optHatchery" << QRect(16, 152, 105, 17);
    QTest::newRow("alien type frame") << "fraAlienType" << QRect(8, 232, 121, 81);
    QTest::newRow("normal aliens") << "optWeak" << QRect(16, 256, 105, 17);
    QTest::newRow("strong aliens") << "optStrong" << QRect(16, 280, 105, 17);
    QTest::newRow("passcode label") << "lblPasscode" << QRect(8, 364, 57, 17);
    QTest::newRow("passcode") << "txtPasscode" << QRect(64, 360, 65, 19);
    QTest::newRow("objectives label") << "lblObjectives" << QRect(8, 388, 57, 17);
    QTest::newRow("objectives") << "txtObjectives" << QRect(64, 384, 65, 19);
    QTest::newRow("time label") << "lblTime" << QRect(8, 412, 57, 17);
    QTest::newRow("time") << "txtTime" << QRect(64, 408, 65, 19);
    QTest::newRow("level view outside") << "picLevelBorder" << QRect(136, 32, 516, 516);
    QTest::newRow("level view inside") << "picLevel" << QRect(138, 34, 512, 512);
    QTest::newRow("palette outside") << "picTilesBorder" << QRect(664, 32, 132, 516);
    QTest::newRow("palette inside") << "picTiles" << QRect(666, 34, 128, 512);
}

void MainWindowTest::controlsSitAtTheirPlaces() {
    QFETCH(QString, name);
    QFETCH(QRect, place);
    ShellWindow shell;
    QVERIFY(shell.showActive());
    const QWidget *control = shell.window.client->findChild<QWidget *>(name);
    QVERIFY2(control, qPrintable(name));
    QVERIFY(control->isVisible());
    const QPoint topLeft = control->mapTo(shell.window.client, QPoint(0, 0));
    QCOMPARE(QRect(topLeft, control->size()), place);
}

void MainWindowTest::picturesHaveSunkenTwoPixelBorders() {
    ShellWindow shell;
    for (const char *name : {"picLevelBorder", "picTilesBorder"}) {
        const auto *border = shell.window.client->findChild<QFrame *>(QLatin1StringView(name));
        QVERIFY(border);
        QCOMPARE(border->frameWidth(), 2);
        QCOMPARE(border->frameShadow(), QFrame::Sunken);
    }
}

void MainWindowTest::hiddenTilesetLiesRightOfTheClientArea() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    const QWidget *tileset = shell.window.picTileset;
    QCOMPARE(tileset->objectName(), QStringLiteral("picTileset"));
    QVERIFY(!tileset->isVisible());
    QVERIFY(tileset->x() >= shell.window.client->width());
    QCOMPARE(tileset->size(), QSize(132, 516));
}

void MainWindowTest::focusMovesInTheDesignedOrder() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    QStringList order;
    QWidget *widget = shell.window.picLevel;
    while (order.size() < 9) {
        if (widget->focusPolicy() & Qt::TabFocus)
            order.append(widget->objectName());
        widget = widget->nextInFocusChain();
        QVERIFY(widget != shell.window.picLevel);
    }
    QCOMPARE(order, (QStringList{"picLevel", "picTiles", "optNormal", "optHatchery", "optWeak",
                                 "optStrong", "txtPasscode", "txtObjectives", "txtTime"}));
}

void MainWindowTest::menuBarReadsFileViewLevelToolsHelp() {
    ShellWindow shell;
    QStringList captions;
    for (const QAction *menu : shell.window.menuBar()->actions())
        captions.append(menu->text());
    QCOMPARE(captions, (QStringList{"&File", "&View", "&Level", "&Tools", "&Help"}));
}

void MainWindowTest::menuItems_data() {
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QStringList>("names");    // in menu order, separators included
    QTest::addColumn<QStringList>("captions"); // "-" for a separator

    QTest::newRow("File") << "mnuFile" << QStringList{"mnuFileNew",  "mnuFileOpen",   "mnuFileBar0",
                                                      "mnuFileSave", "mnuFileSaveAs", "mnuFileBar1",
                                                      "mnuFileExit"}
                          << QStringList{"&New",        "&Open...", "-",    "&Save",
                                         "Save &As...", "-",        "E&xit"};
    QTest::newRow("View") << "mnuView"
                          << QStringList{"mnuViewStart", "mnuViewFinish", "mnuViewBar1",
                                         "mnuViewBlockPut", "mnuViewBlockTake"}
                          << QStringList{"&Start Position", "&Finish Position", "-",
                                         "Block to &Put", "Block to &Take"};
    QTest::newRow("Level") << "mnuLevel"
                           << QStringList{"mnuLevelDecreaseWidth",
                                          "mnuLevelIncreaseWidth",
                                          "mnuLevelDecreaseHeight",
                                          "mnuLevelIncreaseHeight",
                                          "mnuLevelBar1",
                                          "mnuLevelRemove",
                                          "mnuLevelAdd",
                                          "mnuLevelPrevious",
                                          "mnuLevelNext"}
                           << QStringList{"Decrease Width",
                                          "Increase Width",
                                          "Decrease Height",
                                          "Increase Height",
                                          "-",
                                          "&Remove a Level",
                                          "&Add a Level",
                                          "&Previous",
                                          "&Next"};
    QTest::newRow("Tools") << "mnuTools"
                           << QStringList{"mnuToolsMouse", "mnuToolsBar1",    "mnuToolsSetFloor",
                                          "mnuToolsBar2",  "mnuToolsEnemies", "mnuToolsPickups",
                                          "mnuToolsDoors"}
                           << QStringList{"Right &Mouse Button", "-",
                                          "Set &Floor",          "-",
                                          "Count &Enemies",      "Count &Pick-ups",
                                          "Count &Doors"};
    QTest::newRow("Right Mouse Button")
        << "mnuToolsMouse"
        << QStringList{"mnuToolsMouseChoice0", "mnuToolsMouseChoice1", "mnuToolsMouseChoice2",
                       "mnuToolsMouseChoice3"}
        << QStringList{"Set &Positions", "Random &Wall Tile", "Random &Inside Tile",
                       "Random &Outside Tile"};
    QTest::newRow("Help") << "mnuHelp" << QStringList{"mnuHelpAbout"} << QStringList{"&About "};
    QTest::newRow("Tile PopUp") << "mnuTilePopUp"
                                << QStringList{"mnuTilePopUpPut", "mnuTilePopUpTake"}
                                << QStringList{"Set as Block to &Put Type",
                                               "Set as Block to &Take Type"};
    QTest::newRow("Level PopUp") << "mnuLevelPopUp"
                                 << QStringList{"mnuLevelPopUpStart", "mnuLevelPopUpFinish",
                                                "mnuLevelPopUpBar1", "mnuLevelPopUpPut",
                                                "mnuLevelPopUpTake"}
                                 << QStringList{"Set as &Start Position", "Set as &Finish Position",
                                                "-", "Set as Block to &Put Position",
                                                "Set as Block to &Take Position"};
}

void MainWindowTest::menuItems() {
    QFETCH(QString, menu);
    QFETCH(QStringList, names);
    QFETCH(QStringList, captions);
    ShellWindow shell;
    const QMenu *shown = shell.window.findChild<QMenu *>(menu);
    QVERIFY2(shown, qPrintable(menu));
    QStringList actualNames;
    QStringList actualCaptions;
    for (const QAction *item : shown->actions()) {
        actualNames.append(item->objectName());
        actualCaptions.append(item->isSeparator() ? QStringLiteral("-") : item->text());
        QVERIFY(item->isEnabled());
        QVERIFY(item->isVisible());
    }
    QCOMPARE(actualNames, names);
    QCOMPARE(actualCaptions, captions);
}

void MainWindowTest::popupMenusStayOffTheMenuBar() {
    ShellWindow shell;
    const QList<QAction *> bar = shell.window.menuBar()->actions();
    QVERIFY(!bar.contains(shell.window.mnuTilePopUp->menuAction()));
    QVERIFY(!bar.contains(shell.window.mnuLevelPopUp->menuAction()));
    QCOMPARE(shell.window.mnuTilePopUp->title(), QStringLiteral("Tile PopUp"));
    QCOMPARE(shell.window.mnuLevelPopUp->title(), QStringLiteral("Level PopUp"));
}

void MainWindowTest::shortcutRunsExactlyItsItem_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");

    const Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    QTest::newRow("Ctrl+N") << "mnuFileNew" << int(Qt::Key_N) << ctrl;
    QTest::newRow("Ctrl+O") << "mnuFileOpen" << int(Qt::Key_O) << ctrl;
    QTest::newRow("Ctrl+S") << "mnuFileSave" << int(Qt::Key_S) << ctrl;
    QTest::newRow("F1") << "mnuLevelDecreaseWidth" << int(Qt::Key_F1) << none;
    QTest::newRow("F2") << "mnuLevelIncreaseWidth" << int(Qt::Key_F2) << none;
    QTest::newRow("F3") << "mnuLevelDecreaseHeight" << int(Qt::Key_F3) << none;
    QTest::newRow("F4") << "mnuLevelIncreaseHeight" << int(Qt::Key_F4) << none;
    QTest::newRow("F5") << "mnuLevelRemove" << int(Qt::Key_F5) << none;
    QTest::newRow("F6") << "mnuLevelAdd" << int(Qt::Key_F6) << none;
    QTest::newRow("F7") << "mnuLevelPrevious" << int(Qt::Key_F7) << none;
    QTest::newRow("F8") << "mnuLevelNext" << int(Qt::Key_F8) << none;
    QTest::newRow("Ctrl+F") << "mnuToolsSetFloor" << int(Qt::Key_F) << ctrl;
    QTest::newRow("Ctrl+E") << "mnuToolsEnemies" << int(Qt::Key_E) << ctrl;
    QTest::newRow("Ctrl+P") << "mnuToolsPickups" << int(Qt::Key_P) << ctrl;
    QTest::newRow("Ctrl+D") << "mnuToolsDoors" << int(Qt::Key_D) << ctrl;
    QTest::newRow("F12") << "mnuHelpAbout" << int(Qt::Key_F12) << none;
}

void MainWindowTest::shortcutRunsExactlyItsItem() {
    QFETCH(QString, item);
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    ShellWindow shell;
    QVERIFY(shell.showActive());
    // No dialog is left open by the command: the script answers No and cancels file dialogs.
    for (int i = 0; i < 4; ++i)
        shell.dialogs.messageAnswers.enqueue(QMessageBox::No);

    QList<QAction *> items = shell.window.findChildren<QAction *>();
    QList<std::shared_ptr<QSignalSpy>> spies;
    for (QAction *action : items)
        spies.append(std::make_shared<QSignalSpy>(action, &QAction::triggered));

    QTest::keyClick(&shell.window, Qt::Key(key), modifiers);

    QStringList triggered;
    for (qsizetype i = 0; i < items.size(); ++i)
        for (qsizetype n = 0; n < spies[i]->count(); ++n)
            triggered.append(items[i]->objectName());
    QCOMPARE(triggered, QStringList{item});
}

void MainWindowTest::shortcutWinsOverTheFocusedTextField_data() {
    shortcutRunsExactlyItsItem_data();
}

// A text field of the panel would take some Ctrl keys for its own editing; the menu gets them.
void MainWindowTest::shortcutWinsOverTheFocusedTextField() {
    QFETCH(QString, item);
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    ShellWindow shell;
    QVERIFY(shell.showActive());
    for (int i = 0; i < 4; ++i)
        shell.dialogs.messageAnswers.enqueue(QMessageBox::No);
    QLineEdit *time = shell.window.panel->txtTime;
    time->setFocus();
    QVERIFY(time->hasFocus());
    time->setCursorPosition(1);

    QSignalSpy triggered(shell.item(item), &QAction::triggered);
    QTest::keyClick(time, Qt::Key(key), modifiers);
    QCOMPARE(triggered.count(), 1);
}

void MainWindowTest::checkMarksChangeOnlyThroughTheirHandlers() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    frmMain &w = shell.window;

    // Each View item flips once per choice, and its markers follow the mark.
    w.mnuViewStart->trigger();
    QVERIFY(!w.mnuViewStart->isChecked());
    QVERIFY(!w.shpStart->isVisible());
    w.mnuViewBlockPut->trigger();
    QVERIFY(w.mnuViewBlockPut->isChecked());
    QVERIFY(w.shpPut->isVisible());
    QVERIFY(w.shpPutType->isVisible());
    w.mnuViewStart->trigger();
    QVERIFY(w.mnuViewStart->isChecked());
    QVERIFY(w.shpStart->isVisible());

    // Exactly one mode is checked, and choosing the checked mode keeps it checked.
    w.mnuToolsMouseChoice[2]->trigger();
    QCOMPARE(w.rightButtonMode, 2);
    w.mnuToolsMouseChoice[2]->trigger();
    QCOMPARE(w.rightButtonMode, 2);
    for (int mode = 0; mode < 4; ++mode)
        QCOMPARE(w.mnuToolsMouseChoice[mode]->isChecked(), mode == 2);
}

void MainWindowTest::toolbarHoldsTwelveButtonsAndThreeSeparators() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    const QList<QAction *> actions = shell.window.tbToolBar->actions();
    QStringList keys;
    QStringList tips;
    for (QAction *action : actions) {
        keys.append(action->isSeparator() ? QStringLiteral("-") : action->data().toString());
        tips.append(action->isSeparator() ? QStringLiteral("-") : action->toolTip());
        if (action->isSeparator())
            continue;
        QCOMPARE(action->objectName(), action->data().toString());
        QWidget *button = shell.window.tbToolBar->widgetForAction(action);
        QCOMPARE(button->size(), QSize(23, 22));
        QVERIFY(button->isVisible());
        QVERIFY2(!action->icon().isNull(), qPrintable(action->objectName()));
    }
    QCOMPARE(keys,
             (QStringList{"New", "Open", "Save", "-", "DWidth", "IWidth", "DHeight", "IHeight", "-",
                          "AddLevel", "RemoveLevel", "PreviousLevel", "NextLevel", "-", "About"}));
    QCOMPARE(tips, (QStringList{"New Levelset", "Open", "Save", "-", "Decrease Width",
                                "Increase Width", "Decrease Height", "Increase Height", "-",
                                "Add a Level", "Remove a Level", "Go to Previous Level",
                                "Go to Next Level", "-", "About"}));
    QCOMPARE(shell.window.tbToolBar->iconSize(), QSize(16, 16));
}

void MainWindowTest::toolbarPicturesAreTransparentWhereGrey() {
    ShellWindow shell;
    for (QAction *action : shell.window.tbToolBar->actions()) {
        if (action->isSeparator())
            continue;
        const QImage picture = action->icon().pixmap(16, 16).toImage();
        QCOMPARE(picture.size(), QSize(16, 16));
        int transparent = 0;
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x) {
                const QColor colour = picture.pixelColor(x, y);
                if (colour.alpha() == 0)
                    ++transparent;
                else
                    QVERIFY2(colour.rgb() != QColor(192, 192, 192).rgb(),
                             qPrintable(action->objectName()));
            }
        }
        QVERIFY2(transparent > 0, qPrintable(action->objectName()));
    }
}

void MainWindowTest::statusBarShowsTextDateAndTime() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    QStatusBar *bar = shell.window.sbStatusBar;
    const auto *date = bar->findChild<QLabel *>(QStringLiteral("statusDate"));
    const auto *time = bar->findChild<QLabel *>(QStringLiteral("statusTime"));
    QVERIFY(date && time);
    QVERIFY(date->width() >= 96);
    QVERIFY(time->width() >= 96);
    QVERIFY(date->x() > shell.window.statusText->x());
    QVERIFY(time->x() > date->x());
    // The text panel takes the width the clock panels leave.
    QVERIFY(shell.window.statusText->width() >= 803 - date->width() - time->width() - 24);
    QCOMPARE(date->text(), QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
    QVERIFY(!time->text().isEmpty());

    shell.window.setStatusText(QStringLiteral("X:  1, Y:  0"));
    QCOMPARE(shell.window.statusText->text(), QStringLiteral("X:  1, Y:  0"));
    QVERIFY(date->isVisible());
}

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
