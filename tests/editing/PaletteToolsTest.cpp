// The palette, the popup menus and their markers, the View items, the right-button mode items,
// Set Floor and the count reports, on a real window.

#include "support/EditorWindow.h"
#include "view/drawLevel.h"

#include <QtTest>
#include <memory>

using Cells = QList<QPoint>;

class PaletteToolsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<EditorWindow> e;
    static QPoint paletteCell(int id) { return EditorWindow::paletteCell(id); }

private slots:
    void init() { e = std::make_unique<EditorWindow>(); }
    void cleanup() { e.reset(); }

    // A left click selects ids below 178 for the left button to paint; grey cells keep 42.
    void leftClickSelectsPlaceableTiles_data() {
        QTest::addColumn<int>("id");
        QTest::addColumn<int>("selected");
        QTest::newRow("first tile") << 0 << 0;
        QTest::newRow("solid wall") << 89 << 89;
        QTest::newRow("door") << 168 << 168;
        QTest::newRow("last placeable tile") << 177 << 177;
        QTest::newRow("first grey cell") << 178 << 42;
        QTest::newRow("last grey cell") << 255 << 42;
    }
    void leftClickSelectsPlaceableTiles() {
        QFETCH(int, id);
        QFETCH(int, selected);
        e->clickPalette(Qt::LeftButton, 42);
        e->clickPalette(Qt::LeftButton, id);
        QCOMPARE(int(e->window.selectedTile), selected);
        QCOMPARE(e->window.tileCursor->pos(), paletteCell(selected));
        QCOMPARE(e->status(), QStringLiteral("Tile: %1").arg(selected));
        QVERIFY(e->dialogs.popups.isEmpty());
        e->press(Qt::LeftButton, EditorWindow::cellCentre(2, 3));
        QCOMPARE(e->tile(2, 3), selected);
    }

    // A right click on an id below 178 opens the tile popup; its choice sets a block type and
    // moves the type marker, hidden as the View items left it. The selection never changes.
    void tilePopupSetsBlockTypes_data() {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("choice"); // "" dismisses the popup
        QTest::addColumn<int>("headerByte"); // -1: nothing written
        QTest::addColumn<QString>("marker");
        QTest::newRow("put type 5")
            << 5 << "mnuTilePopUpPut" << int(LevelRecord::PutType) << "shpPutType";
        QTest::newRow("put type 177")
            << 177 << "mnuTilePopUpPut" << int(LevelRecord::PutType) << "shpPutType";
        QTest::newRow("take type 89")
            << 89 << "mnuTilePopUpTake" << int(LevelRecord::TakeType) << "shpTakeType";
        QTest::newRow("dismissed") << 50 << "" << -1 << "shpPutType";
        QTest::newRow("grey cell opens nothing") << 200 << "mnuTilePopUpPut" << -1 << "shpPutType";
    }
    void tilePopupSetsBlockTypes() {
        QFETCH(int, id);
        QFETCH(QString, choice);
        QFETCH(int, headerByte);
        QFETCH(QString, marker);
        e->clickPalette(Qt::LeftButton, 12);
        Marker *shape = e->marker(marker);
        QVERIFY(!shape->isVisible());
        const QPoint markerBefore = shape->pos();
        LevelRecord expected = e->level();
        if (headerByte >= 0)
            expected.header[headerByte] = static_cast<std::uint8_t>(id);
        e->dialogs.popupAnswers.enqueue(choice);

        e->clickPalette(Qt::RightButton, id);

        const QStringList items{"mnuTilePopUpPut", "mnuTilePopUpTake"};
        QCOMPARE(e->dialogs.popups, id < 178 ? QList<QStringList>{items} : QList<QStringList>());
        QVERIFY(e->level() == expected);
        QCOMPARE(shape->pos(), headerByte >= 0 ? paletteCell(id) : markerBefore);
        QVERIFY(!shape->isVisible());
        QCOMPARE(int(e->window.selectedTile), 12);
        QCOMPARE(e->window.tileCursor->pos(), paletteCell(12));
        QCOMPARE(e->status(), "Tile: 12");
    }

    // In Set Positions mode a right press on the level opens the level popup once, however far
    // the button then drags; its choice sets a position and moves the marker, shown or not.
    void levelPopupSetsPositions_data() {
        QTest::addColumn<QString>("choice"); // "" dismisses the popup
        QTest::addColumn<int>("xByte");
        QTest::addColumn<QString>("marker");
        QTest::newRow("start") << "mnuLevelPopUpStart" << int(LevelRecord::StartX) << "shpStart";
        QTest::newRow("finish") << "mnuLevelPopUpFinish" << int(LevelRecord::FinishX)
                                << "shpFinish";
        QTest::newRow("block to put") << "mnuLevelPopUpPut" << int(LevelRecord::PutX) << "shpPut";
        QTest::newRow("block to take")
            << "mnuLevelPopUpTake" << int(LevelRecord::TakeX) << "shpTake";
        QTest::newRow("dismissed") << "" << -1 << "shpStart";
    }
    void levelPopupSetsPositions() {
        QFETCH(QString, choice);
        QFETCH(int, xByte);
        QFETCH(QString, marker);
        Marker *shape = e->marker(marker);
        const bool shown = shape->isVisible();
        const QPoint markerBefore = shape->pos();
        LevelRecord expected = e->level();
        if (xByte >= 0) {
            expected.header[xByte] = 9;
            expected.header[xByte + 1] = 6;
        }
        const QString status = e->status();
        e->dialogs.popupAnswers.enqueue(choice);

        e->press(Qt::RightButton, EditorWindow::cellCentre(9, 6));
        for (int x = 10; x < 12; ++x)
            e->moveTo(EditorWindow::cellCentre(x, 6));
        e->release(Qt::RightButton, EditorWindow::cellCentre(11, 6));

        const QStringList items{"mnuLevelPopUpStart", "mnuLevelPopUpFinish", "mnuLevelPopUpBar1",
                                "mnuLevelPopUpPut", "mnuLevelPopUpTake"};
        QCOMPARE(e->dialogs.popups, QList<QStringList>{items});
        QCOMPARE(int(e->window.popupX), 9);
        QCOMPARE(int(e->window.popupY), 6);
        QVERIFY(e->level() == expected);
        QCOMPARE(shape->pos(), xByte >= 0 ? QPoint(144, 96) : markerBefore);
        QCOMPARE(shape->isVisible(), shown);
        QCOMPARE(e->status(), status);
        QCOMPARE(e->window.levelCursor->pos(), QPoint(176, 96));
    }

    // Choosing an item flips its mark once and shows or hides its markers; the setting
    // outlives a change of level and a new levelset.
    void viewItemsShowAndHideMarkers_data() {
        QTest::addColumn<QString>("item");
        QTest::addColumn<QStringList>("markers");
        QTest::addColumn<bool>("initially");
        QTest::newRow("start") << "mnuViewStart" << QStringList{"shpStart"} << true;
        QTest::newRow("finish") << "mnuViewFinish" << QStringList{"shpFinish"} << true;
        QTest::newRow("block to put")
            << "mnuViewBlockPut" << QStringList{"shpPut", "shpPutType"} << false;
        QTest::newRow("block to take")
            << "mnuViewBlockTake" << QStringList{"shpTake", "shpTakeType"} << false;
    }
    void viewItemsShowAndHideMarkers() {
        QFETCH(QString, item);
        QFETCH(QStringList, markers);
        QFETCH(bool, initially);
        frmMain &w = e->window;
        QAction *action = e->item(item);
        const auto shown = [&](bool expected) {
            bool all = action->isChecked() == expected;
            for (const QString &name : markers)
                all = all && e->marker(name)->isVisible() == expected;
            return all;
        };
        QVERIFY(shown(initially));
        action->trigger();
        QVERIFY(shown(!initially));

        // A second level whose positions and types all point at 7: its markers move there.
        w.mnuLevelAdd_Click();
        auto &header = w.levelset.levels[1].header;
        std::fill(&header[LevelRecord::PutX], &header[LevelRecord::TakeType] + 1, 7);
        std::fill(&header[LevelRecord::FinishX], &header[LevelRecord::StartY] + 1, 7);
        w.mnuLevelNext_Click();
        QVERIFY(shown(!initially));
        for (const QString &name : markers)
            QCOMPARE(e->marker(name)->pos(),
                     name.endsWith("Type") ? paletteCell(7) : QPoint(112, 112));

        action->trigger();
        QVERIFY(shown(initially));
        w.newLevelset();
        QVERIFY(shown(initially));
    }

    void exactlyOneRightButtonModeIsChecked() {
        frmMain &w = e->window;
        const auto checked = [&] {
            QList<int> marks;
            for (int i = 0; i < 4; ++i)
                if (w.mnuToolsMouseChoice[i]->isChecked())
                    marks.append(i);
            return marks;
        };
        QCOMPARE(checked(), QList<int>{0});
        QCOMPARE(int(w.rightButtonMode), 0);
        w.mnuToolsMouseChoice[2]->trigger();
        QCOMPARE(checked(), QList<int>{2});
        QCOMPARE(int(w.rightButtonMode), 2);
        w.mnuToolsMouseChoice[2]->trigger(); // again: stays the only one
        QCOMPARE(checked(), QList<int>{2});
        w.mnuToolsMouseChoice_Click(3);
        QCOMPARE(checked(), QList<int>{3});
        w.mnuToolsMouseChoice_Click(0);
        QCOMPARE(checked(), QList<int>{0});
        w.mnuToolsMouseChoice_Click(4); // no such item
        QCOMPARE(checked(), QList<int>{0});
        QCOMPARE(int(w.rightButtonMode), 0);
        w.mnuToolsMouseChoice_Click(1);
        w.newLevelset(); // the mode outlives the levelset
        QCOMPARE(int(w.rightButtonMode), 1);
    }

    // Set Floor from the menu: the view shows the result and nothing but floor cells changed.
    void setFloorRepaintsAndMovesNothingElse() {
        frmMain &w = e->window;
        LevelRecord &level = e->level();
        level.header[LevelRecord::LevelType] = 1;
        level.tile(4, 4) = 89;
        level.tile(20, 20) = 1; // outside the 12 x 8 level
        const LevelRecord before = level;
        const QList<QPoint> markers{w.shpStart->pos(), w.shpFinish->pos(), w.shpPutType->pos()};

        w.mnuToolsSetFloor->trigger();

        QCOMPARE(std::count(level.tiles.begin(), level.tiles.end(), 1), 1023);
        QCOMPARE(int(level.tile(4, 4)), 89);
        QVERIFY(level.header == before.header);
        QImage expected;
        ::drawLevel(level, expected);
        QCOMPARE(w.picLevel->image(), expected);
        QCOMPARE(QList<QPoint>({w.shpStart->pos(), w.shpFinish->pos(), w.shpPutType->pos()}),
                 markers);
    }

    // The lines themselves are the analysis tests' concern; here each item shows its report,
    // every line in order and joined by a carriage return.
    void countReports_data() {
        QTest::addColumn<QString>("item");
        QTest::addColumn<Cells>("cells");
        QTest::addColumn<QList<int>>("tiles");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("doors of a new level")
            << "mnuToolsDoors" << Cells{} << QList<int>{} << "Doors"
            << "Normal Doors: 0\rSecurity Doors: 0\rWhite Doors: 0\rCheckered Doors: 0\r"
               "Black Doors: 0";
        QTest::newRow("holes of both pictures")
            << "mnuToolsEnemies" << Cells{{0, 0}, {5, 5}, {11, 7}, {3, 3}}
            << QList<int>{69, 70, 75, 72} << "Enemies"
            << "Holes: 2\rWorms: 0\rFace Huggers: 1\rNormal Aliens: 0\rStrong Aliens: 0\r"
               "Security Guards: 1";
        QTest::newRow("credits and ammo are amounts")
            << "mnuToolsPickups" << Cells{{0, 0}, {0, 1}, {0, 2}, {1, 0}, {1, 1}, {1, 2}, {2, 2}}
            << QList<int>{60, 59, 59, 58, 58, 58, 63} << "Pick-ups"
            << "Credits: 120\rAmmo: 60\rKey Passes: 0\rWhite Keys: 0\rCheckered Keys: 0\r"
               "Black Keys: 0\rFirst Aids: 0\rInvincibilities: 0\rExtra Lives: 1";
    }
    void countReports() {
        QFETCH(QString, item);
        QFETCH(Cells, cells);
        QFETCH(QList<int>, tiles);
        QFETCH(QString, title);
        QFETCH(QString, text);
        for (int i = 0; i < cells.size(); ++i)
            e->level().tile(cells[i].x(), cells[i].y()) = static_cast<std::uint8_t>(tiles[i]);
        const LevelRecord before = e->level();
        e->item(item)->trigger();
        QCOMPARE(e->dialogs.messages.size(), 1);
        const ScriptedDialogs::Message &shown = e->dialogs.messages[0];
        QCOMPARE(shown.title, title);
        QCOMPARE(shown.text, text);
        QCOMPARE(shown.icon, QMessageBox::Information);
        QCOMPARE(shown.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QVERIFY(e->level() == before);
    }
};

QTEST_MAIN(PaletteToolsTest)
#include "PaletteToolsTest.moc"
