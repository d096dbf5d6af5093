#include "shell/Centring.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace {
constexpr int Polls = 40;
constexpr int PollInterval = 50; // ms
} // namespace

Centring::Centring(QWidget &window, std::function<QRect()> area)
    : QObject(&window), window_(window), area_(std::move(area)) {
    window.installEventFilter(this);
}

bool Centring::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::Show && pollsLeft_ < 0)
        keepCentred(Polls);
    else if (event->type() == QEvent::Move && pollsLeft_ > 0)
        centre();
    return false;
}

void Centring::keepCentred(int pollsLeft) {
    pollsLeft_ = pollsLeft;
    centre();
    if (pollsLeft > 0)
        QTimer::singleShot(PollInterval, this, [this, pollsLeft] { keepCentred(pollsLeft - 1); });
}

void Centring::centre() {
    const QWindow *handle = window_.windowHandle();
    const QRect area = area_();
    if (!handle || area.isEmpty())
        return;
    QMargins margins = handle->frameMargins();
    if (margins.left() < 0 || margins.top() < 0 || margins.right() < 0 || margins.bottom() < 0)
        margins = QMargins(); // a frame still being made
    QRect frame(QPoint(), window_.minimumSize().grownBy(margins));
    frame.moveCenter(area.center());
    if (frame.topLeft() != handle->framePosition())
        window_.move(frame.topLeft()); // a window's position is its frame's
}
