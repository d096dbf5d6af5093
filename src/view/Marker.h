#pragma once

#include <QColor>
#include <QWidget>

// A 16 x 16 square outline, 2 pixels wide and drawn inside the square, lying above a picture
// surface. Its position is its top-left corner in the surface's pixels; clicks pass through.
class Marker : public QWidget {
    Q_OBJECT
public:
    static constexpr int Size = 16;
    static constexpr int LineWidth = 2;

    Marker(const QString &name, const QColor &colour, QWidget *surface);

    void place(QPoint topLeft) { move(topLeft); }
    QColor colour() const { return colour_; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor colour_;
};
