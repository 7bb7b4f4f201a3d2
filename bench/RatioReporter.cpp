#include "RatioReporter.h"

#include <cstdio>

namespace ZQAPI::bench {

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (!run.error_occurred && run.iterations > 0) {
            m_nanoseconds[run.run_name.function_name + "/" + run.run_name.args] =
                run.real_accumulated_time * 1e9 / static_cast<double>(run.iterations);
        }
    }
}

void RatioReporter::PrintRatios() const {
    constexpr std::string_view kOurs = "/ours/";
    std::printf("\n%-24s %14s %14s %8s\n", "", "ours [us]", "GKeyFile [us]", "ratio");
    for (const auto& [name, ours] : m_nanoseconds) {
        const std::size_t at = name.find(kOurs);
        if (at == std::string::npos) {
            continue;
        }
        const std::string size = name.substr(at + kOurs.size());
        const auto rival = m_nanoseconds.find(name.substr(0, at) + "/rival/" + size);
        if (rival != m_nanoseconds.end()) {
            std::printf("%-24s %14.1f %14.1f %8.3f\n", (name.substr(0, at) + " " + size).c_str(), ours / 1000,
                        rival->second / 1000, ours / rival->second);
        }
    }
}

}  // namespace ZQAPI::bench
