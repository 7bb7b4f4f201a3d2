// Long use of the kit that this program lies in: processes of several threads that scan, re-check, edit, save and load
// the same list at the same time, and others that come and go. Each of the lasting ones compares what it holds after a
// warm-up with what it holds at the end, and counts what failed.
//
//     zq_soak SECONDS          all processes
//     zq_soak ROLE SECONDS     one of them
#include <ZQAPI/ZQDeviceAPI.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "kit/KitLibrary.h"
#include "platform/Process.h"
#include "support/FileBytes.h"
#include "support/Program.h"
#include "support/SampleDevices.h"
#include "support/ScarceResources.h"

namespace ZQAPI::soak {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

// What a process may hold at its end beyond what it held after the warm-up: the allocator's habits, and what is opened
// once when it is first needed.
constexpr std::size_t kMemoryBoundKiB = 8192;
constexpr std::size_t kHandleBound = 4;
// A process that goes abruptly now and then stays, under Wine: its last thread waits in Wine's own NtTerminateProcess for
// a lock of Wine's that went with another thread.
constexpr seconds kLongestVisit{60};
constexpr int kStayingPerMille = ZQ_SOAK_STAYING_PER_MILLE;
constexpr std::size_t kThreadBound = 0;
constexpr std::size_t kThreadLocalBound = 1;

constexpr int kWarmUpShare = 4;             // of the time, one part in so many
constexpr seconds kLongestUntilAtRest{15};  // longer than anything goes on in the background
constexpr std::size_t kLongestList = 32;
constexpr std::string_view kSteadyCamera = "127.0.0.11";  // the scripts keep it switched on

enum Operation { kScan, kRecheck, kLoad, kSave, kEdit, kQuery, kNofOperations };

// The results that an operation may have while cameras and other threads' devices come and go.
constexpr struct {
    const char* name;
    int alsoAccepted;
} kOperations[kNofOperations] = {
    {"scan", ZQ_OK}, {"re-check", ZQ_ERR_DEVICE_NOT_FOUND}, {"load", ZQ_OK}, {"save", ZQ_OK},
    {"edit", ZQ_OK}, {"query", ZQ_ERR_BAD_INDEX},
};

// How often each operation had which result. Counting is thread-safe.
class Tally {
public:
    // The result, for the caller to go by.
    int Count(Operation operation, int result) {
        const std::lock_guard lock(m_mutex);
        ++m_results[operation][result];
        return result;
    }
    void CountScan(bool hasFoundSteadyCamera) { ++(hasFoundSteadyCamera ? m_found : m_missed); }

    std::size_t NofUnexpected() const {
        std::size_t count = 0;
        for (std::size_t i = 0; i < kNofOperations; ++i) {
            for (const auto& [result, times] : m_results[i]) {
                count += result == ZQ_OK || result == kOperations[i].alsoAccepted ? 0 : times;
            }
        }
        return count;
    }
    // Half the scans at least must have found the camera that is always there: else nothing has been tried.
    bool HasSeenCameras() const { return m_found >= m_missed; }

