// The level list and resize commands through the window, the toolbar against the menu, and
// closing the window.

#include "ShellWindow.h"

#include <QCloseEvent>

class CommandsTest : public QObject {
    Q_OBJECT
private slots:
    void freshLevelsetRefusesPreviousNextAndRemove();
    void addThenNextShowsTheSecondLevel();
    void previousShowsTheFirstLevelAgain();
    void removeDropsOnlyALevelThatIsNotCurrent();
    void addStopsAtEightLevels();
    void widthGrowsToThirtyTwoAndNoFurther();
    void sizeStopsAtTheSmallestLevel();
    void shrinkingKeepsTheFinishMarkerAndOtherLevels();
    void toolbarButtonDoesWhatItsMenuItemDoes_data();
    void toolbarButtonDoesWhatItsMenuItemDoes();
    void unknownToolbarKeysDoNothing_data();
    void unknownToolbarKeysDoNothing();
    void exitCancelledKeepsTheWindowAndOtherWindows();
    void exitClosesOtherWindowsNewestFirst();
};

namespace {

void addLevels(frmMain &window, int count) {
    for (int i = 0; i < count; ++i)
        window.mnuLevelAdd_Click();
}

// Records the order in which windows are asked to close.
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

void CommandsTest::freshLevelsetRefusesPreviousNextAndRemove() {
    ShellWindow shell;
    shell.window.levelCursor->place(QPoint(48, 32));
    const VisibleState before = VisibleState::of(shell);
    shell.window.mnuLevelPrevious_Click();
    shell.window.mnuLevelNext_Click();
    shell.window.mnuLevelRemove_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 1 / 1"));
    QVERIFY(VisibleState::of(shell) == before);
    QCOMPARE(shell.window.levelCursor->pos(), QPoint(48, 32));
}

void CommandsTest::addThenNextShowsTheSecondLevel() {
    ShellWindow shell;
    frmMain &w = shell.window;
    // The second record is prepared while outside the set; Add brings it in as it is.
    LevelRecord &second = shell.levelset().levels[1];
    second.header[LevelRecord::Width] = 20;
    second.header[LevelRecord::Time] = 42;
    second.header[LevelRecord::StartX] = 3;
    second.header[LevelRecord::StartY] = 4;
    w.levelCursor->place(QPoint(48, 32));

    w.mnuLevelAdd_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 1 / 2"));
    QCOMPARE(shell.levelset().currentLevel, 0);
    QVERIFY(cellIsGrey(w, 15, 0)); // the view still shows the first level
    QCOMPARE(w.panel->txtTime->text(), QStringLiteral("99"));

    w.mnuLevelNext_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 2 / 2"));
    QCOMPARE(shell.levelset().currentLevel, 1);
    QCOMPARE(w.levelCursor->pos(), QPoint(0, 0));
    QVERIFY(!cellIsGrey(w, 15, 0));
    QVERIFY(cellIsGrey(w, 20, 0));
    QCOMPARE(w.shpStart->pos(), QPoint(48, 64));
    QCOMPARE(w.panel->txtTime->text(), QStringLiteral("42"));
    // Filling the panel wrote nothing into the level left behind.
    QCOMPARE(shell.levelset().levels[0].header[LevelRecord::Time], 99);
    QCOMPARE(shell.levelset().levels[1].header[LevelRecord::Time], 42);
}

void CommandsTest::previousShowsTheFirstLevelAgain() {
    ShellWindow shell;
    frmMain &w = shell.window;
    shell.levelset().levels[0].header[LevelRecord::FinishX] = 5;
    addLevels(w, 1);
    w.mnuLevelNext_Click();
    w.levelCursor->place(QPoint(64, 64));

    w.mnuLevelPrevious_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 1 / 2"));
    QCOMPARE(w.levelCursor->pos(), QPoint(0, 0));
    QCOMPARE(w.shpFinish->pos(), QPoint(80, 112));

    // At the first level Previous leaves even the cursor alone.
    w.levelCursor->place(QPoint(64, 64));
    w.mnuLevelPrevious_Click();
    QCOMPARE(w.levelCursor->pos(), QPoint(64, 64));
    QCOMPARE(shell.label(), QStringLiteral("Level: 1 / 2"));
}

void CommandsTest::removeDropsOnlyALevelThatIsNotCurrent() {
    ShellWindow shell;
    frmMain &w = shell.window;
    addLevels(w, 2);
    w.mnuLevelNext_Click();
    w.mnuLevelNext_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 3 / 3"));
    shell.levelset().levels[2].tile(4, 4) = 77;

    w.mnuLevelRemove_Click(); // the last level is current: refused
    QCOMPARE(shell.label(), QStringLiteral("Level: 3 / 3"));

    w.mnuLevelPrevious_Click();
    w.mnuLevelRemove_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 2 / 2"));
    QCOMPARE(shell.levelset().levelCount, 2);

    // The dropped level comes back with Add, as it was.
    w.mnuLevelAdd_Click();
    QCOMPARE(shell.label(), QStringLiteral("Level: 2 / 3"));
    QCOMPARE(shell.levelset().levels[2].tile(4, 4), 77);
}

void CommandsTest::addStopsAtEightLevels() {
    ShellWindow shell;
    addLevels(shell.window, 7);
    QCOMPARE(shell.label(), QStringLiteral("Level: 1 / 8"));
    const VisibleState before = VisibleState::of(shell);
    shell.window.mnuLevelAdd_Click();
    QCOMPARE(shell.levelset().levelCount, 8);
    QVERIFY(VisibleState::of(shell) == before);
}

void CommandsTest::widthGrowsToThirtyTwoAndNoFurther() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(&shell.window, Qt::Key_F2);
    QCOMPARE(shell.levelset().current().width(), 32);
    QVERIFY(!cellIsGrey(shell.window, 31, 0));

