#include "view/TilePalette.h"

#include "view/Tileset.h"

#include <QMouseEvent>
#include <QPainter>

TilePalette::TilePalette(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picTiles"));
    setFixedSize(Tileset::image().size());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

void TilePalette::present() {
    repaint();
}

void TilePalette::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.drawImage(event->rect(), Tileset::image(), event->rect());
}

void TilePalette::mousePressEvent(QMouseEvent *event) {
    emit mouseDown(event->button(), event->position());
}
