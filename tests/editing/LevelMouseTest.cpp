// Painting on the level view with the mouse: real press and move events on a real window.

#include "support/EditorWindow.h"

#include <QtTest>
#include <map>
#include <memory>

namespace {

QPoint cellCentre(int x, int y) {
    return EditorWindow::cellCentre(x, y);
}

void resize(EditorWindow &e, int width, int height) {
    e.level().header[LevelRecord::Width] = static_cast<std::uint8_t>(width);
    e.level().header[LevelRecord::Height] = static_cast<std::uint8_t>(height);
    e.window.drawLevel(e.window.levelset.currentLevel);
}

// Right-button strokes in a random mode over every cell of a full-size level, row by row.
void scatterOverEveryCell(EditorWindow &e, std::int16_t mode) {
    resize(e, 32, 32);
    e.window.mnuToolsMouseChoice_Click(mode);
    for (int y = 0; y < 32; ++y) {
        e.press(Qt::RightButton, cellCentre(0, y));
        for (int x = 1; x < 32; ++x)
            e.moveTo(cellCentre(x, y));
        e.release(Qt::RightButton, cellCentre(31, y));
    }
}

} // namespace

class LevelMouseTest : public QObject {
    Q_OBJECT
    std::unique_ptr<EditorWindow> e;

private slots:
    void init() { e = std::make_unique<EditorWindow>(); }
    void cleanup() { e.reset(); }

    // Each cell is entered with its own selected tile: a second write would leave 99 behind.
    // Keys held with the button change nothing.
    void dragAcrossRowPaintsEachCellOnce() {
        e->window.selectedTile = 20;
        e->press(Qt::LeftButton, cellCentre(0, 2), Qt::ShiftModifier | Qt::ControlModifier);
        QCOMPARE(e->tile(0, 2), 20);
        QCOMPARE(e->status(), "X:  0, Y:  2");
        for (int x = 1; x < 12; ++x) {
            e->window.selectedTile = static_cast<std::uint8_t>(20 + x);
            e->moveTo(cellCentre(x, 2));
            e->window.selectedTile = 99;
            e->moveTo(cellCentre(x, 2) + QPoint(5, -5));
        }
        for (int x = 0; x < 12; ++x)
            QCOMPARE(e->tile(x, 2), 20 + x);
        QCOMPARE(e->tile(0, 1), 0);
        QCOMPARE(e->tile(0, 3), 0);
        QCOMPARE(e->status(), "X:  11, Y:  2");
    }

    void fastJumpLeavesSkippedCellsAlone() {
        e->window.selectedTile = 89;
        e->press(Qt::LeftButton, cellCentre(0, 0));
        e->moveTo(cellCentre(6, 5));
        QCOMPARE(e->tile(0, 0), 89);
        QCOMPARE(e->tile(6, 5), 89);
        QCOMPARE(std::count(e->level().tiles.begin(), e->level().tiles.end(), 89), 2);
    }

    void outAndBackPaintsTheLastCellAgain() {
        e->window.selectedTile = 7;
        e->press(Qt::LeftButton, cellCentre(10, 7));
        e->moveTo(cellCentre(11, 7));
        QCOMPARE(e->tile(11, 7), 7);
        e->window.selectedTile = 8;
        e->moveTo(cellCentre(12, 7)); // the default level is 12 wide
        QCOMPARE(e->status(), "Out of level");
        QCOMPARE(e->tile(12, 7), 0);
        e->moveTo(cellCentre(11, 7));
        QCOMPARE(e->tile(11, 7), 8);
        QCOMPARE(e->status(), "X:  11, Y:  7");
    }

