// drawLevel of a full 32 x 32 level next to one plain 1 MiB memcpy, the same number of bytes
// written in a single call. The ratio of the two is the cost of copying tile by tile.
#include "levelset/LevelRecord.h"
#include "view/Tileset.h"
#include "view/drawLevel.h"

#include <QGuiApplication>
#include <QImage>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
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

// The console report, plus the ratio of the two benchmarks from the fastest run of each (the
// machine may be shared, and the fastest run is the one least disturbed).
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            // With only aggregates reported, the median stands in for the runs.
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if ((run.run_type != Run::RT_Iteration && !median) || run.error_occurred)
                continue;
            const std::string name = run.run_name.function_name;
            const double cpu = run.GetAdjustedCPUTime();
            auto [it, inserted] = fastest_.try_emplace(name, cpu);
            if (!inserted)
                it->second = std::min(it->second, cpu);
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        const auto draw = fastest_.find("BM_DrawLevelFull");
        const auto copy = fastest_.find("BM_Memcpy1MiB");
        if (draw == fastest_.end() || copy == fastest_.end() || copy->second <= 0)
            return;
        std::printf("drawLevel %.1f us, memcpy 1 MiB %.1f us, ratio %.2f (CPU time)\n",
                    draw->second / 1000.0, copy->second / 1000.0, draw->second / copy->second);
    }

private:
    std::map<std::string, double> fastest_;
};

} // namespace

int main(int argc, char **argv) {
    QGuiApplication app(argc, argv); // the tileset is a QImage from the resources
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
