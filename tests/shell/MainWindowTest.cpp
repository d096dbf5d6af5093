// The main window as the user first sees it: caption, label, markers, geometry, focus order,
// menus, shortcuts, toolbar and status bar.

#include "support/EditorWindow.h"

#include <QFrame>
#include <QMenuBar>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolBar>
#include <memory>

class MainWindowTest : public QObject {
    Q_OBJECT
private slots:
    void startsWithOneUntitledLevelAndItsMarkers() {
        ScriptedDialogs dialogs;
        QCOMPARE(frmMain(&dialogs).windowTitle(), "Kestrix: Levelset Editor"); // before Form_Load
        EditorWindow e;
        frmMain &w = e.window;
        QCOMPARE(e.title(), "[Untitled] - Kestrix: Levelset Editor");
        QCOMPARE(e.label(), "Level: 1 / 1");
        QCOMPARE(e.status(), "Status");
        QCOMPARE(w.selectedTile, 0);
        QCOMPARE(w.levelset.levelCount, 1);
        QCOMPARE(w.levelset.currentLevel, 0);
        QCOMPARE(w.panel->txtTime->text(), "99");
        QVERIFY(!e.cellIsGrey(11, 7)); // the default level is 12 x 8
        QVERIFY(e.cellIsGrey(12, 0));
        QVERIFY(e.cellIsGrey(0, 8));

        const struct {
            Marker *marker;
            QWidget *surface;
            QPoint pos;
            bool shown;
        } markers[] = {{w.levelCursor, w.picLevel, {0, 0}, true},
                       {w.shpStart, w.picLevel, {0, 0}, true},
                       {w.shpFinish, w.picLevel, {176, 112}, true},
                       {w.shpPut, w.picLevel, {16, 0}, false},
                       {w.shpTake, w.picLevel, {32, 0}, false},
                       {w.tileCursor, w.picTiles, {0, 0}, true},
                       {w.shpPutType, w.picTiles, EditorWindow::paletteCell(89), false},
                       {w.shpTakeType, w.picTiles, {0, 0}, false}};
        for (const auto &m : markers) {
            QCOMPARE(m.marker->parentWidget(), m.surface);
            QCOMPARE(m.marker->pos(), m.pos);
            QCOMPARE(m.marker->isVisible(), m.shown);
        }
        QCOMPARE(w.levelCursor->colour(), QColor(255, 128, 0));
        QCOMPARE(w.shpStart->colour(), QColor(128, 255, 128));
        QCOMPARE(w.shpFinish->colour(), QColor(0, 192, 0));
        QCOMPARE(w.shpTake->colour(), QColor(0, 0, 192));
        QCOMPARE(w.shpPut->colour(), w.shpPutType->colour());
        QCOMPARE(w.shpTake->colour(), w.shpTakeType->colour());
        // The cursors share their square with other markers at start-up and must stay on top.
        QVERIFY(w.picLevel->children().indexOf(w.levelCursor) >
                w.picLevel->children().indexOf(w.shpStart));
        QVERIFY(w.picTiles->children().indexOf(w.tileCursor) >
                w.picTiles->children().indexOf(w.shpTakeType));
    }

