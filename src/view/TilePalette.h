#pragma once

#include <QImage>
#include <QWidget>

// picTiles: the palette, 128 x 512, showing the whole tileset image it is given unchanged.
class TilePalette : public QWidget {
    Q_OBJECT
public:
    explicit TilePalette(const QImage &tileset, QWidget *parent = nullptr);

    void present(); // synchronous repaint

signals:
    void mouseDown(Qt::MouseButton button, QPointF pos);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QImage tileset_;
};
