#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace ZQAPI::bench {

// Besides the usual table: for every pair of benchmarks "name/ours/N" and "name/rival/N" how long ours takes
// as a part of the rival's time, both from this one run.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void PrintRatios() const;

private:
    std::map<std::string, double> m_nanoseconds;
};

}  // namespace ZQAPI::bench
