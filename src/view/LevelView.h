#pragma once

#include <QImage>
#include <QWidget>

struct LevelRecord;

// picLevel: the 512 x 512 level view. It keeps its picture in a retained image; drawLevel
// paints into that image from a tileset and present() puts it, with the markers above it, on
// the screen.
class LevelView : public QWidget {
    Q_OBJECT
public:
    explicit LevelView(QWidget *parent = nullptr);

    void drawLevel(const LevelRecord &level, const QImage &tileset); // does not present
    void present();                                                  // synchronous repaint
    const QImage &image() const { return image_; }

signals:
    void mouseDown(Qt::MouseButton button, QPointF pos);
    void mouseMove(Qt::MouseButtons buttons, QPointF pos);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    QImage image_;
};
