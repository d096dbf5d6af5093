#pragma once

#include <QObject>
#include <QRect>
#include <functional>

class QWidget;

// Centres a fixed-size window's frame, title bar included, on an area when the window is first
// shown. A window manager frames the window only after that, and while it does, the platform may
// report passing sizes and frames; so for two seconds the frame is centred again on every move and
// every 50 ms, from the window's fixed size and the latest frame margins, and the last word is a
// settled one. Owned by the window.
class Centring : public QObject {
public:
    Centring(QWidget &window, std::function<QRect()> area);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void keepCentred(int pollsLeft);
    void centre();

    QWidget &window_;
    std::function<QRect()> area_;
    int pollsLeft_ = -1; // -1 until first shown
};