    // A line per operation: "  re-check: 63 ok, 71 times -500003".
    std::string Text() const {
        std::string text;
        for (std::size_t i = 0; i < kNofOperations; ++i) {
            std::string line;
            for (const auto& [result, times] : m_results[i]) {
                line += (line.empty() ? "" : ", ") + std::to_string(times) +
                        (result == ZQ_OK ? " ok" : " times " + std::to_string(result));
            }
            text += line.empty() ? "" : std::string("  ") + kOperations[i].name + ": " + line + "\n";
        }
        if (m_found + m_missed > 0) {
            text += "  steady camera found " + std::to_string(m_found) + " times, missed " +
                    std::to_string(m_missed) + "\n";
        }
        return text + "  unexpected failures: " + std::to_string(NofUnexpected()) + "\n";
    }

private:
    std::mutex m_mutex;
    std::array<std::map<int, std::size_t>, kNofOperations> m_results;
    std::atomic<std::size_t> m_found{0};
    std::atomic<std::size_t> m_missed{0};
};

// What one thread works with.
struct Worker {
    Tally& tally;
    std::minstd_rand random;
    std::string ownId;  // of a device that no other thread edits
};

std::vector<ZQDEVICEINFO> Devices(Worker& worker) {
    unsigned count = 0;
    worker.tally.Count(kQuery, ZQDEV_GetNofDevices(&count));
    std::vector<ZQDEVICEINFO> devices;
    ZQDEVICEINFO device{};
    // The list may get shorter meanwhile.
    while (devices.size() < count &&
           worker.tally.Count(kQuery, ZQDEV_GetDevice(static_cast<unsigned>(devices.size()), &device)) ==
               ZQ_OK) {
        devices.push_back(device);
    }
    return devices;
}

void Scan(Worker& worker) {
    worker.tally.Count(kScan, worker.random() % 2 == 0
                                  ? ZQDEV_ScanForDevices()
                                  : ZQDEV_ScanForDevicesWithScanner(ZQDEV_SCANNER_ZQ_UDP));
}

void Load(Worker& worker) {
    worker.tally.Count(kLoad, ZQDEV_LoadDeviceConfig());
}

void Recheck(Worker& worker) {
    std::vector<ZQDEVICEINFO> devices = Devices(worker);
    if (devices.empty()) {
        return;
    }
    ZQDEVICEINFO& device = devices[worker.random() % devices.size()];
    worker.tally.Count(kRecheck, ZQDEV_RescanDevice(&device));
    char module[ZQDEV_FIELD_SIZE];
    worker.tally.Count(kQuery, ZQDEV_GetDefaultCCM("ZQNetCam-2M", module, sizeof module - 1));
}

// Scans and saves; in its process nobody else changes the list. One that is empty could not be read back.
void Survey(Worker& worker) {
    Scan(worker);
    const std::vector<ZQDEVICEINFO> devices = Devices(worker);
    worker.tally.CountScan(std::any_of(devices.begin(), devices.end(), [](const ZQDEVICEINFO& device) {
        return device.UsedAddress == kSteadyCamera;
    }));
    if (devices.empty()) {
        worker.tally.Count(kEdit, ZQDEV_AddDevice(test::SampleDevice(worker.ownId).GetRecord()));
    }
    worker.tally.Count(kSave, ZQDEV_SaveDeviceConfig());
    Load(worker);
}

// Adds a device, saves, removes it and saves; what others have added too much goes as well.
void Edit(Worker& worker) {
    worker.tally.Count(kEdit, ZQDEV_AddDevice(test::SampleDevice(worker.ownId).GetRecord()));
    worker.tally.Count(kSave, ZQDEV_SaveDeviceConfig());
    const std::vector<ZQDEVICEINFO> devices = Devices(worker);
    for (std::size_t i = kLongestList; i < devices.size(); ++i) {
        worker.tally.Count(kEdit, ZQDEV_RemoveDevice(devices[i].DeviceID));
    }
    worker.tally.Count(kEdit, ZQDEV_RemoveDevice(worker.ownId.c_str()));
    worker.tally.Count(kSave, ZQDEV_SaveDeviceConfig());
}

using Step = void (*)(Worker&);

// What the threads of a process do, again and again.
struct Role {
    const char* name;
    std::vector<Step> threads;
};
const Role kRoles[] = {
    {"survey", {Survey, Recheck, Recheck}},
    {"scan", {Scan, Scan, Recheck, Load}},
    {"list", {Edit, Edit, Load}},
};
constexpr std::string_view kVisit = "visit";

void Run(const Role& role, Clock::duration time, Tally& tally) {
    const auto end = Clock::now() + time;
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < role.threads.size(); ++i) {
        threads.emplace_back([&, i] {
            Worker worker{tally, std::minstd_rand(static_cast<unsigned>(i + 1)),
                          std::string(role.name) + ":" + std::to_string(i)};
            while (Clock::now() < end) {
                role.threads[i](worker);
            }
        });
    }
}

struct ProcessFigures {
    std::size_t memoryKiB = test::ResidentKiB();
    std::size_t handles = test::OpenHandles();
    std::size_t threads = test::RunningThreads();
    std::size_t threadLocalsLeft = test::FreeThreadLocalIndices();
};

