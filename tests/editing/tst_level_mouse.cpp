// Painting on the level view with the mouse: real press and move events on a real window.

#include "EditingWindow.h"

#include <QtTest>
#include <algorithm>
#include <map>
#include <memory>

class LevelMouseTest : public QObject {
    Q_OBJECT
    std::unique_ptr<EditingWindow> editor;
    static QPoint cellCentre(int x, int y) { return EditingWindow::cellCentre(x, y); }

private slots:
    void init() { editor = std::make_unique<EditingWindow>(); }
    void cleanup() { editor.reset(); }

    void dragAcrossRowPaintsEachCellOnce();
    void fastJumpLeavesSkippedCellsAlone();
    void outAndBackPaintsTheLastCellAgain();
    void dragPastTheEdges_data();
    void dragPastTheEdges();
    void firstMoveOntoOriginShowsNothing();
    void otherButtonCombinationsOnlyMoveTheCursor_data();
    void otherButtonCombinationsOnlyMoveTheCursor();
    void levelCursorStaysInsideTheLevel();
    void levelCursorReturnsAfterALevelChangeOnlyInANewCell();
    void pressOutsideANarrowLevelWritesNothing_data();
    void pressOutsideANarrowLevelWritesNothing();
    void modifiersChangeNothing();

    void rightClickInSetPositionsOpensTheLevelPopup();
    void rightDragInSetPositionsDoesNothing();
    void randomModesWriteTheirFamily_data();
    void randomModesWriteTheirFamily();
    void wallModeGivesTheSolidWallAThird();
    void sameStrokesWriteTheSameRandomTiles();
    void noNumberIsDrawnForARefusedCell();
};

void LevelMouseTest::dragAcrossRowPaintsEachCellOnce() {
    // Each cell is entered with its own selected tile; a second write would leave the 99.
    editor->window.selectedTile = 20;
    editor->press(Qt::LeftButton, cellCentre(0, 2));
    QCOMPARE(editor->tile(0, 2), 20);
    QCOMPARE(editor->status(), "X:  0, Y:  2");
    for (int x = 1; x < 12; ++x) {
        editor->window.selectedTile = static_cast<std::uint8_t>(20 + x);
        editor->moveTo(cellCentre(x, 2));
        editor->window.selectedTile = 99;
        editor->moveTo(cellCentre(x, 2) + QPoint(5, -5));
    }
    for (int x = 0; x < 12; ++x)
        QCOMPARE(editor->tile(x, 2), 20 + x);
    QCOMPARE(editor->tile(0, 1), 0);
    QCOMPARE(editor->tile(0, 3), 0);
    QCOMPARE(editor->status(), "X:  11, Y:  2");
}

void LevelMouseTest::fastJumpLeavesSkippedCellsAlone() {
    editor->window.selectedTile = 89;
    editor->press(Qt::LeftButton, cellCentre(0, 0));
    editor->moveTo(cellCentre(6, 5));
    QCOMPARE(editor->tile(0, 0), 89);
    QCOMPARE(editor->tile(6, 5), 89);
    int painted = 0;
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y)
            painted += editor->tile(x, y) == 89;
    QCOMPARE(painted, 2);
}

void LevelMouseTest::outAndBackPaintsTheLastCellAgain() {
    editor->window.selectedTile = 7;
    editor->press(Qt::LeftButton, cellCentre(10, 7));
    editor->moveTo(cellCentre(11, 7));
    QCOMPARE(editor->tile(11, 7), 7);
    editor->window.selectedTile = 8;
    editor->moveTo(cellCentre(12, 7)); // the default level is 12 wide
    QCOMPARE(editor->status(), "Out of level");
    QCOMPARE(editor->tile(12, 7), 0);
    editor->moveTo(cellCentre(11, 7));
    QCOMPARE(editor->tile(11, 7), 8);
    QCOMPARE(editor->status(), "X:  11, Y:  7");
}

void LevelMouseTest::dragPastTheEdges_data() {
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QPoint>("cell"); // (-1, -1): nothing painted
    QTest::newRow("15 left of the view: column 0") << QPoint(-15, 40) << QPoint(0, 2);
    QTest::newRow("16 left of the view: out") << QPoint(-16, 40) << QPoint(-1, -1);
    QTest::newRow("15 above the view: row 0") << QPoint(40, -15) << QPoint(2, 0);
    QTest::newRow("16 above the view: out") << QPoint(40, -16) << QPoint(-1, -1);
    QTest::newRow("last pixel: column 31") << QPoint(511, 40) << QPoint(31, 2);
    QTest::newRow("one past the right edge: out") << QPoint(512, 40) << QPoint(-1, -1);
    QTest::newRow("one past the bottom edge: out") << QPoint(40, 512) << QPoint(-1, -1);
    QTest::newRow("far beyond: out") << QPoint(530, 530) << QPoint(-1, -1);
}

