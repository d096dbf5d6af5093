// drawLevel of a full 32 x 32 level next to one plain 1 MiB memcpy, the same number of bytes
// written in a single call. The ratio of the two is the cost of copying tile by tile.
#include "levelset/LevelRecord.h"
#include "view/Tileset.h"
#include "view/drawLevel.h"

#include "RatioReporter.h"
#include <QGuiApplication>
#include <QImage>

#include <benchmark/benchmark.h>
#include <cstring>
#include <vector>

namespace {

LevelRecord fullLevel() {
    LevelRecord level;
    level.reset();
    level.header[LevelRecord::Width] = 32;
    level.header[LevelRecord::Height] = 32;
    // Ids spread over the whole tileset, so the reads are not all from one cache line.
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y)
            level.tile(x, y) = static_cast<std::uint8_t>((x * 37 + y * 11) % 178);
    return level;
}

void BM_DrawLevelFull(benchmark::State &state) {
    const LevelRecord level = fullLevel();
    QImage target(512, 512, QImage::Format_RGB32);
    Tileset::image(); // loaded once, before timing
    for (auto _ : state) {
        drawLevel(level, target);
        benchmark::DoNotOptimize(target.constBits());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * 512 * 512 * 4);
}

void BM_Memcpy1MiB(benchmark::State &state) {
    constexpr std::size_t Bytes = 512 * 512 * 4;
    std::vector<unsigned char> source(Bytes, 0x5a);
    std::vector<unsigned char> target(Bytes, 0);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), Bytes);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(Bytes));
}

BENCHMARK(BM_DrawLevelFull);
BENCHMARK(BM_Memcpy1MiB);

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // no window: the tileset is a QImage
    QGuiApplication app(argc, argv);
    RatioReporter reporter("BM_DrawLevelFull", "BM_Memcpy1MiB", 1.5, RatioReporter::Clock::Cpu);
    return runAndJudge(argc, argv, reporter);
}
