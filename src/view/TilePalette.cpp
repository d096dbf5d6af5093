#include "view/TilePalette.h"

#include <QMouseEvent>
#include <QPainter>

TilePalette::TilePalette(const QImage &tileset, QWidget *parent)
    : QWidget(parent), tileset_(tileset) {
    setObjectName(QStringLiteral("picTiles"));
    setFixedSize(tileset_.size());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

void TilePalette::present() {
    repaint();
}

void TilePalette::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.drawImage(event->rect(), tileset_, event->rect());
}

void TilePalette::mousePressEvent(QMouseEvent *event) {
    emit mouseDown(event->button(), event->position());
}