void LevelMouseTest::dragPastTheEdges() {
    QFETCH(QPoint, pos);
    QFETCH(QPoint, cell);
    editor->resize(32, 32);
    editor->window.selectedTile = 63;
    editor->press(Qt::LeftButton, cellCentre(5, 5));
    const auto before = editor->level().tiles;
    editor->moveTo(pos);
    auto expected = before;
    if (cell.x() >= 0) {
        expected[cell.y() + 32 * cell.x()] = 63;
        QCOMPARE(editor->status(), QStringLiteral("X:  %1, Y:  %2").arg(cell.x()).arg(cell.y()));
    } else {
        QCOMPARE(editor->status(), "Out of level");
    }
    QVERIFY(editor->level().tiles == expected);
}

void LevelMouseTest::firstMoveOntoOriginShowsNothing() {
    const QString initial = editor->status();
    editor->hover(cellCentre(0, 0));
    QCOMPARE(editor->status(), initial);
    editor->hover(cellCentre(1, 0));
    QCOMPARE(editor->status(), "X: 1, Y: 0, Tile: 0");
    editor->hover(cellCentre(0, 0));
    QCOMPARE(editor->status(), "X: 0, Y: 0, Tile: 0");
    editor->level().tile(5, 3) = 89;
    editor->hover(cellCentre(5, 3));
    QCOMPARE(editor->status(), "X: 5, Y: 3, Tile: 89");
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(80, 48));
    QCOMPARE(editor->tile(5, 3), 89);
}

void LevelMouseTest::otherButtonCombinationsOnlyMoveTheCursor_data() {
    QTest::addColumn<QList<Qt::MouseButton>>("buttons");
    QTest::newRow("left and right") << QList<Qt::MouseButton>{Qt::LeftButton, Qt::RightButton};
    QTest::newRow("right and left") << QList<Qt::MouseButton>{Qt::RightButton, Qt::LeftButton};
    QTest::newRow("middle") << QList<Qt::MouseButton>{Qt::MiddleButton};
    QTest::newRow("left and middle") << QList<Qt::MouseButton>{Qt::LeftButton, Qt::MiddleButton};
}

void LevelMouseTest::otherButtonCombinationsOnlyMoveTheCursor() {
    QFETCH(QList<Qt::MouseButton>, buttons);
    editor->window.mnuToolsMouseChoice_Click(1); // the right button would write walls
    editor->window.selectedTile = 60;
    for (Qt::MouseButton button : buttons)
        editor->press(button, cellCentre(2, 2));
    const auto before = editor->level().tiles;
    const QString status = editor->status();
    editor->moveTo(cellCentre(6, 4));
    editor->moveTo(cellCentre(7, 4));
    QVERIFY(editor->level().tiles == before);
    QCOMPARE(editor->status(), status);
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(112, 64));
}

void LevelMouseTest::levelCursorStaysInsideTheLevel() {
    editor->hover(cellCentre(11, 7));
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(176, 112));
    editor->hover(cellCentre(20, 7));
    QCOMPARE(editor->status(), "Out of level");
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(176, 112));
    QCOMPARE(int(editor->window.cursorX), 20);
    // A press does not move the cursor; the move that led there did.
    editor->press(Qt::LeftButton, cellCentre(3, 3));
    editor->release(Qt::LeftButton, cellCentre(3, 3));
    editor->hover(cellCentre(3, 3) + QPoint(1, 1));
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(176, 112));
}

void LevelMouseTest::levelCursorReturnsAfterALevelChangeOnlyInANewCell() {
    editor->hover(cellCentre(5, 5));
    editor->window.mnuLevelAdd_Click();
    editor->window.mnuLevelNext_Click();
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(0, 0));
    editor->hover(cellCentre(5, 5) + QPoint(3, 3));
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(0, 0));
    editor->hover(cellCentre(6, 5));
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(96, 80));
    QCOMPARE(editor->status(), "X: 6, Y: 5, Tile: 0");
}

void LevelMouseTest::pressOutsideANarrowLevelWritesNothing_data() {
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QPoint>("cell");
    QTest::newRow("left, column 12") << Qt::LeftButton << 0 << QPoint(12, 0);
    QTest::newRow("left, row 8") << Qt::LeftButton << 0 << QPoint(0, 8);
    QTest::newRow("left, far corner") << Qt::LeftButton << 0 << QPoint(31, 31);
    QTest::newRow("right set positions, column 12") << Qt::RightButton << 0 << QPoint(12, 3);
    QTest::newRow("right random wall, column 12") << Qt::RightButton << 1 << QPoint(12, 3);
}

void LevelMouseTest::pressOutsideANarrowLevelWritesNothing() {
    QFETCH(Qt::MouseButton, button);
    QFETCH(int, mode);
    QFETCH(QPoint, cell);
    editor->window.mnuToolsMouseChoice_Click(std::int16_t(mode));
    editor->window.selectedTile = 90;
    editor->dialogs.popupAnswers.enqueue(QStringLiteral("mnuLevelPopUpStart"));
    const LevelRecord before = editor->level();
    editor->press(button, cellCentre(cell.x(), cell.y()));
    QCOMPARE(editor->status(), "Out of level");
    QVERIFY(editor->level().tiles == before.tiles);
    QVERIFY(editor->level().header == before.header);
    QVERIFY(editor->dialogs.popups.isEmpty());
}

