#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>
#include <utility>

// The console report, plus the ratio of a measured benchmark to its floor, each taken from its
// fastest repetition: the machine may be shared, and the fastest run is the one least
// disturbed. The limit is judged on processor time or on the wall clock, as the caller says;
// the other clock is printed beside it.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    enum class Clock { Cpu, Real };

    RatioReporter(std::string measured, std::string floor, double limit, Clock clock)
        : measured_(std::move(measured)), floor_(std::move(floor)), limit_(limit), clock_(clock) {}

    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            // With only aggregates reported, the median stands in for the runs.
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if ((run.run_type != Run::RT_Iteration && !median) || run.error_occurred)
                continue;
            const std::string &name = run.run_name.function_name;
            keepFastest(cpu_, name, run.GetAdjustedCPUTime());
            keepFastest(real_, name, run.GetAdjustedRealTime());
            unit_ = benchmark::GetTimeUnitString(run.time_unit);
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        if (!cpu_.count(measured_) || !cpu_.count(floor_))
            return;
        ratio_ = ratioOf(clock_ == Clock::Cpu ? cpu_ : real_);
        for (const auto &[label, times] : {std::pair{"cpu time", &cpu_}, {"real time", &real_}})
            std::printf("%s: %s %.1f %s, %s %.1f %s, ratio %.2f\n", label, measured_.c_str(),
                        (*times)[measured_], unit_.c_str(), floor_.c_str(), (*times)[floor_],
                        unit_.c_str(), ratioOf(*times));
        std::printf("judged on %s: ratio %.2f, limit %.2f: %s\n",
                    clock_ == Clock::Cpu ? "cpu time" : "real time", ratio_, limit_,
                    withinLimit() ? "within" : "OVER");
    }

    bool withinLimit() const { return ratio_ >= 0 && ratio_ <= limit_; }

private:
    using Times = std::map<std::string, double>;

    static void keepFastest(Times &times, const std::string &name, double time) {
        auto [it, inserted] = times.try_emplace(name, time);
        if (!inserted)
            it->second = std::min(it->second, time);
    }
    double ratioOf(Times &times) const {
        return times[floor_] > 0 ? times[measured_] / times[floor_] : -1;
    }

    std::string measured_;
    std::string floor_;
    double limit_;
    Clock clock_;
    Times cpu_;
    Times real_;
    std::string unit_;
    double ratio_ = -1;
};

// Runs the benchmarks the command line selects with the reporter. Returns the program's exit
// status: 0 when the ratio kept its limit, 1 when it did not or an argument is unknown.
inline int runAndJudge(int argc, char **argv, RatioReporter &reporter) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return reporter.withinLimit() ? 0 : 1;
}
