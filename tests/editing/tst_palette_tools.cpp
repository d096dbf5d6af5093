// The palette, the popup menus and their markers, the View items, the right-button mode items,
// Set Floor and the count reports, on a real window.

#include "EditingWindow.h"
#include "view/drawLevel.h"

#include <QAction>
#include <QImage>
#include <QtTest>
#include <memory>

using Cells = QList<QPoint>;

class PaletteToolsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<EditingWindow> editor;
    static QPoint cellCentre(int x, int y) { return EditingWindow::cellCentre(x, y); }
    static QPoint paletteCell(int id) { return {16 * (id % 8), 16 * (id / 8)}; }

private slots:
    void init() { editor = std::make_unique<EditingWindow>(); }
    void cleanup() { editor.reset(); }

    void leftClickSelectsPlaceableTiles_data();
    void leftClickSelectsPlaceableTiles();
    void selectedTileIsWhatTheLeftButtonPaints();
    void rightClickNeverChangesTheSelection();
    void tilePopupSetsBlockTypes_data();
    void tilePopupSetsBlockTypes();
    void levelPopupSetsPositions_data();
    void levelPopupSetsPositions();
    void dismissedPopupChangesNothing();

    void viewItemsShowAndHideMarkers_data();
    void viewItemsShowAndHideMarkers();
    void viewItemsRunFromTheMenu();

    void exactlyOneRightButtonModeIsChecked();

    void setFloorFollowsTheLevelType();

    void countReports_data();
    void countReports();
    void countShortcuts_data();
    void countShortcuts();
};

void PaletteToolsTest::leftClickSelectsPlaceableTiles_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("selected");
    QTest::newRow("first tile") << 0 << 0;
    QTest::newRow("solid wall") << 89 << 89;
    QTest::newRow("last placeable tile") << 177 << 177;
    QTest::newRow("first grey cell") << 178 << 42;
    QTest::newRow("last grey cell") << 255 << 42;
}

void PaletteToolsTest::leftClickSelectsPlaceableTiles() {
    QFETCH(int, id);
    QFETCH(int, selected);
    editor->clickPalette(Qt::LeftButton, 42);
    editor->clickPalette(Qt::LeftButton, id);
    QCOMPARE(int(editor->window.selectedTile), selected);
    QCOMPARE(editor->window.tileCursor->pos(), paletteCell(selected));
    QCOMPARE(editor->status(), QStringLiteral("Tile: %1").arg(selected));
    QVERIFY(editor->dialogs.popups.isEmpty());
}

void PaletteToolsTest::selectedTileIsWhatTheLeftButtonPaints() {
    editor->clickPalette(Qt::LeftButton, 168);
    editor->press(Qt::LeftButton, cellCentre(2, 3));
    QCOMPARE(editor->tile(2, 3), 168);
}

void PaletteToolsTest::rightClickNeverChangesTheSelection() {
    editor->clickPalette(Qt::LeftButton, 12);
    editor->dialogs.popupAnswers.enqueue(QStringLiteral("mnuTilePopUpPut"));
    editor->clickPalette(Qt::RightButton, 30);
    QCOMPARE(editor->dialogs.popups.size(), 1);
    QCOMPARE(editor->dialogs.popups[0], QStringList({"mnuTilePopUpPut", "mnuTilePopUpTake"}));
    QCOMPARE(int(editor->window.selectedTile), 12);
    QCOMPARE(editor->window.tileCursor->pos(), paletteCell(12));
    QCOMPARE(editor->status(), "Tile: 12");
    QCOMPARE(int(editor->level().header[LevelRecord::PutType]), 30);

    // A grey cell opens no menu.
    editor->clickPalette(Qt::RightButton, 200);
    QCOMPARE(editor->dialogs.popups.size(), 1);
    QCOMPARE(editor->status(), "Tile: 12");
    QCOMPARE(int(editor->level().header[LevelRecord::PutType]), 30);
}

void PaletteToolsTest::tilePopupSetsBlockTypes_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("headerByte");
    QTest::addColumn<QString>("marker");
    QTest::newRow("put type 5") << "mnuTilePopUpPut" << 5 << int(LevelRecord::PutType)
                                << "shpPutType";
    QTest::newRow("put type 177") << "mnuTilePopUpPut" << 177 << int(LevelRecord::PutType)
                                  << "shpPutType";
    QTest::newRow("take type 89") << "mnuTilePopUpTake" << 89 << int(LevelRecord::TakeType)
                                  << "shpTakeType";
}