    // With the button held, moves outside the view still arrive.
    void dragPastTheEdges_data() {
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
    void dragPastTheEdges() {
        QFETCH(QPoint, pos);
        QFETCH(QPoint, cell);
        resize(*e, 32, 32);
        e->window.selectedTile = 63;
        e->press(Qt::LeftButton, cellCentre(5, 5));
        auto expected = e->level().tiles;
        e->moveTo(pos);
        if (cell.x() >= 0) {
            expected[cell.y() + 32 * cell.x()] = 63;
            QCOMPARE(e->status(), QStringLiteral("X:  %1, Y:  %2").arg(cell.x()).arg(cell.y()));
        } else {
            QCOMPARE(e->status(), "Out of level");
        }
        QVERIFY(e->level().tiles == expected);
    }

    // Hovering shows the cell and its tile and moves the level cursor, but only inside the
    // level; the very first move onto (0, 0) is no change of cell. A press does not move the
    // cursor, and after a change of level it comes back only in a new cell.
    void levelCursorFollowsHoveringInsideTheLevel() {
        const QString initial = e->status();
        e->hover(cellCentre(0, 0));
        QCOMPARE(e->status(), initial);
        e->hover(cellCentre(1, 0));
        QCOMPARE(e->status(), "X: 1, Y: 0, Tile: 0");
        e->hover(cellCentre(0, 0));
        QCOMPARE(e->status(), "X: 0, Y: 0, Tile: 0");
        e->level().tile(5, 3) = 89;
        e->hover(cellCentre(5, 3));
        QCOMPARE(e->status(), "X: 5, Y: 3, Tile: 89");
        QCOMPARE(e->window.levelCursor->pos(), QPoint(80, 48));
        QCOMPARE(e->tile(5, 3), 89);

        e->hover(cellCentre(11, 7));
        e->hover(cellCentre(20, 7));
        QCOMPARE(e->status(), "Out of level");
        QCOMPARE(e->window.levelCursor->pos(), QPoint(176, 112));
        QCOMPARE(int(e->window.cursorX), 20);
        e->press(Qt::LeftButton, cellCentre(3, 3));
        e->release(Qt::LeftButton, cellCentre(3, 3));
        e->hover(cellCentre(3, 3) + QPoint(1, 1));
        QCOMPARE(e->window.levelCursor->pos(), QPoint(176, 112));

        e->hover(cellCentre(5, 5));
        e->window.mnuLevelAdd_Click();
        e->window.mnuLevelNext_Click();
        QCOMPARE(e->window.levelCursor->pos(), QPoint(0, 0));
        e->hover(cellCentre(5, 5) + QPoint(3, 3));
        QCOMPARE(e->window.levelCursor->pos(), QPoint(0, 0));
        e->hover(cellCentre(6, 5));
        QCOMPARE(e->window.levelCursor->pos(), QPoint(96, 80));
        QCOMPARE(e->status(), "X: 6, Y: 5, Tile: 0");
    }

    void otherButtonCombinationsOnlyMoveTheCursor_data() {
        QTest::addColumn<QList<Qt::MouseButton>>("buttons");
        QTest::newRow("left and right") << QList<Qt::MouseButton>{Qt::LeftButton, Qt::RightButton};
        QTest::newRow("right and left") << QList<Qt::MouseButton>{Qt::RightButton, Qt::LeftButton};
        QTest::newRow("middle") << QList<Qt::MouseButton>{Qt::MiddleButton};
        QTest::newRow("left and middle")
            << QList<Qt::MouseButton>{Qt::LeftButton, Qt::MiddleButton};
    }
    void otherButtonCombinationsOnlyMoveTheCursor() {
        QFETCH(QList<Qt::MouseButton>, buttons);
        e->window.mnuToolsMouseChoice_Click(1); // the right button would write walls
        e->window.selectedTile = 60;
        for (Qt::MouseButton button : buttons)
            e->press(button, cellCentre(2, 2));
        const auto before = e->level().tiles;
        const QString status = e->status();
        e->moveTo(cellCentre(6, 4));
        e->moveTo(cellCentre(7, 4));
        QVERIFY(e->level().tiles == before);
        QCOMPARE(e->status(), status);
        QCOMPARE(e->window.levelCursor->pos(), QPoint(112, 64));
    }

    void pressOutsideANarrowLevelWritesNothing_data() {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QPoint>("cell");
        QTest::newRow("left, column 12") << Qt::LeftButton << 0 << QPoint(12, 0);
        QTest::newRow("left, row 8") << Qt::LeftButton << 0 << QPoint(0, 8);
        QTest::newRow("left, far corner") << Qt::LeftButton << 0 << QPoint(31, 31);
        QTest::newRow("right set positions, column 12") << Qt::RightButton << 0 << QPoint(12, 3);
        QTest::newRow("right random wall, column 12") << Qt::RightButton << 1 << QPoint(12, 3);
    }
    void pressOutsideANarrowLevelWritesNothing() {
        QFETCH(Qt::MouseButton, button);
        QFETCH(int, mode);
        QFETCH(QPoint, cell);
        e->window.mnuToolsMouseChoice_Click(std::int16_t(mode));
        e->window.selectedTile = 90;
        e->dialogs.popupAnswers.enqueue("mnuLevelPopUpStart");
        const LevelRecord before = e->level();
        e->press(button, cellCentre(cell.x(), cell.y()));
        QCOMPARE(e->status(), "Out of level");
        QVERIFY(e->level() == before);
        QVERIFY(e->dialogs.popups.isEmpty());
    }

    // Every cell of a full level painted in a random mode: only its family, the solid wall
    // about a third of the walls, and no popup.
    void randomModesWriteTheirFamily_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("lowest");
        QTest::addColumn<int>("highest");
        QTest::addColumn<int>("lowestCount"); // about 1024 * share, four deviations either way
        QTest::newRow("wall: 89..97, never 86..88, 89 a third") << 1 << 89 << 97 << 341;
        QTest::newRow("inside: 10..13, never 14") << 2 << 10 << 13 << 256;
        QTest::newRow("outside: 7..9, never 10") << 3 << 7 << 9 << 341;
    }
    void randomModesWriteTheirFamily() {
        QFETCH(int, mode);
        QFETCH(int, lowest);
        QFETCH(int, highest);
        QFETCH(int, lowestCount);
        scatterOverEveryCell(*e, std::int16_t(mode));
        std::map<int, int> seen;
        for (std::uint8_t t : e->level().tiles)
            ++seen[t];
        QCOMPARE(seen.begin()->first, lowest);
        QCOMPARE(seen.rbegin()->first, highest);
        QCOMPARE(int(seen.size()), highest - lowest + 1);
        QVERIFY2(std::abs(seen[lowest] - lowestCount) < 4 * std::sqrt(lowestCount),
                 qPrintable(QString::number(seen[lowest])));
        QVERIFY(e->dialogs.popups.isEmpty());
    }

    // Two fresh windows given the same strokes write the same tiles, even when one of them met
    // refused cells first (outside the level, outside the view): those draw no number.
    void sameStrokesWriteTheSameRandomTiles() {
        scatterOverEveryCell(*e, 3);
        const auto first = e->level().tiles;
        e = std::make_unique<EditorWindow>();
        e->window.mnuToolsMouseChoice_Click(3);
        e->press(Qt::RightButton, cellCentre(20, 20));
        e->moveTo(QPoint(-40, 8));
        e->moveTo(cellCentre(12, 0));
        e->release(Qt::RightButton, cellCentre(12, 0));
        scatterOverEveryCell(*e, 3);
        QVERIFY(e->level().tiles == first);
    }
};

QTEST_MAIN(LevelMouseTest)
#include "LevelMouseTest.moc"
