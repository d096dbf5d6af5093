#pragma once

#include <QFileInfo>
#include <QString>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

// Runs a program (found on PATH when it names no folder) with its standard output thrown away
// and waits for it. Returns the wall time in seconds, start of the process included, or -1
// when it could not start or exited with a status above highestStatus.
inline double runChild(const std::vector<std::string> &arguments, int highestStatus) {
    std::vector<char *> argv;
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    const int spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        return -1;
    int status = 0;
    waitpid(pid, &status, 0);
    const auto end = std::chrono::steady_clock::now();
    if (!WIFEXITED(status) || WEXITSTATUS(status) > highestStatus)
        return -1;
    return std::chrono::duration<double>(end - start).count();
}

// kstool is built into the same folder as the benchmark programs; KSTOOL names another one.
inline std::string kstoolProgram(const char *benchmarkProgram) {
    if (const char *fromEnvironment = std::getenv("KSTOOL"))
        return fromEnvironment;
    return QFileInfo(QString::fromLocal8Bit(benchmarkProgram)).absolutePath().toStdString() +
           "/kstool";
}

// One iteration runs every command line in turn and takes their wall times added up. A child
// that cannot run, or exits above highestStatus, ends the benchmark with an error. The counter
// reports items (files, pairs) per second.
inline void measureChildren(benchmark::State &state,
                            const std::vector<std::vector<std::string>> &commands,
                            int highestStatus, const char *counter, double items) {
    for (auto _ : state) {
        double seconds = 0;
        for (const std::vector<std::string> &command : commands) {
            const double run = runChild(command, highestStatus);
            if (run < 0) {
                state.SkipWithError(("could not run " + command.front()).c_str());
                return;
            }
            seconds += run;
        }
        state.SetIterationTime(seconds);
    }
    state.counters[counter] =
        benchmark::Counter(items, benchmark::Counter::kIsIterationInvariantRate);
}