    QTest::keyClick(&shell.window, Qt::Key_F2);
    QCOMPARE(shell.levelset().current().width(), 32);

    for (int i = 0; i < 24; ++i)
        QTest::keyClick(&shell.window, Qt::Key_F4);
    QCOMPARE(shell.levelset().current().height(), 32);
    QVERIFY(!cellIsGrey(shell.window, 31, 31));
}

void CommandsTest::sizeStopsAtTheSmallestLevel() {
    ShellWindow shell;
    frmMain &w = shell.window;
    // A grey-painted view is repainted even at the limit.
    w.picLevel->drawLevel(LevelRecord{}); // all cells grey: width and height 0
    QVERIFY(cellIsGrey(w, 0, 0));
    w.mnuLevelDecreaseWidth_Click();
    QCOMPARE(shell.levelset().current().width(), 12);
    QVERIFY(!cellIsGrey(w, 0, 0));

    w.picLevel->drawLevel(LevelRecord{});
    w.mnuLevelDecreaseHeight_Click();
    QCOMPARE(shell.levelset().current().height(), 8);
    QVERIFY(!cellIsGrey(w, 0, 0));
}

void CommandsTest::shrinkingKeepsTheFinishMarkerAndOtherLevels() {
    ShellWindow shell;
    frmMain &w = shell.window;
    addLevels(w, 1);
    for (int i = 0; i < 8; ++i)
        w.mnuLevelIncreaseWidth_Click();
    LevelRecord &level = shell.levelset().current();
    QCOMPARE(level.width(), 20);
    level.header[LevelRecord::FinishX] = 19;
    level.tile(19, 0) = 12;
    w.loadLevel(shell.levelset().currentLevel);
    QCOMPARE(w.shpFinish->pos(), QPoint(16 * 19, 16 * 7));

    w.mnuLevelDecreaseWidth_Click();
    QCOMPARE(level.width(), 19);
    QCOMPARE(level.header[LevelRecord::FinishX], 19);
    QCOMPARE(w.shpFinish->pos(), QPoint(16 * 19, 16 * 7));
    QVERIFY(cellIsGrey(w, 19, 0));
    QCOMPARE(shell.levelset().levels[1].width(), 12);

    w.mnuLevelIncreaseWidth_Click();
    QVERIFY(!cellIsGrey(w, 19, 0));
    QCOMPARE(level.tile(19, 0), 12);
}

void CommandsTest::toolbarButtonDoesWhatItsMenuItemDoes_data() {
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
    QTest::newRow("NextLevel at last") << "NextLevel"
                                       << "mnuLevelNext"
                                       << "second current" << false;
    QTest::newRow("About") << "About"
                           << "mnuHelpAbout"
                           << "fresh" << true;
}

