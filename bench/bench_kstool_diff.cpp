// kstool diff of 1,000 pairs of full eight-level levelsets, one process per pair as git or a
// designer runs it, next to cmp of the same pairs: the cost of reading both files with the
// editor's reader and naming every change, against the floor of starting a program that
// compares two files at all. Both run as child processes with output to /dev/null, process
// start included; the ratio of the fastest runs is printed at the end and must stay at or
// below 3.
#include "levelset/LevelsetFile.h"

#include "ChildProcess.h"
#include "RatioReporter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int PairCount = 1000;
constexpr int Repetitions = 5;

std::string kstoolPath;
std::vector<std::pair<std::string, std::string>> pairs;

std::string writeFile(const QString &path, const Levelset &levelset) {
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(writeLevelset(levelset, path));
    return path.toStdString();
}

// Eight levels of 32 x 32 random tiles, and the same with a few cells repainted and, in some
// pairs, a header value changed: a designer's edit of a full levelset.
void makePairs(const QString &folder) {
    std::mt19937 generator(2025);
    const auto pick = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(generator);
    };
    for (int i = 0; i < PairCount; ++i) {
        Levelset levelset;
        levelset.levelCount = Levelset::MaxLevels;
        for (LevelRecord &level : levelset.levels) {
            level.header[LevelRecord::Width] = level.header[LevelRecord::Height] = 32;
            for (std::uint8_t &tile : level.tiles)
                tile = static_cast<std::uint8_t>(pick(0, 177));
        }
        const QDir dir(folder);
        const std::string older =
            writeFile(dir.filePath(QStringLiteral("old%1.kst").arg(i)), levelset);
        for (int cell = pick(1, 30); cell > 0; --cell)
            levelset.levels[pick(0, 7)].tile(pick(0, 31), pick(0, 31)) =
                static_cast<std::uint8_t>(pick(0, 177));
        if (i % 3 == 0)
            levelset.levels[pick(0, 7)].header[LevelRecord::Time] =
                static_cast<std::uint8_t>(pick(0, 255));
        pairs.emplace_back(older,
                           writeFile(dir.filePath(QStringLiteral("new%1.kst").arg(i)), levelset));
    }
}

// One process per pair. Both programs exit 1 for files that differ, 0 for the rare pair whose
// repainting changed nothing.
void measure(benchmark::State &state, const std::vector<std::string> &leading) {
    std::vector<std::vector<std::string>> commands;
    for (const auto &[older, newer] : pairs) {
        commands.push_back(leading);
        commands.back().push_back(older);
        commands.back().push_back(newer);
    }
    measureChildren(state, commands, 1, "pairs/s", PairCount);
}

void BM_Cmp(benchmark::State &state) {
    measure(state, {"cmp"});
}

void BM_KstoolDiff(benchmark::State &state) {
    measure(state, {kstoolPath, "diff"});
}

BENCHMARK(BM_Cmp)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(Repetitions)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_KstoolDiff)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(Repetitions)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    kstoolPath = kstoolProgram(argv[0]);
    QTemporaryDir folder;
    makePairs(folder.path());

    // The children's time is only seen by the wall clock.
    RatioReporter reporter("BM_KstoolDiff", "BM_Cmp", 3.0, RatioReporter::Clock::Real);
    return runAndJudge(argc, argv, reporter);
}