void PaletteToolsTest::tilePopupSetsBlockTypes() {
    QFETCH(QString, item);
    QFETCH(int, id);
    QFETCH(int, headerByte);
    QFETCH(QString, marker);
    Marker *shape = editor->window.findChild<Marker *>(marker);
    QVERIFY(shape);
    QVERIFY(!shape->isVisible()); // the block items start unchecked
    const LevelRecord before = editor->level();
    editor->dialogs.popupAnswers.enqueue(item);
    editor->clickPalette(Qt::RightButton, id);
    QCOMPARE(int(editor->level().header[headerByte]), id);
    QCOMPARE(shape->pos(), paletteCell(id));
    QVERIFY(!shape->isVisible());
    auto expected = before.header;
    expected[headerByte] = static_cast<std::uint8_t>(id);
    QVERIFY(editor->level().header == expected);
    QVERIFY(editor->level().tiles == before.tiles);
}

void PaletteToolsTest::levelPopupSetsPositions_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("xByte");
    QTest::addColumn<QString>("marker");
    QTest::newRow("start") << "mnuLevelPopUpStart" << int(LevelRecord::StartX) << "shpStart";
    QTest::newRow("finish") << "mnuLevelPopUpFinish" << int(LevelRecord::FinishX) << "shpFinish";
    QTest::newRow("block to put") << "mnuLevelPopUpPut" << int(LevelRecord::PutX) << "shpPut";
    QTest::newRow("block to take") << "mnuLevelPopUpTake" << int(LevelRecord::TakeX) << "shpTake";
}

void PaletteToolsTest::levelPopupSetsPositions() {
    QFETCH(QString, item);
    QFETCH(int, xByte);
    QFETCH(QString, marker);
    Marker *shape = editor->window.findChild<Marker *>(marker);
    QVERIFY(shape);
    const bool shown = shape->isVisible();
    const LevelRecord before = editor->level();
    const QString status = editor->status();
    editor->dialogs.popupAnswers.enqueue(item);
    editor->press(Qt::RightButton, cellCentre(9, 6));
    editor->release(Qt::RightButton, cellCentre(9, 6));
    auto expected = before.header;
    expected[xByte] = 9;
    expected[xByte + 1] = 6;
    QVERIFY(editor->level().header == expected);
    QVERIFY(editor->level().tiles == before.tiles);
    QCOMPARE(shape->pos(), QPoint(144, 96));
    QCOMPARE(shape->isVisible(), shown);
    QCOMPARE(editor->status(), status);
}

void PaletteToolsTest::dismissedPopupChangesNothing() {
    const LevelRecord before = editor->level();
    const QPoint start = editor->window.shpStart->pos();
    editor->press(Qt::RightButton, cellCentre(3, 3)); // unscripted: dismissed
    editor->release(Qt::RightButton, cellCentre(3, 3));
    editor->clickPalette(Qt::RightButton, 50);
    QCOMPARE(editor->dialogs.popups.size(), 2);
    QVERIFY(editor->level().header == before.header);
    QCOMPARE(editor->window.shpStart->pos(), start);
}

void PaletteToolsTest::viewItemsShowAndHideMarkers_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<QStringList>("markers");
    QTest::addColumn<bool>("initially");
    QTest::newRow("start") << "mnuViewStart" << QStringList{"shpStart"} << true;
    QTest::newRow("finish") << "mnuViewFinish" << QStringList{"shpFinish"} << true;
    QTest::newRow("block to put") << "mnuViewBlockPut" << QStringList{"shpPut", "shpPutType"}
                                  << false;
    QTest::newRow("block to take")
        << "mnuViewBlockTake" << QStringList{"shpTake", "shpTakeType"} << false;
}

