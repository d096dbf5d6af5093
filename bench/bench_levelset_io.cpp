// Writing and reading the largest levelset: eight levels of 32 x 32 (8,372 bytes), in memory
// and through files.
#include "levelset/LevelsetFile.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

Levelset fullLevelset() {
    Levelset levelset;
    levelset.levelCount = Levelset::MaxLevels;
    for (LevelRecord &level : levelset.levels) {
        level.header[LevelRecord::Width] = LevelRecord::GridSize;
        level.header[LevelRecord::Height] = LevelRecord::GridSize;
        for (std::size_t i = 0; i < level.tiles.size(); ++i)
            level.tiles[i] = std::uint8_t(i * 7 % 178);
    }
    return levelset;
}

const QString MemoryPath = QStringLiteral("/levels/zkstlbig.kst");

void writeInMemory(benchmark::State &state) {
    const Levelset levelset = fullLevelset();
    for (auto _ : state)
        benchmark::DoNotOptimize(writeLevelset(levelset, MemoryPath));
    state.SetBytesProcessed(state.iterations() * LevelsetFileMaxSize);
}
BENCHMARK(writeInMemory);

void readInMemory(benchmark::State &state) {
    const QByteArray bytes = writeLevelset(fullLevelset(), MemoryPath);
    Levelset levelset;
    for (auto _ : state) {
        levelset.reset();
        benchmark::DoNotOptimize(readLevelset(levelset, bytes));
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(readInMemory);

void saveToFile(benchmark::State &state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("zkstlbig.kst"));
    const Levelset levelset = fullLevelset();
    for (auto _ : state)
        if (!saveLevelsetFile(levelset, path).ok())
            state.SkipWithError("save failed");
    state.SetBytesProcessed(state.iterations() * LevelsetFileMaxSize);
}
BENCHMARK(saveToFile);

void readFromFile(benchmark::State &state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("zkstlbig.kst"));
    if (!saveLevelsetFile(fullLevelset(), path).ok()) {
        state.SkipWithError("save failed");
        return;
    }
    Levelset levelset;
    for (auto _ : state) {
        levelset.reset();
        if (!readLevelsetFile(levelset, path))
            state.SkipWithError("read failed");
    }
    state.SetBytesProcessed(state.iterations() * LevelsetFileMaxSize);
}
BENCHMARK(readFromFile);

} // namespace

BENCHMARK_MAIN();
