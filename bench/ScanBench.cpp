// What a network scan takes beyond its configured listening time, by number of cameras and by their command
// latency. Runs in a network of its own only: it broadcasts.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "ZQSimUdpServer.h"
#include "support/FileBytes.h"
#include "support/KitCopy.h"

namespace ZQAPI::bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kListeningMs = 500;
constexpr int kRepetitions = 5;
constexpr double kNotFound = -1e9;
constexpr std::uint32_t kFirstAddress = 0x7F010001;  // 127.1.0.1

void Configure(const test::KitCopy& kit) {
    test::WriteSealed(kit.ApiIni(),
                      "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_UDP\r\n"
                      "[DeviceScanner.SCANNER_ZQ_UDP]\r\nNofScanCycles=5\r\nScanTimeMs=" +
                          std::to_string(kListeningMs) + "\r\n");
}

// Time of one scan beyond its listening time; kNotFound when it does not find what is there.
double OverheadMs(test::KitCopy& kit, std::size_t cameras) {
    const auto start = std::chrono::steady_clock::now();
    const int result = ZQ_CALL(kit, ZQDEV_ScanForDevices);
    const Milliseconds took = std::chrono::steady_clock::now() - start;
    unsigned count = 0;
    ZQ_CALL(kit, ZQDEV_GetNofDevices, &count);
    return result == ZQ_OK && count == cameras ? took.count() - kListeningMs : kNotFound;
}

// The scans' overheads as one line of the table; false when one did not find every camera.
bool Measure(test::KitCopy& kit, std::size_t cameras, const char* latency) {
    std::vector<double> overheads;
    for (int i = 0; i < kRepetitions; ++i) {
        overheads.push_back(OverheadMs(kit, cameras));
    }
    std::sort(overheads.begin(), overheads.end());
    std::printf("%8zu %12s %12.2f %12.2f %12.2f\n", cameras, latency, overheads.front(),
                overheads[overheads.size() / 2], overheads.back());
    return overheads.front() != kNotFound;
}

bool Measure(test::KitCopy& kit, std::size_t cameras, std::chrono::milliseconds latency) {
    sim::CZQSimUdpServer server(sim::MakeCameras(cameras, kFirstAddress, 0xFF000000), {});
    sim::CZQSimFaults faults;
    faults.command.delay = {latency, latency};
    server.SetFaults(faults);
    return Measure(kit, cameras, std::to_string(latency.count()).c_str());
}

int Main() {
    test::KitCopy kit;
    Configure(kit);
    if (ZQ_CALL(kit, ZQDEV_InitLibrary) != ZQ_OK) {
        std::printf("the kit does not initialise\n");
        return 1;
    }
    std::printf("\nTime of a scan beyond its listening time of %d ms, %d scans each\n", kListeningMs,
                kRepetitions);
    std::printf("%8s %12s %12s %12s %12s\n", "cameras", "latency [ms]", "min [ms]", "median [ms]",
                "max [ms]");
    bool allFound = Measure(kit, 0, "-");
    for (const std::size_t cameras : {1, 16, 64, 256}) {
        for (const int latencyMs : {1, 20}) {
            allFound = Measure(kit, cameras, std::chrono::milliseconds(latencyMs)) && allFound;
        }
    }
    if (!allFound) {
        std::printf("not every scan found every camera\n");
    }
    return allFound ? 0 : 1;
}

}  // namespace
}  // namespace ZQAPI::bench

int main() {
    return ZQAPI::bench::Main();
}