    void isFixedSizeCentredAndFramed() {
        EditorWindow e;
        QVERIFY(e.activate());
        frmMain &w = e.window;
        QCOMPARE(w.client->size(), QSize(803, 572));
        QCOMPARE(w.client->geometry().top(), w.menuBar()->height());
        QCOMPARE(w.size(), QSize(803, w.menuBar()->height() + 572));
        w.resize(1000, 800);
        QCOMPARE(w.size(), QSize(803, w.menuBar()->height() + 572));
        QCOMPARE(w.minimumSize(), w.maximumSize());
        QVERIFY(!w.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
        QVERIFY(!w.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
        QVERIFY(w.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QVERIFY(!w.windowIcon().isNull());
        // A window manager frames the window after it is shown; it is centred again then.
        const auto offCentre = [&] {
            return (w.frameGeometry().center() - w.screen()->availableGeometry().center())
                .manhattanLength();
        };
        QTRY_VERIFY2_WITH_TIMEOUT(offCentre() <= 2, qPrintable(QString::number(offCentre())), 5000);

        for (const char *name : {"picLevelBorder", "picTilesBorder"}) {
            const auto *border = w.client->findChild<QFrame *>(QLatin1StringView(name));
            QVERIFY(border);
            QCOMPARE(border->frameWidth(), 2);
            QCOMPARE(border->frameShadow(), QFrame::Sunken);
        }
        QCOMPARE(w.picTileset->objectName(), "picTileset");
        QVERIFY(!w.picTileset->isVisible());
        QVERIFY(w.picTileset->x() >= w.client->width());
        QCOMPARE(w.picTileset->size(), QSize(132, 516));
    }

    void controlsSitAtTheirPlaces_data() {
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
    void controlsSitAtTheirPlaces() {
        QFETCH(QString, name);
        QFETCH(QRect, place);
        EditorWindow e;
        const QWidget *control = e.window.client->findChild<QWidget *>(name);
        QVERIFY(control);
        QVERIFY(control->isVisible());
        QCOMPARE(QRect(control->mapTo(e.window.client, QPoint(0, 0)), control->size()), place);
    }

    void focusMovesInTheDesignedOrder() {
        EditorWindow e;
        QStringList order;
        QWidget *widget = e.window.picLevel;
        while (order.size() < 9) {
            if (widget->focusPolicy() & Qt::TabFocus)
                order.append(widget->objectName());
            widget = widget->nextInFocusChain();
            QVERIFY(widget != e.window.picLevel);
        }
        QCOMPARE(order, (QStringList{"picLevel", "picTiles", "optNormal", "optHatchery", "optWeak",
                                     "optStrong", "txtPasscode", "txtObjectives", "txtTime"}));
    }

    // The menu and then its items, each as "objectName caption" ("-" for a separator), joined
    // by "|"; the menu's place on the menu bar, -1 for a submenu or a popup menu.
    void menus_data() {
        QTest::addColumn<int>("onBar");
        QTest::addColumn<QString>("items");
        QTest::newRow("File")
            << 0
            << "mnuFile &File|mnuFileNew &New|mnuFileOpen &Open...|mnuFileBar0 -|"
               "mnuFileSave &Save|mnuFileSaveAs Save &As...|mnuFileBar1 -|mnuFileExit E&xit";
        QTest::newRow("View")
            << 1
            << "mnuView &View|mnuViewStart &Start Position|mnuViewFinish &Finish Position|"
               "mnuViewBar1 -|mnuViewBlockPut Block to &Put|mnuViewBlockTake Block to &Take";
        QTest::newRow("Level")
            << 2
            << "mnuLevel &Level|mnuLevelDecreaseWidth Decrease Width|"
               "mnuLevelIncreaseWidth Increase Width|mnuLevelDecreaseHeight Decrease Height|"
               "mnuLevelIncreaseHeight Increase Height|mnuLevelBar1 -|"
               "mnuLevelRemove &Remove a Level|mnuLevelAdd &Add a Level|"
               "mnuLevelPrevious &Previous|mnuLevelNext &Next";
        QTest::newRow("Tools")
            << 3
            << "mnuTools &Tools|mnuToolsMouse Right &Mouse Button|mnuToolsBar1 -|"
               "mnuToolsSetFloor Set &Floor|mnuToolsBar2 -|mnuToolsEnemies Count &Enemies|"
               "mnuToolsPickups Count &Pick-ups|mnuToolsDoors Count &Doors";
        QTest::newRow("Right Mouse Button")
            << -1
            << "mnuToolsMouse Right &Mouse Button|mnuToolsMouseChoice0 Set &Positions|"
               "mnuToolsMouseChoice1 Random &Wall Tile|"
               "mnuToolsMouseChoice2 Random &Inside Tile|"
               "mnuToolsMouseChoice3 Random &Outside Tile";
        QTest::newRow("Help") << 4 << "mnuHelp &Help|mnuHelpAbout &About ";
        QTest::newRow("Tile PopUp")
            << -1
            << "mnuTilePopUp Tile PopUp|mnuTilePopUpPut Set as Block to &Put Type|"
               "mnuTilePopUpTake Set as Block to &Take Type";
        QTest::newRow("Level PopUp")
            << -1
            << "mnuLevelPopUp Level PopUp|mnuLevelPopUpStart Set as &Start Position|"
               "mnuLevelPopUpFinish Set as &Finish Position|mnuLevelPopUpBar1 -|"
               "mnuLevelPopUpPut Set as Block to &Put Position|"
               "mnuLevelPopUpTake Set as Block to &Take Position";
    }
    void menus() {
        QFETCH(int, onBar);
        QFETCH(QString, items);
        EditorWindow e;
        const QStringList expected = items.split('|');
        const QMenu *shown = e.window.findChild<QMenu *>(expected[0].section(' ', 0, 0));
        QVERIFY(shown);
        QStringList actual{shown->objectName() + ' ' + shown->title()};
        for (const QAction *item : shown->actions()) {
            actual.append(item->objectName() + ' ' + (item->isSeparator() ? "-" : item->text()));
            QVERIFY(item->isEnabled() && item->isVisible());
        }
        QCOMPARE(actual, expected);
        QCOMPARE(e.window.menuBar()->actions().size(), 5);
        QCOMPARE(e.window.menuBar()->actions().indexOf(shown->menuAction()), onBar);
    }

    // Each key runs exactly its item whichever control has the focus, also a panel field whose
    // platform key bindings give the key an editing meaning (on X11 Ctrl+E ends the line).
    void shortcutRunsExactlyItsItem_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("focus");
        const std::pair<const char *, const char *> items[] = {{"Ctrl+N", "mnuFileNew"},
                                                               {"Ctrl+O", "mnuFileOpen"},
                                                               {"Ctrl+S", "mnuFileSave"},
                                                               {"F1", "mnuLevelDecreaseWidth"},
                                                               {"F2", "mnuLevelIncreaseWidth"},
                                                               {"F3", "mnuLevelDecreaseHeight"},
                                                               {"F4", "mnuLevelIncreaseHeight"},
                                                               {"F5", "mnuLevelRemove"},
                                                               {"F6", "mnuLevelAdd"},
                                                               {"F7", "mnuLevelPrevious"},
                                                               {"F8", "mnuLevelNext"},
                                                               {"Ctrl+F", "mnuToolsSetFloor"},
                                                               {"Ctrl+E", "mnuToolsEnemies"},
                                                               {"Ctrl+P", "mnuToolsPickups"},
                                                               {"Ctrl+D", "mnuToolsDoors"},
                                                               {"F12", "mnuHelpAbout"}};
        for (const char *focus : {"picLevel", "txtPasscode", "txtObjectives", "txtTime"})
            for (const auto &[key, item] : items)
                QTest::addRow("%s in %s", key, focus) << key << item << focus;
    }
    void shortcutRunsExactlyItsItem() {
        QFETCH(QString, key);
        QFETCH(QString, item);
        QFETCH(QString, focus);
        EditorWindow e;
        e.window.mnuLevelAdd_Click();
        e.window.mnuLevelNext_Click(); // the passcode field is enabled from level 2 on
        QVERIFY(e.activate());
        e.answer({QMessageBox::No});
        QList<QAction *> actions = e.window.findChildren<QAction *>();
        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (QAction *action : actions)
            spies.push_back(std::make_unique<QSignalSpy>(action, &QAction::triggered));
        auto *control = e.window.client->findChild<QWidget *>(focus);
        control->setFocus();
        QVERIFY(control->hasFocus());
        if (auto *field = qobject_cast<QLineEdit *>(control))
            field->setCursorPosition(1);

        QTest::keySequence(control, QKeySequence(key));

        QStringList triggered;
        for (qsizetype i = 0; i < actions.size(); ++i)
            for (qsizetype n = 0; n < spies[i]->count(); ++n)
                triggered.append(actions[i]->objectName());
        QCOMPARE(triggered, QStringList{item});
    }

    // The keys of a field's own editing, which no menu item owns, stay the field's.
    void fieldsKeepTheirEditingKeys_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text"); // the passcode field's, from "abc" with the caret last
        QTest::newRow("Home, Delete") << "Home, Del"
                                      << "bc";
        QTest::newRow("Left, Backspace") << "Left, Backspace"
                                         << "ac";
        QTest::newRow("Home, Right, Delete") << "Home, Right, Del"
                                             << "ac";
        QTest::newRow("select all, Delete") << "Ctrl+A, Del"
                                            << "";
        QTest::newRow("copy, End, paste") << "Ctrl+A, Ctrl+C, End, Ctrl+V"
                                          << "abcab";
        QTest::newRow("cut, paste twice") << "Ctrl+A, Ctrl+X, Ctrl+V, Ctrl+V"
                                          << "abcab";
    }
    void fieldsKeepTheirEditingKeys() {
        QFETCH(QString, keys);
        QFETCH(QString, text);
        EditorWindow e;
        e.window.mnuLevelAdd_Click();
        e.window.mnuLevelNext_Click();
        QVERIFY(e.activate());
        QLineEdit *passcode = e.window.panel->txtPasscode;
        passcode->setFocus();
        passcode->setText("abc");
        QTest::keySequence(passcode, QKeySequence(keys));
        QCOMPARE(passcode->text(), text);
        QVERIFY(e.dialogs.messages.isEmpty());
    }

    void toolbarShowsTwelveButtonsWithTransparentPictures() {
        EditorWindow e;
        QStringList buttons; // key and tooltip
        for (QAction *action : e.window.tbToolBar->actions()) {
            buttons.append(
                action->isSeparator() ? "-" : action->data().toString() + ' ' + action->toolTip());
            if (action->isSeparator())
                continue;
            QCOMPARE(action->objectName(), action->data().toString());
            QWidget *button = e.window.tbToolBar->widgetForAction(action);
            QCOMPARE(button->size(), QSize(23, 22));
            QVERIFY(button->isVisible());
            // Grey (192, 192, 192) is the pictures' transparent colour.
            const QImage picture = action->icon().pixmap(16, 16).toImage();
            QCOMPARE(picture.size(), QSize(16, 16));
            int transparent = 0;
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x) {
                    const QColor colour = picture.pixelColor(x, y);
                    transparent += colour.alpha() == 0;
                    QVERIFY(colour.alpha() == 0 || colour.rgb() != QColor(192, 192, 192).rgb());
                }
            QVERIFY2(transparent > 0, qPrintable(action->objectName()));
        }
        QCOMPARE(buttons, (QStringList{"New New Levelset", "Open Open", "Save Save", "-",
                                       "DWidth Decrease Width", "IWidth Increase Width",
                                       "DHeight Decrease Height", "IHeight Increase Height", "-",
                                       "AddLevel Add a Level", "RemoveLevel Remove a Level",
                                       "PreviousLevel Go to Previous Level",
                                       "NextLevel Go to Next Level", "-", "About About"}));
        QCOMPARE(e.window.tbToolBar->iconSize(), QSize(16, 16));
    }

    void statusBarShowsTextDateAndTime() {
        EditorWindow e;
        QVERIFY(e.activate());
        const QLabel *text = e.window.statusText;
        const auto *date = e.window.sbStatusBar->findChild<QLabel *>("statusDate");
        const auto *time = e.window.sbStatusBar->findChild<QLabel *>("statusTime");
        QVERIFY(date && time);
        QVERIFY(date->width() >= 96 && time->width() >= 96);
        QVERIFY(text->x() < date->x() && date->x() < time->x());
        QVERIFY(text->width() >= 803 - date->width() - time->width() - 24);
        QCOMPARE(date->text(), QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
        QVERIFY(!time->text().isEmpty());
        e.window.setStatusText("X:  1, Y:  0");
        QCOMPARE(e.status(), "X:  1, Y:  0");
        QVERIFY(date->isVisible());
    }
};

QTEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
