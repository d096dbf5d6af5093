// One cell written by a left-button drag on the level view of a real main window, from the
// move event to the presented view, next to the floor of any such write: one 1 MiB memcpy
// (the size of the view's image) plus one repaint of a bare 512 x 512 widget from a QImage.
// Runs offscreen; the ratio of the two is printed at the end and must stay at or below 1.5.
#include "levelset/LevelRecord.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"

#include "RatioReporter.h"
#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <benchmark/benchmark.h>
#include <cstring>
#include <vector>

namespace {

constexpr int DragCells = 1000;
constexpr int Repetitions = 7;

// The centre of the n-th cell of a drag that snakes along the rows, so every step enters a
// new cell.
QPoint dragCell(int n) {
    const int y = (n / 32) % 32;
    const int x = y % 2 == 0 ? n % 32 : 31 - n % 32;
    return {16 * x + 8, 16 * y + 8};
}

void sendMove(QWidget *view, QPoint pos) {
    QMouseEvent event(QEvent::MouseMove, pos, view->mapToGlobal(pos), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(view, &event);
}

void BM_DragPaintCell(benchmark::State &state) {
    frmMain window;
    window.Form_Load();
    window.levelset.current().header[LevelRecord::Width] = 32;
    window.levelset.current().header[LevelRecord::Height] = 32;
    window.selectedTile = 89;
    window.show();
    QApplication::processEvents();
    LevelView *view = window.picLevel;
    QMouseEvent press(QEvent::MouseButtonPress, dragCell(0), view->mapToGlobal(dragCell(0)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view, &press);

    int n = 1;
    for (auto _ : state) {
        sendMove(view, dragCell(n++));
        // Alternate the tile so every write changes the picture.
        window.selectedTile = window.selectedTile == 89 ? 0 : 89;
    }
    state.counters["cells"] = n - 1;
    // The status text and the cursor were only scheduled for painting; let that happen
    // outside the timed steps.
    QApplication::processEvents();
    if (window.levelset.current().tile(dragCell(1).x() / 16, dragCell(1).y() / 16) != 89)
        state.SkipWithError("the drag wrote nothing");
}

class BareView : public QWidget {
public:
    explicit BareView(const QImage &image) : image_(image) { setFixedSize(512, 512); }

protected:
    void paintEvent(QPaintEvent *event) override {
        QPainter painter(this);
        painter.drawImage(event->rect(), image_, event->rect());
    }

private:
    const QImage &image_;
};

void BM_Floor(benchmark::State &state) {
    QImage image(512, 512, QImage::Format_RGB32);
    image.fill(Qt::white);
    std::vector<uchar> source(image.sizeInBytes(), 0x5a);
    BareView view(image);
    view.show();
    QApplication::processEvents();
    for (auto _ : state) {
        std::memcpy(image.bits(), source.data(), source.size());
        benchmark::ClobberMemory();
        view.repaint();
    }
}

BENCHMARK(BM_DragPaintCell)
    ->Iterations(DragCells)
    ->Repetitions(Repetitions)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Floor)
    ->Iterations(DragCells)
    ->Repetitions(Repetitions)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Processor time: on a shared machine the wall clock also counts other programs' turns.
    RatioReporter reporter("BM_DragPaintCell", "BM_Floor", 1.5, RatioReporter::Clock::Cpu);
    return runAndJudge(argc, argv, reporter);
}
