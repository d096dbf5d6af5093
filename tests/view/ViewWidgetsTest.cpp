#include "levelset/LevelRecord.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"
#include "view/Tileset.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(Qt::MouseButton)
Q_DECLARE_METATYPE(Qt::MouseButtons)

namespace {

const QColor Background(10, 20, 30);

// A plain surface of one colour, so that whatever a marker leaves unpainted shows as that colour.
QWidget *solidSurface() {
    auto *surface = new QWidget;
    surface->resize(64, 64);
    QPalette palette = surface->palette();
    palette.setColor(QPalette::Window, Background);
    surface->setPalette(palette);
    surface->setAutoFillBackground(true);
    return surface;
}

void sendMove(QWidget *widget, QPointF pos, Qt::MouseButtons buttons) {
    QMouseEvent move(QEvent::MouseMove, pos, widget->mapToGlobal(pos), Qt::NoButton, buttons,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

void sendPress(QWidget *widget, QPointF pos, Qt::MouseButton button) {
    QMouseEvent press(QEvent::MouseButtonPress, pos, widget->mapToGlobal(pos), button, button,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, pos, widget->mapToGlobal(pos), button,
                        Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &release);
}

} // namespace

class ViewWidgetsTest : public QObject {
    Q_OBJECT
private slots:
    void markerDrawsTwoPixelOutlineInside_data();
    void markerDrawsTwoPixelOutlineInside();
    void markerLetsClicksThrough();

    void surfacesAreNamedSizedAndFocusable();
    void levelViewPresentsItsRetainedImage();
    void levelViewReportsPressesWithExactPosition_data();
    void levelViewReportsPressesWithExactPosition();
    void levelViewReportsMovesWithAndWithoutButtons();
    void paletteShowsTilesetAndReportsPresses();
};

void ViewWidgetsTest::markerDrawsTwoPixelOutlineInside_data() {
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QPoint>("topLeft");
    QTest::newRow("orange cursor on the first cell") << QColor(255, 128, 0) << QPoint(0, 0);
    QTest::newRow("light green start further in") << QColor(128, 255, 128) << QPoint(16, 32);
    QTest::newRow("blue take off the cell grid") << QColor(0, 0, 192) << QPoint(21, 7);
}

void ViewWidgetsTest::markerDrawsTwoPixelOutlineInside() {
    QFETCH(QColor, colour);
    QFETCH(QPoint, topLeft);
    std::unique_ptr<QWidget> surface(solidSurface());
    auto *marker = new Marker(QStringLiteral("shpSomething"), colour, surface.get());
    marker->place(topLeft);
    surface->show();

    QCOMPARE(marker->objectName(), QStringLiteral("shpSomething"));
    QCOMPARE(marker->geometry(), QRect(topLeft, QSize(16, 16)));
    const QImage shot = surface->grab().toImage();
    // One pixel ring around the marker as well, which must stay untouched.
    for (int dy = -1; dy <= 16; ++dy)
        for (int dx = -1; dx <= 16; ++dx) {
            const QPoint p = topLeft + QPoint(dx, dy);
            if (!shot.rect().contains(p))
                continue;
            const bool inSquare = dx >= 0 && dy >= 0 && dx < 16 && dy < 16;
            const bool onOutline = inSquare && (dx < 2 || dy < 2 || dx >= 14 || dy >= 14);
            const QColor expected = onOutline ? colour : Background;
            QVERIFY2(shot.pixelColor(p) == expected,
                     qPrintable(QStringLiteral("pixel %1,%2 of the marker").arg(dx).arg(dy)));
        }
}

void ViewWidgetsTest::markerLetsClicksThrough() {
    LevelView view;
    auto *marker = new Marker(QStringLiteral("levelCursor"), Qt::red, &view);
    marker->place({32, 48});
    view.show();
    QSignalSpy downs(&view, &LevelView::mouseDown);
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, QPoint(40, 56));
    QCOMPARE(downs.size(), 1);
    QCOMPARE(downs.at(0).at(1).toPointF(), QPointF(40, 56));
}

void ViewWidgetsTest::surfacesAreNamedSizedAndFocusable() {
    LevelView view;
    TilePalette palette;
    QCOMPARE(view.objectName(), QStringLiteral("picLevel"));
    QCOMPARE(view.size(), QSize(512, 512));
    QCOMPARE(view.image().size(), QSize(512, 512));
    QVERIFY(view.focusPolicy() & Qt::TabFocus);
    QCOMPARE(palette.objectName(), QStringLiteral("picTiles"));
    QCOMPARE(palette.size(), QSize(128, 512));
    QVERIFY(palette.focusPolicy() & Qt::TabFocus);
}

void ViewWidgetsTest::levelViewPresentsItsRetainedImage() {
    LevelView view;
    view.show();
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = 32;
    level.header[LevelRecord::Height] = 32;
    for (int i = 0; i < 32; ++i)
        level.tile(i, i) = static_cast<std::uint8_t>(i * 5);
    view.drawLevel(level);
    view.present();
    QCOMPARE(view.grab().toImage().convertToFormat(QImage::Format_RGB32), view.image());
}

void ViewWidgetsTest::levelViewReportsPressesWithExactPosition_data() {
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left, whole pixels") << QPointF(17, 33) << Qt::LeftButton;
    QTest::newRow("right, fractional kept") << QPointF(10.5, 20.25) << Qt::RightButton;
    QTest::newRow("middle, last pixel") << QPointF(511, 511) << Qt::MiddleButton;
}

void ViewWidgetsTest::levelViewReportsPressesWithExactPosition() {
    QFETCH(QPointF, pos);
    QFETCH(Qt::MouseButton, button);
    LevelView view;
    view.show();
    QSignalSpy downs(&view, &LevelView::mouseDown);
    sendPress(&view, pos, button);
    QCOMPARE(downs.size(), 1);
    QCOMPARE(downs.at(0).at(0).value<Qt::MouseButton>(), button);
    QCOMPARE(downs.at(0).at(1).toPointF(), pos);
}

void ViewWidgetsTest::levelViewReportsMovesWithAndWithoutButtons() {
    LevelView view;
    view.show();
    QSignalSpy moves(&view, &LevelView::mouseMove);

    sendMove(&view, QPointF(100.5, 7.75), Qt::NoButton);
    QCOMPARE(moves.size(), 1);
    QCOMPARE(moves.at(0).at(0).value<Qt::MouseButtons>(), Qt::MouseButtons(Qt::NoButton));
    QCOMPARE(moves.at(0).at(1).toPointF(), QPointF(100.5, 7.75));

    // With the button held the view keeps reporting outside itself, at negative positions too.
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QTest::mouseMove(&view, QPoint(-20, 600));
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, QPoint(-20, 600));
    QVERIFY(moves.size() >= 2);
    QCOMPARE(moves.last().at(0).value<Qt::MouseButtons>(), Qt::MouseButtons(Qt::LeftButton));
    QCOMPARE(moves.last().at(1).toPointF(), QPointF(-20, 600));
}

void ViewWidgetsTest::paletteShowsTilesetAndReportsPresses() {
    TilePalette palette;
    palette.show();
    palette.present();
    QCOMPARE(palette.grab().toImage().convertToFormat(QImage::Format_RGB32), Tileset::image());

    QSignalSpy downs(&palette, &TilePalette::mouseDown);
    sendPress(&palette, QPointF(127.5, 0.5), Qt::RightButton);
    QCOMPARE(downs.size(), 1);
    QCOMPARE(downs.at(0).at(0).value<Qt::MouseButton>(), Qt::RightButton);
    QCOMPARE(downs.at(0).at(1).toPointF(), QPointF(127.5, 0.5));
}

QTEST_MAIN(ViewWidgetsTest)
#include "ViewWidgetsTest.moc"