void LevelMouseTest::modifiersChangeNothing() {
    editor->window.selectedTile = 61;
    QTest::mousePress(editor->window.picLevel, Qt::LeftButton,
                      Qt::ShiftModifier | Qt::ControlModifier, cellCentre(1, 1));
    editor->held |= Qt::LeftButton;
    editor->moveTo(cellCentre(2, 1));
    QCOMPARE(editor->tile(1, 1), 61);
    QCOMPARE(editor->tile(2, 1), 61);
}

void LevelMouseTest::rightClickInSetPositionsOpensTheLevelPopup() {
    editor->dialogs.popupAnswers.enqueue(QString()); // dismissed
    const LevelRecord before = editor->level();
    editor->press(Qt::RightButton, cellCentre(4, 5));
    QCOMPARE(editor->dialogs.popups.size(), 1);
    QCOMPARE(editor->dialogs.popups[0],
             QStringList({"mnuLevelPopUpStart", "mnuLevelPopUpFinish", "mnuLevelPopUpBar1",
                          "mnuLevelPopUpPut", "mnuLevelPopUpTake"}));
    QCOMPARE(int(editor->window.popupX), 4);
    QCOMPARE(int(editor->window.popupY), 5);
    QVERIFY(editor->level().tiles == before.tiles);
    QVERIFY(editor->level().header == before.header);
}

void LevelMouseTest::rightDragInSetPositionsDoesNothing() {
    editor->press(Qt::RightButton, cellCentre(1, 1));
    const auto before = editor->level().tiles;
    for (int x = 2; x < 10; ++x)
        editor->moveTo(cellCentre(x, 1));
    QVERIFY(editor->level().tiles == before);
    QCOMPARE(editor->dialogs.popups.size(), 1); // the press, not the moves
    QCOMPARE(editor->window.levelCursor->pos(), QPoint(144, 16));
}

void LevelMouseTest::randomModesWriteTheirFamily_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::newRow("wall: 89..97, never 86..88") << 1 << 89 << 97;
    QTest::newRow("inside: 10..13, never 14") << 2 << 10 << 13;
    QTest::newRow("outside: 7..9, never 10") << 3 << 7 << 9;
}

void LevelMouseTest::randomModesWriteTheirFamily() {
    QFETCH(int, mode);
    QFETCH(int, lowest);
    QFETCH(int, highest);
    editor->scatterOverEveryCell(std::int16_t(mode));
    std::map<int, int> seen;
    for (std::uint8_t t : editor->level().tiles)
        ++seen[t];
    QCOMPARE(seen.begin()->first, lowest);
    QCOMPARE(seen.rbegin()->first, highest);
    QCOMPARE(int(seen.size()), highest - lowest + 1);
    QVERIFY(editor->dialogs.popups.isEmpty());
}

void LevelMouseTest::wallModeGivesTheSolidWallAThird() {
    editor->scatterOverEveryCell(1);
    const auto &tiles = editor->level().tiles;
    const auto solid = std::count(tiles.begin(), tiles.end(), 89);
    // 1024 / 3 = 341; the standard deviation is about 15.
    QVERIFY2(solid > 280 && solid < 400, qPrintable(QString::number(solid)));
    for (int t = 90; t <= 97; ++t) {
        const auto detailed = std::count(tiles.begin(), tiles.end(), t);
        QVERIFY2(detailed > 45 && detailed < 130,
                 qPrintable(QStringLiteral("%1: %2").arg(t).arg(detailed)));
    }
}

void LevelMouseTest::sameStrokesWriteTheSameRandomTiles() {
    editor->scatterOverEveryCell(2);
    const auto first = editor->level().tiles;
    editor = std::make_unique<EditingWindow>();
    editor->scatterOverEveryCell(2);
    QVERIFY(editor->level().tiles == first);
}

void LevelMouseTest::noNumberIsDrawnForARefusedCell() {
    editor->scatterOverEveryCell(3);
    const auto plain = editor->level().tiles;

    editor = std::make_unique<EditingWindow>();
    editor->window.mnuToolsMouseChoice_Click(3);
    // Refused cells: outside the default 12 x 8 level and outside the view.
    editor->press(Qt::RightButton, cellCentre(20, 20));
    editor->moveTo(QPoint(-40, 8));
    editor->moveTo(cellCentre(12, 0));
    editor->release(Qt::RightButton, cellCentre(12, 0));
    editor->scatterOverEveryCell(3);
    QVERIFY(editor->level().tiles == plain);
}

QTEST_MAIN(LevelMouseTest)
#include "tst_level_mouse.moc"