// Flipping an item shows or hides its markers, and the setting outlives a change of level
// and a new levelset.
void PaletteToolsTest::viewItemsShowAndHideMarkers() {
    QFETCH(QString, item);
    QFETCH(QStringList, markers);
    QFETCH(bool, initially);
    frmMain &window = editor->window;
    const std::map<QString, void (frmMain::*)()> handlers{
        {"mnuViewStart", &frmMain::mnuViewStart_Click},
        {"mnuViewFinish", &frmMain::mnuViewFinish_Click},
        {"mnuViewBlockPut", &frmMain::mnuViewBlockPut_Click},
        {"mnuViewBlockTake", &frmMain::mnuViewBlockTake_Click}};
    QAction *action = window.findChild<QAction *>(item);
    QVERIFY(action);
    const auto shown = [&](bool expected) {
        if (action->isChecked() != expected)
            return false;
        for (const QString &name : markers)
            if (window.findChild<Marker *>(name)->isVisible() != expected)
                return false;
        return true;
    };
    QVERIFY(shown(initially));
    (window.*handlers.at(item))();
    QVERIFY(shown(!initially));

    // A second level whose positions and types all point at 7: its markers move there, shown
    // or not.
    window.mnuLevelAdd_Click();
    auto &header = window.levelset.levels[1].header;
    std::fill(&header[LevelRecord::PutX], &header[LevelRecord::TakeType] + 1, 7);
    std::fill(&header[LevelRecord::FinishX], &header[LevelRecord::StartY] + 1, 7);
    window.mnuLevelNext_Click();
    QCOMPARE(int(window.levelset.currentLevel), 1);
    QVERIFY(shown(!initially));
    for (const QString &name : markers) {
        const QPoint at = name.endsWith("Type") ? paletteCell(7) : QPoint(112, 112);
        QCOMPARE(window.findChild<Marker *>(name)->pos(), at);
    }

    (window.*handlers.at(item))();
    QVERIFY(shown(initially));
    window.newLevelset();
    QVERIFY(shown(initially));
}

void PaletteToolsTest::viewItemsRunFromTheMenu() {
    editor->window.mnuViewBlockPut->trigger();
    QVERIFY(editor->window.mnuViewBlockPut->isChecked());
    QVERIFY(editor->window.shpPut->isVisible());
    QVERIFY(editor->window.shpPutType->isVisible());
    editor->window.mnuViewStart->trigger();
    QVERIFY(!editor->window.mnuViewStart->isChecked());
    QVERIFY(!editor->window.shpStart->isVisible());
}

void PaletteToolsTest::exactlyOneRightButtonModeIsChecked() {
    frmMain &window = editor->window;
    const auto checked = [&] {
        QList<int> marks;
        for (std::size_t i = 0; i < window.mnuToolsMouseChoice.size(); ++i)
            if (window.mnuToolsMouseChoice[i]->isChecked())
                marks.append(int(i));
        return marks;
    };
    QCOMPARE(checked(), QList<int>{0});
    window.mnuToolsMouseChoice[2]->trigger();
    QCOMPARE(checked(), QList<int>{2});
    QCOMPARE(int(window.rightButtonMode), 2);
    window.mnuToolsMouseChoice[2]->trigger(); // again: stays the only one
    QCOMPARE(checked(), QList<int>{2});
    window.mnuToolsMouseChoice_Click(3);
    QCOMPARE(checked(), QList<int>{3});
    window.mnuToolsMouseChoice_Click(0);
    QCOMPARE(checked(), QList<int>{0});
    QCOMPARE(int(window.rightButtonMode), 0);
    window.mnuToolsMouseChoice_Click(4); // no such item
    QCOMPARE(checked(), QList<int>{0});
    QCOMPARE(int(window.rightButtonMode), 0);
    // The mode outlives a new levelset.
    window.mnuToolsMouseChoice_Click(1);
    window.newLevelset();
    QCOMPARE(int(window.rightButtonMode), 1);
}

void PaletteToolsTest::setFloorFollowsTheLevelType() {
    frmMain &window = editor->window;
    LevelRecord &level = editor->level();
    level.tile(0, 0) = 1;
    level.tile(3, 2) = 1;
    level.tile(20, 20) = 1; // outside the 12 x 8 level
    level.tile(4, 4) = 89;
    const auto header = level.header;
    const QList<QPoint> markers{window.shpStart->pos(), window.shpFinish->pos(),
                                window.shpPutType->pos()};

    window.mnuToolsSetFloor->trigger();
    QVERIFY(std::all_of(level.tiles.begin(), level.tiles.end(),
                        [](std::uint8_t t) { return t == 0 || t == 89; }));
    const auto once = level.tiles;
    window.mnuToolsSetFloor_Click();
    QVERIFY(level.tiles == once);

    level.header[LevelRecord::LevelType] = 1;
    window.mnuToolsSetFloor_Click();
    QCOMPARE(std::count(level.tiles.begin(), level.tiles.end(), 1), 1023);
    QCOMPARE(int(level.tile(4, 4)), 89);
    QCOMPARE(int(level.tile(31, 31)), 1);

    // The view shows the result, and nothing else moved.
    QImage expected;
    ::drawLevel(level, expected);
    QCOMPARE(window.picLevel->image(), expected);
    level.header[LevelRecord::LevelType] = 0;
    QVERIFY(level.header == header);
    QCOMPARE(
        QList<QPoint>({window.shpStart->pos(), window.shpFinish->pos(), window.shpPutType->pos()}),
        markers);
}