void CommandsTest::toolbarButtonDoesWhatItsMenuItemDoes() {
    QFETCH(QString, key);
    QFETCH(QString, item);
    QFETCH(QString, setup);
    QFETCH(bool, changes);

    ShellWindow byMenu;
    ShellWindow byButton;
    for (ShellWindow *shell : {&byMenu, &byButton}) {
        QVERIFY(shell->showActive());
        frmMain &w = shell->window;
        if (setup == QLatin1String("wide"))
            for (int i = 0; i < 8; ++i)
                w.mnuLevelIncreaseWidth_Click();
        if (setup == QLatin1String("eight levels"))
            addLevels(w, 7);
        if (setup == QLatin1String("two levels") || setup == QLatin1String("second current")) {
            shell->levelset().levels[1].header[LevelRecord::Height] = 9;
            addLevels(w, 1);
        }
        if (setup == QLatin1String("second current"))
            w.mnuLevelNext_Click();
        w.levelCursor->place(QPoint(32, 32));
        shell->dialogs.messageAnswers.enqueue(QMessageBox::No);
    }
    const VisibleState before = VisibleState::of(byMenu);

    QAction *menuItem = byMenu.item(item);
    QVERIFY(menuItem);
    menuItem->trigger();
    QVERIFY(byButton.button(key));
    byButton.clickButton(key);

    const VisibleState viaMenu = VisibleState::of(byMenu);
    const VisibleState viaButton = VisibleState::of(byButton);
    QCOMPARE(viaButton.label, viaMenu.label);
    QCOMPARE(viaButton.messages, viaMenu.messages);
    QVERIFY(viaButton == viaMenu);
    QCOMPARE(!(viaMenu == before), changes);
}

void CommandsTest::unknownToolbarKeysDoNothing_data() {
    QTest::addColumn<QString>("key");
    QTest::newRow("empty") << "";
    QTest::newRow("other case") << "addlevel";
    QTest::newRow("caption instead of key") << "Add a Level";
    QTest::newRow("trailing blank") << "About ";
}

void CommandsTest::unknownToolbarKeysDoNothing() {
    QFETCH(QString, key);
    ShellWindow shell;
    const VisibleState before = VisibleState::of(shell);
    shell.window.tbToolBar_ButtonClick(key);
    QVERIFY(VisibleState::of(shell) == before);
}

void CommandsTest::exitCancelledKeepsTheWindowAndOtherWindows() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    QWidget other;
    other.show();
    shell.levelset().levels[0].tile(1, 1) = 33;
    const VisibleState before = VisibleState::of(shell);

    shell.dialogs.messageAnswers.enqueue(QMessageBox::Cancel);
    shell.window.mnuFileExit_Click();
    QCOMPARE(shell.dialogs.messageTexts(), QStringList{"Save current Levelset?"});
    QVERIFY(shell.window.isVisible());
    QVERIFY(other.isVisible());
    VisibleState after = VisibleState::of(shell);
    after.messages.clear();
    QVERIFY(after.levels == before.levels);
    QCOMPARE(after.title, before.title);
}

void CommandsTest::exitClosesOtherWindowsNewestFirst() {
    ShellWindow shell;
    QVERIFY(shell.showActive());
    QWidget older;
    older.setObjectName(QStringLiteral("older"));
    older.show();
    QWidget newer;
    newer.setObjectName(QStringLiteral("newer"));
    newer.show();
    QWidget neverShown;
    neverShown.setObjectName(QStringLiteral("neverShown"));
    CloseRecorder recorder;
    for (QWidget *w : {&older, &newer, &neverShown})
        w->installEventFilter(&recorder);

    shell.dialogs.messageAnswers.enqueue(QMessageBox::No);
    shell.window.mnuFileExit_Click();
    QVERIFY(!shell.window.isVisible());
    QVERIFY(!older.isVisible());
    QVERIFY(!newer.isVisible());
    QCOMPARE(recorder.closed, (QStringList{"newer", "older"}));
}

QTEST_MAIN(CommandsTest)
#include "CommandsTest.moc"
