#include "Progress.h"

#include <cstdio>
#include <future>

namespace ZQAPI::zqdev {

std::string Seconds(std::chrono::milliseconds time) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", static_cast<double>(time.count()) / 1000);
    return text;
}

std::chrono::milliseconds WithProgress(Console& console, const std::string& what,
                                       const std::function<void()>& call, std::chrono::milliseconds total) {
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     start);
    };
    const std::string outOf = total > std::chrono::milliseconds(0) ? " of " + Seconds(total) : "";
    std::future<void> done = std::async(std::launch::async, call);
    while (done.wait_for(std::chrono::milliseconds(100)) != std::future_status::ready) {
        console.ShowProgress(what, ", " + Seconds(elapsed()) + outOf);
    }
    console.ShowProgress("");
    done.get();
    return elapsed();
}

}  // namespace ZQAPI::zqdev
