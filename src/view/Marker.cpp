#include "view/Marker.h"

#include <QPainter>

Marker::Marker(const QString &name, const QColor &colour, QWidget *surface)
    : QWidget(surface), colour_(colour) {
    setObjectName(name);
    resize(Size, Size);
    // Only the outline is painted; the tile below shows through and clicks reach the surface.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setAutoFillBackground(false);
    setFocusPolicy(Qt::NoFocus);
}

void Marker::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(0, 0, Size, LineWidth, colour_);
    painter.fillRect(0, Size - LineWidth, Size, LineWidth, colour_);
    painter.fillRect(0, LineWidth, LineWidth, Size - 2 * LineWidth, colour_);
    painter.fillRect(Size - LineWidth, LineWidth, LineWidth, Size - 2 * LineWidth, colour_);
}