// When no more goes on than did before the first call.
ProcessFigures FiguresAtRest(std::size_t nofThreadsBefore) {
    const auto limit = Clock::now() + kLongestUntilAtRest;
    while (test::RunningThreads() > nofThreadsBefore && Clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return {};
}

// The report's lines, and whether each figure kept within its bound.
bool Compare(std::string& report, const ProcessFigures& start, const ProcessFigures& end) {
    const struct {
        const char* name;
        std::size_t start;
        std::size_t end;
        std::size_t bound;
    } rows[] = {
        {"memory in KiB", start.memoryKiB, end.memoryKiB, kMemoryBoundKiB},
        {"handles", start.handles, end.handles, kHandleBound},
        {"threads", start.threads, end.threads, kThreadBound},
        // So many fewer can be had: said the other way round.
        {"thread-local indices taken since the start", 0,
         start.threadLocalsLeft - std::min(start.threadLocalsLeft, end.threadLocalsLeft), kThreadLocalBound},
    };
    bool isWithin = true;
    for (const auto& row : rows) {
        const bool hasGrown = row.end > row.start + row.bound;
        report += std::string("  ") + row.name + ": " + std::to_string(row.start) + " -> " +
                  std::to_string(row.end) +
                  (hasGrown ? "  GREW BY MORE THAN " + std::to_string(row.bound) : "") + "\n";
        isWithin = isWithin && !hasGrown;
    }
    return isWithin;
}

std::string LibraryFile() {
    return (std::filesystem::path(platform::OwnModulePath()).parent_path() / ZQ_SOAK_LIBRARY).string();
}

int Last(const Role& role, seconds time) {
    const zqdev::KitLibrary library(LibraryFile());
    Tally tally;
    tally.Count(kLoad, ZQDEV_InitLibrary());
    const std::size_t nofThreads = test::RunningThreads();
    Run(role, Clock::duration(time) / kWarmUpShare, tally);
    const ProcessFigures start = FiguresAtRest(nofThreads);
    Run(role, Clock::duration(time) * (kWarmUpShare - 1) / kWarmUpShare, tally);
    const ProcessFigures end = FiguresAtRest(nofThreads);
    ZQDEV_DeInitLibrary();

    std::string report = std::string(role.name) + "\n";
    const bool isWithin = Compare(report, start, end);
    report += tally.Text() + (tally.HasSeenCameras() ? "" : "  TOO FEW CAMERAS FOUND\n");
    std::fputs(report.c_str(), stdout);
    return isWithin && tally.NofUnexpected() == 0 && tally.HasSeenCameras() ? 0 : 1;
}

// Comes, loads, scans and goes; every other one while a thread is within a re-check, without a farewell.
int Visit(bool goesAbruptly) {
    // Not unloaded: a thread may be in it to the end.
    static const auto* const library [[maybe_unused]] = new zqdev::KitLibrary(LibraryFile());
    Tally tally;
    tally.Count(kLoad, ZQDEV_InitLibrary());
    tally.Count(kScan, ZQDEV_ScanForDevices());
    if (goesAbruptly) {
        static std::atomic<bool> isUnderWay{false};
        std::thread([device = test::SampleDevice("gone").GetRecord()]() mutable {
            isUnderWay = true;
            ZQDEV_RescanDevice(&device);
        }).detach();
        while (!isUnderWay) {
            std::this_thread::yield();
        }
    } else {
        ZQDEV_DeInitLibrary();
    }
    if (tally.NofUnexpected() > 0) {
        std::fputs(("visit\n" + tally.Text()).c_str(), stdout);
    }
    return tally.NofUnexpected() == 0 ? 0 : 1;
}

// Its exit status; what it says is passed on in one piece.
int RunProcess(std::string_view role, std::intmax_t argument, seconds limit) {
    const std::string own = platform::OwnModulePath();
    const std::string out = own + "." + std::string(role) + ".out";
    const std::string err = own + "." + std::string(role) + ".err";
    const int status = test::RunProgram(own, {std::string(role), std::to_string(argument)}, out, err, limit);
    for (const std::string& file : {out, err}) {
        std::fputs(test::ReadBytes(file).value_or("").c_str(), stdout);
        std::filesystem::remove(file);
    }
    std::fflush(stdout);
    return status;
}

int Everything(seconds time) {
    const auto end = Clock::now() + time;
    std::atomic<int> failed{0};
    std::vector<std::jthread> processes;
    for (const Role& role : kRoles) {
        processes.emplace_back(
            [&] { failed += RunProcess(role.name, time.count(), time + kLongestVisit) == 0 ? 0 : 1; });
    }
    int visits = 0;
    int stayed = 0;
    for (; Clock::now() < end; ++visits) {
        const int status = RunProcess(kVisit, visits % 2, kLongestVisit);
        stayed += status == test::kHadToBeEnded ? 1 : 0;
        failed += status != 0 && status != test::kHadToBeEnded ? 1 : 0;
    }
    processes.clear();  // waits for them
    std::printf("%d processes came and went, %d of them had to be ended; processes with failures: %d\n",
                visits, stayed, failed.load());
    return failed == 0 && stayed <= (visits * kStayingPerMille + 999) / 1000 ? 0 : 1;
}

int Main(const std::vector<std::string>& arguments) {
    const seconds time(arguments.empty() ? 0 : std::strtol(arguments.back().c_str(), nullptr, 10));
    if (arguments.size() == 1 && time.count() > 0) {
        return Everything(time);
    }
    if (arguments.size() == 2 && arguments[0] == kVisit) {
        return Visit(time.count() == 1);
    }
    for (const Role& role : kRoles) {
        if (arguments.size() == 2 && arguments[0] == role.name) {
            return Last(role, time);
        }
    }
    std::fputs("zq_soak SECONDS\n", stderr);
    return 2;
}

}  // namespace

}  // namespace ZQAPI::soak

int main(int argc, char** argv) {
    return ZQAPI::soak::Main({argv + 1, argv + argc});
}
