#include "view/LevelView.h"

#include "view/drawLevel.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
constexpr int Side = 512;
}

LevelView::LevelView(QWidget *parent) : QWidget(parent), image_(Side, Side, QImage::Format_RGB32) {
    setObjectName(QStringLiteral("picLevel"));
    setFixedSize(Side, Side);
    image_.fill(qRgb(192, 192, 192));
    // The retained image covers every pixel, so Qt need not clear the background first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    // The level cursor follows the pointer with no button held too.
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

void LevelView::drawLevel(const LevelRecord &level, const QImage &tileset) {
    ::drawLevel(level, image_, tileset);
}

void LevelView::present() {
    repaint();
}

void LevelView::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.drawImage(event->rect(), image_, event->rect());
}

void LevelView::mousePressEvent(QMouseEvent *event) {
    emit mouseDown(event->button(), event->position());
}

void LevelView::mouseMoveEvent(QMouseEvent *event) {
    emit mouseMove(event->buttons(), event->position());
}
