// What a network scan takes beyond its configured listening time, of time and of processor time, and a re-check in all,
// against a farm of simulated cameras in a process of its own. Runs in a network of its own only (scripts/netns): it broadcasts.
//   bench_scan [CAMERAS LATENCY-MS DISCOVERY-LATENCY-MS LOSS]     all rows, or one scan's: bench_scan 256 20 1 0
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ZQSimUdpServer.h"
#include "support/FileBytes.h"
#include "support/KitCopy.h"

namespace ZQAPI::bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kListeningMs = 500;
constexpr int kLongListeningMs = 10000;
constexpr int kRepetitions = 10;

struct Cameras {
    std::size_t count;
    int latencyMs;
    int discoveryLatencyMs;
    double loss = 0;  // of requests, and of answers
};

std::string ToText(const Cameras& cameras) {
    std::string text = std::to_string(cameras.count) + ", answer after " + std::to_string(cameras.latencyMs) +
                       " ms, first " + std::to_string(cameras.discoveryLatencyMs) + " ms";
    if (cameras.loss > 0) {
        text += ", loss " + std::to_string(static_cast<int>(cameras.loss * 100)) + " %";
    }
    return text;
}

// Cameras that are there as long as the object is.
class Farm {
public:
    explicit Farm(const Cameras& cameras) {
        const std::string fifo = (m_folder.Path() / "ready").string();
        if (mkfifo(fifo.c_str(), S_IRUSR | S_IWUSR) != 0) {
            throw std::runtime_error("no pipe");
        }
        const std::string command = "'" ZQ_BENCH_FARM "' " + std::to_string(cameras.count) + " " +
                                    std::to_string(cameras.latencyMs) + " " +
                                    std::to_string(cameras.discoveryLatencyMs) + " " +
                                    std::to_string(cameras.loss) + " >'" + fifo + "'";
        m_process = popen(command.c_str(), "w");
        std::ifstream ready(fifo);
        for (std::string line; line != "ready";) {
            if (!std::getline(ready, line)) {
                throw std::runtime_error("no cameras: " + command);
            }
        }
    }
    Farm(const Farm&) = delete;
    Farm& operator=(const Farm&) = delete;
    ~Farm() { pclose(m_process); }

private:
    test::TempFolder m_folder;
    std::FILE* m_process = nullptr;
};

void Configure(const test::KitCopy& kit, int listeningMs, const std::string& settings = "") {
    test::WriteSealed(kit.ApiIni(),
                      "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_UDP\r\n"
                      "[DeviceScanner.SCANNER_ZQ_UDP]\r\nNofScanCycles=5\r\nScanTimeMs=" +
                          std::to_string(listeningMs) + "\r\n" + settings);
}

double ProcessorMs() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

struct Series {
    std::vector<double> values;

    double Median() {
        std::sort(values.begin(), values.end());
        return values[values.size() / 2];
    }
    double Least() const { return *std::min_element(values.begin(), values.end()); }
};

void PrintRow(const std::string& what, Series& ms, Series& processorMs, const std::string& found) {
    const double median = ms.Median();
    std::printf("%-44s %9.1f %9.1f %9.1f %9.1f  %s\n", what.c_str(), ms.values.front(), median,
                ms.values.back(), processorMs.Least(), found.c_str());
}

// False when a scan without losses did not find every camera.
bool MeasureScan(test::KitCopy& kit, const Cameras& cameras) {
    const Farm farm(cameras);
    Series beyond;
    Series processor;
    unsigned fewest = static_cast<unsigned>(cameras.count);
    int nofComplete = 0;
    for (int i = 0; i < kRepetitions; ++i) {
        const double processorBefore = ProcessorMs();
        const auto start = std::chrono::steady_clock::now();
        const int result = ZQ_CALL(kit, ZQDEV_ScanForDevices);
        const Milliseconds took = std::chrono::steady_clock::now() - start;
        beyond.values.push_back(took.count() - kListeningMs);
        processor.values.push_back(ProcessorMs() - processorBefore);
        unsigned count = 0;
        ZQ_CALL(kit, ZQDEV_GetNofDevices, &count);
        fewest = std::min(fewest, result == ZQ_OK ? count : 0);
        nofComplete += count == cameras.count ? 1 : 0;
    }
    PrintRow(ToText(cameras), beyond, processor,
             std::to_string(fewest) + " found at least, all " + std::to_string(nofComplete) + " times");
    return fewest == cameras.count || cameras.loss > 0;
}