void PaletteToolsTest::countReports_data() {
    QTest::addColumn<QString>("item");
    QTest::addColumn<Cells>("cells");
    QTest::addColumn<QList<int>>("tiles");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("doors of a new level")
        << "mnuToolsDoors" << Cells{} << QList<int>{} << "Doors"
        << "Normal Doors: 0\rSecurity Doors: 0\rWhite Doors: 0\rCheckered Doors: 0\rBlack "
           "Doors: 0";
    QTest::newRow("both ids of a door pair")
        << "mnuToolsDoors" << Cells{{0, 0}, {1, 0}, {2, 0}} << QList<int>{168, 169, 177} << "Doors"
        << "Normal Doors: 2\rSecurity Doors: 0\rWhite Doors: 0\rCheckered Doors: 0\rBlack "
           "Doors: 1";
    QTest::newRow("holes of both pictures")
        << "mnuToolsEnemies" << Cells{{0, 0}, {5, 5}, {11, 7}, {3, 3}} << QList<int>{69, 70, 75, 72}
        << "Enemies"
        << "Holes: 2\rWorms: 0\rFace Huggers: 1\rNormal Aliens: 0\rStrong Aliens: 0\rSecurity "
           "Guards: 1";
    QTest::newRow("credits and ammo are amounts")
        << "mnuToolsPickups" << Cells{{0, 0}, {0, 1}, {0, 2}, {1, 0}, {1, 1}, {1, 2}, {2, 2}}
        << QList<int>{60, 59, 59, 58, 58, 58, 63} << "Pick-ups"
        << "Credits: 120\rAmmo: 60\rKey Passes: 0\rWhite Keys: 0\rCheckered Keys: 0\rBlack "
           "Keys: 0\rFirst Aids: 0\rInvincibilities: 0\rExtra Lives: 1";
    QTest::newRow("objects outside the level are not counted")
        << "mnuToolsDoors" << Cells{{12, 0}, {0, 8}, {11, 7}} << QList<int>{170, 170, 170}
        << "Doors"
        << "Normal Doors: 0\rSecurity Doors: 1\rWhite Doors: 0\rCheckered Doors: 0\rBlack "
           "Doors: 0";
}

void PaletteToolsTest::countReports() {
    QFETCH(QString, item);
    QFETCH(Cells, cells);
    QFETCH(QList<int>, tiles);
    QFETCH(QString, title);
    QFETCH(QString, text);
    for (int i = 0; i < cells.size(); ++i)
        editor->level().tile(cells[i].x(), cells[i].y()) = static_cast<std::uint8_t>(tiles[i]);
    const LevelRecord before = editor->level();
    editor->window.findChild<QAction *>(item)->trigger();
    QCOMPARE(editor->dialogs.messages.size(), 1);
    const ScriptedDialogs::Message &shown = editor->dialogs.messages[0];
    QCOMPARE(shown.title, title);
    QCOMPARE(shown.text, text);
    QCOMPARE(shown.icon, QMessageBox::Information);
    QCOMPARE(shown.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(editor->level().tiles == before.tiles);
}

void PaletteToolsTest::countShortcuts_data() {
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("title");
    QTest::newRow("Ctrl+D") << Qt::Key_D << "Doors";
    QTest::newRow("Ctrl+E") << Qt::Key_E << "Enemies";
    QTest::newRow("Ctrl+P") << Qt::Key_P << "Pick-ups";
}

void PaletteToolsTest::countShortcuts() {
    QFETCH(Qt::Key, key);
    QFETCH(QString, title);
    editor->window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&editor->window));
    QTest::keyClick(&editor->window, key, Qt::ControlModifier);
    QCOMPARE(editor->dialogs.messages.size(), 1);
    QCOMPARE(editor->dialogs.messages[0].title, title);
}

QTEST_MAIN(PaletteToolsTest)
#include "tst_palette_tools.moc"
