#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace ZQAPI::bench {

// Besides the usual table: for every pair of benchmarks "name/ours/N" and "name/rival/N" how long ours takes
// as a part of the rival's time, both from this one run, and the same of the processor's time. Of repetitions the median
// counts.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void PrintRatios() const;

private:
    struct Times {
        std::vector<double> elapsed;  // us
        std::vector<double> cpu;
    };

    std::map<std::string, Times> m_times;
};

}  // namespace ZQAPI::bench