bool MeasureRecheck(test::KitCopy& kit) {
    const Farm farm({1, 1, 1});
    Configure(kit, kListeningMs);
    ZQDEVICEINFO device{};
    if (ZQ_CALL(kit, ZQDEV_ScanForDevices) != ZQ_OK || ZQ_CALL(kit, ZQDEV_GetDevice, 0U, &device) != ZQ_OK) {
        return false;
    }
    Configure(kit, kLongListeningMs);
    Series times;
    Series processor;
    bool isThere = true;
    for (int i = 0; i < kRepetitions; ++i) {
        const double processorBefore = ProcessorMs();
        const auto start = std::chrono::steady_clock::now();
        isThere = ZQ_CALL(kit, ZQDEV_RescanDevice, &device) == ZQ_OK && isThere;
        times.values.push_back(Milliseconds(std::chrono::steady_clock::now() - start).count());
        processor.values.push_back(ProcessorMs() - processorBefore);
    }
    PrintRow("re-check, listening time 10 s, in all", times, processor,
             isThere ? "found each time" : "NOT FOUND");
    return isThere;
}

// Of a scan bound to a network card, whose subnet leads to every camera. Their addresses are reached by a route, for the
// machine itself may have 32.
bool CountCommandsPerCamera(test::KitCopy& kit) {
    constexpr std::size_t kCameras = 256;
    if (std::system("ip link add card0 type veth peer name card1 && ip link set card1 up && "
                    "ip address add 10.8.0.1/16 dev card0 && ip link set card0 up && "
                    "ip route add local 10.8.128.0/17 dev card0") != 0) {
        return false;
    }
    const sim::CZQSimUdpServer server(sim::MakeCameras(kCameras, 0x0A088001, 0xFFFF0000), {});
    Configure(kit, kListeningMs, "BindToNetworkCard=true\r\n");
    ZQ_CALL(kit, ZQDEV_ScanForDevices);
    std::uint64_t most = 0;
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < kCameras; ++i) {
        const std::uint64_t commands = server.GetCounts(i).commands;
        most = std::max(most, commands);
        sum += commands;
    }
    unsigned count = 0;
    ZQ_CALL(kit, ZQDEV_GetNofDevices, &count);
    std::printf("commands to each of %zu cameras, bound scan: %.2f on average, %llu at most, %u found\n",
                kCameras, static_cast<double>(sum) / kCameras, static_cast<unsigned long long>(most), count);
    return count == kCameras;
}

int Main(const std::vector<std::string>& arguments) {
    if (std::getenv("ZQ_NETNS") == nullptr) {
        std::printf("bench_scan broadcasts: run it with scripts/netns\n");
        return 1;
    }
    test::KitCopy kit;
    Configure(kit, kListeningMs);
    if (ZQ_CALL(kit, ZQDEV_InitLibrary) != ZQ_OK) {
        std::printf("the kit does not initialise\n");
        return 1;
    }
    std::printf("\nTime of a scan beyond its listening time of %d ms, %d scans each\n%-44s %9s %9s %9s %9s\n",
                kListeningMs, kRepetitions, "", "min [ms]", "median", "max", "CPU, min");
    if (arguments.size() == 4) {
        const Cameras cameras{std::stoul(arguments[0]), std::stoi(arguments[1]), std::stoi(arguments[2]),
                              std::stod(arguments[3])};
        return MeasureScan(kit, cameras) ? 0 : 1;
    }
    bool allFound = true;
    for (const Cameras& cameras :
         {Cameras{0, 20, 1}, Cameras{1, 20, 1}, Cameras{64, 20, 1}, Cameras{256, 20, 1}, Cameras{1000, 20, 1},
          Cameras{4000, 20, 1}, Cameras{256, 1, 1}, Cameras{256, 1, 90}, Cameras{64, 1, 1, 0.05},
          Cameras{64, 1, 1, 0.2}}) {
        allFound = MeasureScan(kit, cameras) && allFound;
    }
    allFound = MeasureRecheck(kit) && allFound;
    allFound = CountCommandsPerCamera(kit) && allFound;
    if (!allFound) {
        std::printf("not every camera was found\n");
    }
    return allFound ? 0 : 1;
}

}  // namespace
}  // namespace ZQAPI::bench

int main(int argc, char** argv) {
    return ZQAPI::bench::Main({argv + 1, argv + argc});
}
