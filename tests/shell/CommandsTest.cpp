// The level list and resize commands, the toolbar against the menu, and closing the window.

#include "support/EditorWindow.h"

#include <QToolBar>

namespace {

// Everything the user can see of a window and everything it asked, in one comparable value.
struct Visible {
    std::array<LevelRecord, Levelset::MaxLevels> levels;
    QStringList texts;       // title, level label, status text, time field
    QList<qsizetype> counts; // levels, current level, open and save dialogs, modal windows
    QList<std::pair<QPoint, bool>> markers; // place, shown
    QImage view;
    QStringList messages;

    static Visible of(EditorWindow &e) {
        frmMain &w = e.window;
        Visible state{w.levelset.levels,
                      {e.title(), e.label(), e.status(), w.panel->txtTime->text()},
                      {w.levelset.levelCount, w.levelset.currentLevel,
                       e.dialogs.openQuestions.size(), e.dialogs.saveQuestions.size(),
                       e.dialogs.modalCount},
                      {},
                      w.picLevel->image(),
                      e.dialogs.messageTexts()};
        for (const Marker *marker : {w.levelCursor, w.shpStart, w.shpFinish, w.shpPut, w.shpTake,
                                     w.tileCursor, w.shpPutType, w.shpTakeType})
            state.markers.append({marker->pos(), !marker->isHidden()});
        return state;
    }
    bool operator==(const Visible &) const = default;
};

class CloseRecorder : public QObject {
public:
    QStringList closed;
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Close && watched->isWidgetType())
            closed.append(watched->objectName());
        return false;
    }
};

} // namespace

class CommandsTest : public QObject {
    Q_OBJECT
private slots:
    void levelListAddsWalksAndRemoves() {
        EditorWindow e;
        frmMain &w = e.window;
        Levelset &ls = e.levelset();
        ls.levels[0].header[LevelRecord::FinishX] = 5;
        // A record outside the set comes in with Add as it was prepared.
        LevelRecord &second = ls.levels[1];
        second.header[LevelRecord::Width] = 20;
        second.header[LevelRecord::Time] = 42;
        second.header[LevelRecord::StartX] = 3;
        second.header[LevelRecord::StartY] = 4;
        w.levelCursor->place(QPoint(48, 32));

        w.mnuLevelAdd_Click();
        QCOMPARE(e.label(), "Level: 1 / 2");
        QVERIFY(e.cellIsGrey(15, 0)); // the view still shows the first level
        QCOMPARE(w.panel->txtTime->text(), "99");

        w.mnuLevelNext_Click();
        QCOMPARE(e.label(), "Level: 2 / 2");
        QCOMPARE(ls.currentLevel, 1);
        QCOMPARE(w.levelCursor->pos(), QPoint(0, 0));
        QVERIFY(!e.cellIsGrey(15, 0));
        QVERIFY(e.cellIsGrey(20, 0));
        QCOMPARE(w.shpStart->pos(), QPoint(48, 64));
        QCOMPARE(w.panel->txtTime->text(), "42");
        QCOMPARE(ls.levels[0].header[LevelRecord::Time], 99); // filling the panel wrote nothing
        QCOMPARE(second.header[LevelRecord::Time], 42);       // into either level

        w.levelCursor->place(QPoint(64, 64));
        w.mnuLevelPrevious_Click();
        QCOMPARE(e.label(), "Level: 1 / 2");
        QCOMPARE(w.levelCursor->pos(), QPoint(0, 0));
        QCOMPARE(w.shpFinish->pos(), QPoint(80, 112));

        w.mnuLevelAdd_Click();
        w.mnuLevelNext_Click();
        w.mnuLevelNext_Click();
        ls.levels[2].tile(4, 4) = 77;
        w.mnuLevelRemove_Click(); // the last level is current: refused
        QCOMPARE(e.label(), "Level: 3 / 3");
        w.mnuLevelPrevious_Click();
        w.mnuLevelRemove_Click();
        QCOMPARE(e.label(), "Level: 2 / 2");
        w.mnuLevelAdd_Click(); // the dropped level comes back as it was
        QCOMPARE(e.label(), "Level: 2 / 3");
        QCOMPARE(ls.levels[2].tile(4, 4), 77);
    }

