#include "levelset/LevelRecord.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"
#include "view/Tileset.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <map>

namespace {

void send(QWidget *widget, QEvent::Type type, QPointF pos, Qt::MouseButton button,
          Qt::MouseButtons buttons) {
    QMouseEvent event(type, pos, widget->mapToGlobal(pos), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

QImage shot(QWidget &widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

class ViewWidgetsTest : public QObject {
    Q_OBJECT
private slots:
    void surfacesShowTheirPicturesUnderMarkerOutlines() {
        LevelView view;
        LevelRecord level;
        level.reset(); // tiles, and grey beyond them
        view.drawLevel(level, Tileset::image());
        const std::map<QString, std::pair<QColor, QPoint>> markers = {
            {QStringLiteral("levelCursor"), {QColor(255, 128, 0), {0, 0}}},
            {QStringLiteral("shpStart"), {QColor(128, 255, 128), {16, 32}}},
            {QStringLiteral("shpTake"), {QColor(0, 0, 192), {21, 7}}}}; // off the cell grid
        for (const auto &[name, marker] : markers)
            (new Marker(name, marker.first, &view))->place(marker.second);
        view.show();
        view.present();

        const QImage image = shot(view);
        for (int y = 0; y < 512; ++y)
            for (int x = 0; x < 512; ++x) {
                QRgb expected = view.image().pixel(x, y);
                for (const auto &[name, marker] : markers) {
                    const QRect square(marker.second, QSize(16, 16));
                    if (square.contains(x, y) && !square.adjusted(2, 2, -2, -2).contains(x, y))
                        expected = marker.first.rgb();
                }
                if (image.pixel(x, y) != expected)
                    QFAIL(qPrintable(QStringLiteral("pixel %1,%2").arg(x).arg(y)));
            }
        QVERIFY(view.findChild<Marker *>(QStringLiteral("shpTake")));

        const QImage turned = Tileset::image().mirrored(true, true); // the palette's own source
        TilePalette palette(turned);
        palette.show();
        palette.present();
        QCOMPARE(shot(palette), turned);
    }

    void pressesReachTheSurfaceThroughMarkers_data() {
        QTest::addColumn<bool>("palette");
        QTest::addColumn<QPointF>("pos");
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("view, left, whole pixels") << false << QPointF(17, 33) << Qt::LeftButton;
        QTest::newRow("view, right, fraction kept")
            << false << QPointF(10.5, 20.25) << Qt::RightButton;
        QTest::newRow("view, middle, last pixel") << false << QPointF(511, 511) << Qt::MiddleButton;
        QTest::newRow("palette, right, top right")
            << true << QPointF(127.25, 0.5) << Qt::RightButton;
    }

    void pressesReachTheSurfaceThroughMarkers() {
        QFETCH(bool, palette);
        QFETCH(QPointF, pos);
        QFETCH(Qt::MouseButton, button);
        LevelView view;
        TilePalette tiles(Tileset::image());
        QWidget *surface = palette ? static_cast<QWidget *>(&tiles) : &view;
        auto *marker = new Marker(QStringLiteral("cursor"), Qt::red, surface);
        marker->place(QPoint(int(pos.x()) / 16 * 16, int(pos.y()) / 16 * 16));
        surface->show();
        QVERIFY(QTest::qWaitForWindowExposed(surface));
        QSignalSpy downs(surface, SIGNAL(mouseDown(Qt::MouseButton, QPointF)));

        send(surface, QEvent::MouseButtonPress, pos, button, button);
        send(surface, QEvent::MouseButtonRelease, pos, button, Qt::NoButton);
        // Through the window as the platform delivers it, where the marker lies on top.
        QTest::mouseClick(surface->windowHandle(), button, {}, pos.toPoint());
        QCOMPARE(downs.size(), 2);
        QCOMPARE(downs.at(0), (QVariantList{QVariant::fromValue(button), pos}));
        QCOMPARE(downs.at(1), (QVariantList{QVariant::fromValue(button), QPointF(pos.toPoint())}));
    }

    // Moves with no button held move the level cursor; with a button held they arrive from
    // outside the view too, at negative positions, while the pointer is captured.
    void levelViewReportsMovesWithAndWithoutButtons() {
        LevelView view;
        view.show();
        QSignalSpy moves(&view, &LevelView::mouseMove);
        send(&view, QEvent::MouseMove, QPointF(100.5, 7.75), Qt::NoButton, Qt::NoButton);
        send(&view, QEvent::MouseMove, QPointF(-15.5, 600.25), Qt::NoButton, Qt::LeftButton);
        QCOMPARE(moves.size(), 2);
        QCOMPARE(moves.at(0),
                 (QVariantList{QVariant::fromValue(Qt::MouseButtons()), QPointF(100.5, 7.75)}));
        QCOMPARE(moves.at(1), (QVariantList{QVariant::fromValue(Qt::MouseButtons(Qt::LeftButton)),
                                            QPointF(-15.5, 600.25)}));
    }
};

QTEST_MAIN(ViewWidgetsTest)
#include "ViewWidgetsTest.moc"
