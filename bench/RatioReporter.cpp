#include "RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace ZQAPI::bench {

namespace {

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (!run.error_occurred && run.run_type == Run::RT_Iteration && run.iterations > 0) {
            const double toMicroseconds = 1e6 / static_cast<double>(run.iterations);
            Times& times = m_times[run.run_name.function_name + "/" + run.run_name.args];
            times.elapsed.push_back(run.real_accumulated_time * toMicroseconds);
            times.cpu.push_back(run.cpu_accumulated_time * toMicroseconds);
        }
    }
}

void RatioReporter::PrintRatios() const {
    constexpr std::string_view kOurs = "/ours/";
    std::printf("\n%-24s %14s %14s %8s %8s\n", "", "ours [us]", "GKeyFile [us]", "ratio", "of CPU");
    for (const auto& [name, ours] : m_times) {
        const std::size_t at = name.find(kOurs);
        if (at == std::string::npos) {
            continue;
        }
        const std::string size = name.substr(at + kOurs.size());
        const auto rival = m_times.find(name.substr(0, at) + "/rival/" + size);
        if (rival != m_times.end()) {
            const double elapsed = Median(ours.elapsed);
            const double rivals = Median(rival->second.elapsed);
            std::printf("%-24s %14.1f %14.1f %8.3f %8.3f\n", (name.substr(0, at) + " " + size).c_str(),
                        elapsed, rivals, elapsed / rivals, Median(ours.cpu) / Median(rival->second.cpu));
        }
    }
}

}  // namespace ZQAPI::bench