    void resizeStopsAtItsLimitsAndKeepsTheCells() {
        EditorWindow e;
        frmMain &w = e.window;
        LevelRecord &level = e.level();
        // At the smallest size the command still repaints a view that shows nothing.
        for (auto command :
             {&frmMain::mnuLevelDecreaseWidth_Click, &frmMain::mnuLevelDecreaseHeight_Click}) {
            w.picLevel->drawLevel(LevelRecord{}, w.picTileset->image());
            (w.*command)();
            QVERIFY(!e.cellIsGrey(0, 0));
        }
        QCOMPARE(level.width(), 12);
        QCOMPARE(level.height(), 8);

        w.mnuLevelAdd_Click();
        for (int i = 0; i < 21; ++i)
            w.mnuLevelIncreaseWidth_Click();
        QCOMPARE(level.width(), 32);
        QVERIFY(!e.cellIsGrey(31, 0));
        for (int i = 0; i < 25; ++i)
            w.mnuLevelIncreaseHeight_Click();
        QCOMPARE(level.height(), 32);
        QVERIFY(!e.cellIsGrey(31, 31));

        // Shrinking hides a column without clearing it and leaves the finish where it was.
        level.header[LevelRecord::FinishX] = 31;
        level.tile(31, 0) = 12;
        w.loadLevel(e.levelset().currentLevel);
        w.mnuLevelDecreaseWidth_Click();
        QCOMPARE(level.width(), 31);
        QCOMPARE(level.header[LevelRecord::FinishX], 31);
        QCOMPARE(w.shpFinish->pos(), QPoint(16 * 31, 16 * 7));
        QVERIFY(e.cellIsGrey(31, 0));
        QCOMPARE(e.levelset().levels[1].width(), 12);
        w.mnuLevelIncreaseWidth_Click();
        QVERIFY(!e.cellIsGrey(31, 0));
        QCOMPARE(level.tile(31, 0), 12);
    }

