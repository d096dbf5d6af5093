// kstool check over 10,000 levelset files in one process, next to cat of the same files: the
// cost of reading every file with the editor's reader and checking it, against the floor of
// opening and reading them at all. Both run as child processes with output to /dev/null; the
// ratio of the fastest runs is printed at the end and must stay at or below 2.
#include "levelset/LevelsetFile.h"

#include "ChildProcess.h"
#include "RatioReporter.h"
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int FileCount = 10000;
constexpr int Repetitions = 5;

std::string kstoolPath;
std::vector<std::string> files;

// Levelsets of 1..8 levels of random sizes and tiles; some break the holes-and-guards limits,
// so the check has findings to write as well.
void makeFiles(const QString &folder) {
    std::mt19937 generator(2024);
    const auto pick = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(generator);
    };
    for (int i = 0; i < FileCount; ++i) {
        Levelset levelset;
        levelset.levelCount = static_cast<std::uint8_t>(pick(1, 8));
        for (int l = 0; l < levelset.levelCount; ++l) {
            LevelRecord &level = levelset.levels[l];
            level.header[LevelRecord::Width] = static_cast<std::uint8_t>(pick(12, 32));
            level.header[LevelRecord::Height] = static_cast<std::uint8_t>(pick(8, 32));
            for (std::uint8_t &tile : level.tiles)
                tile = static_cast<std::uint8_t>(pick(0, 177));
        }
        const QString path = QDir(folder).filePath(
            QStringLiteral("zkstl%1.kst").arg(i % 1000, 3, 10, QLatin1Char('0')));
        const QString unique = QDir(folder).filePath(QStringLiteral("%1").arg(i / 1000));
        QDir().mkpath(unique);
        const QString file = unique + QLatin1Char('/') + QFileInfo(path).fileName();
        QFile out(file);
        out.open(QIODevice::WriteOnly);
        out.write(writeLevelset(levelset, file));
        files.push_back(file.toStdString());
    }
}

// One process over every file; check exits 1 because some files break a limit.
void measure(benchmark::State &state, const std::string &program,
             const std::vector<std::string> &leading) {
    std::vector<std::string> command{program};
    command.insert(command.end(), leading.begin(), leading.end());
    command.insert(command.end(), files.begin(), files.end());
    measureChildren(state, {command}, 1, "files/s", FileCount);
}

void BM_Cat(benchmark::State &state) {
    measure(state, "cat", {});
}

void BM_KstoolCheck(benchmark::State &state) {
    measure(state, kstoolPath, {"check"});
}

BENCHMARK(BM_Cat)
    ->UseManualTime()
    ->Iterations(3)
    ->Repetitions(Repetitions)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_KstoolCheck)
    ->UseManualTime()
    ->Iterations(3)
    ->Repetitions(Repetitions)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    kstoolPath = kstoolProgram(argv[0]);
    QTemporaryDir folder;
    makeFiles(folder.path());

    // The children's time is only seen by the wall clock.
    RatioReporter reporter("BM_KstoolCheck", "BM_Cat", 2.0, RatioReporter::Clock::Real);
    return runAndJudge(argc, argv, reporter);
}