    // Each button does exactly what its menu item does; a command at its limit does nothing.
    void toolbarButtonDoesWhatItsMenuItemDoes_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("setup");
        QTest::addColumn<bool>("changes");
        QTest::newRow("New asks first") << "New"
                                        << "mnuFileNew"
                                        << "fresh" << true;
        QTest::newRow("Open asks first") << "Open"
                                         << "mnuFileOpen"
                                         << "fresh" << true;
        QTest::newRow("Save an untitled set") << "Save"
                                              << "mnuFileSave"
                                              << "fresh" << true;
        QTest::newRow("DWidth at 12") << "DWidth"
                                      << "mnuLevelDecreaseWidth"
                                      << "fresh" << false;
        QTest::newRow("DWidth at 20") << "DWidth"
                                      << "mnuLevelDecreaseWidth"
                                      << "wide" << true;
        QTest::newRow("IWidth") << "IWidth"
                                << "mnuLevelIncreaseWidth"
                                << "fresh" << true;
        QTest::newRow("DHeight at 8") << "DHeight"
                                      << "mnuLevelDecreaseHeight"
                                      << "fresh" << false;
        QTest::newRow("IHeight") << "IHeight"
                                 << "mnuLevelIncreaseHeight"
                                 << "fresh" << true;
        QTest::newRow("AddLevel") << "AddLevel"
                                  << "mnuLevelAdd"
                                  << "fresh" << true;
        QTest::newRow("AddLevel at 8") << "AddLevel"
                                       << "mnuLevelAdd"
                                       << "eight levels" << false;
        QTest::newRow("RemoveLevel of 1") << "RemoveLevel"
                                          << "mnuLevelRemove"
                                          << "fresh" << false;
        QTest::newRow("RemoveLevel") << "RemoveLevel"
                                     << "mnuLevelRemove"
                                     << "two levels" << true;
        QTest::newRow("PreviousLevel at 1") << "PreviousLevel"
                                            << "mnuLevelPrevious"
                                            << "two levels" << false;
        QTest::newRow("PreviousLevel") << "PreviousLevel"
                                       << "mnuLevelPrevious"
                                       << "second current" << true;
        QTest::newRow("NextLevel") << "NextLevel"
                                   << "mnuLevelNext"
                                   << "two levels" << true;
        QTest::newRow("NextLevel of 1") << "NextLevel"
                                        << "mnuLevelNext"
                                        << "fresh" << false;
        QTest::newRow("NextLevel at last") << "NextLevel"
                                           << "mnuLevelNext"
                                           << "second current" << false;
        QTest::newRow("About") << "About"
                               << "mnuHelpAbout"
                               << "fresh" << true;
    }
    void toolbarButtonDoesWhatItsMenuItemDoes() {
        QFETCH(QString, key);
        QFETCH(QString, item);
        QFETCH(QString, setup);
        QFETCH(bool, changes);
        EditorWindow byMenu;
        EditorWindow byButton;
        for (EditorWindow *e : {&byMenu, &byButton}) {
            frmMain &w = e->window;
            for (int i = 0; setup == "wide" && i < 8; ++i)
                w.mnuLevelIncreaseWidth_Click();
            for (int i = 0; setup == "eight levels" && i < 7; ++i)
                w.mnuLevelAdd_Click();
            if (setup == "two levels" || setup == "second current") {
                e->levelset().levels[1].header[LevelRecord::Height] = 9;
                w.mnuLevelAdd_Click();
            }
            if (setup == "second current")
                w.mnuLevelNext_Click();
            w.levelCursor->place(QPoint(32, 32));
            e->answer({QMessageBox::No});
        }
        const Visible before = Visible::of(byMenu);

        byMenu.item(item)->trigger();
        QAction *button = nullptr;
        for (QAction *action : byButton.window.tbToolBar->actions())
            if (action->data().toString() == key)
                button = action;
        QVERIFY(button);
        QTest::mouseClick(byButton.window.tbToolBar->widgetForAction(button), Qt::LeftButton);

        const Visible viaMenu = Visible::of(byMenu);
        QCOMPARE(Visible::of(byButton).messages, viaMenu.messages);
        QVERIFY(Visible::of(byButton) == viaMenu);
        QCOMPARE(!(viaMenu == before), changes);
    }

    void unknownToolbarKeysDoNothing_data() {
        QTest::addColumn<QString>("key");
        QTest::newRow("empty") << "";
        QTest::newRow("other case") << "addlevel";
        QTest::newRow("caption instead of key") << "Add a Level";
        QTest::newRow("trailing blank") << "About ";
    }
    void unknownToolbarKeysDoNothing() {
        QFETCH(QString, key);
        EditorWindow e;
        const Visible before = Visible::of(e);
        e.window.tbToolBar_ButtonClick(key);
        QVERIFY(Visible::of(e) == before);
    }

    void showingALevelOutsideTheSetDoesNothing() {
        EditorWindow e;
        const Visible before = Visible::of(e);
        for (std::int16_t level : {-1, 8})
            e.window.loadLevel(level);
        QVERIFY(Visible::of(e) == before);
    }

    // Once the window goes, the other shown windows close, the newest first; a cancelled Exit
    // keeps them all (the prompt itself is the file tests' concern).
    void exitClosesTheOtherWindowsUnlessCancelled_data() {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<QStringList>("closed");
        QTest::newRow("Cancel") << QMessageBox::Cancel << QStringList();
        QTest::newRow("No") << QMessageBox::No << QStringList{"newer", "older"};
    }
    void exitClosesTheOtherWindowsUnlessCancelled() {
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(QStringList, closed);
        EditorWindow e;
        QWidget older, newer, hidden;
        CloseRecorder recorder;
        for (QWidget *other : {&older, &newer, &hidden}) {
            other->installEventFilter(&recorder);
            other->setObjectName(other == &older ? "older" : other == &newer ? "newer" : "hidden");
        }
        older.show();
        newer.show();
        e.answer({answer});

        e.window.mnuFileExit_Click();

        QCOMPARE(recorder.closed, closed);
        for (const QWidget *window : {static_cast<QWidget *>(&e.window), &older, &newer})
            QCOMPARE(window->isVisible(), closed.isEmpty());
    }
};

QTEST_MAIN(CommandsTest)
#include "CommandsTest.moc"
