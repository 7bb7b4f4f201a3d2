// The device list's work at 10 to 10,000 devices, beside GLib's GKeyFile on the same file in the same run. A save waits
// for the disk once in both, a short one for little else: TMPDIR=/dev/shm leaves that out of both. On a busy machine:
// --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true.
#include <benchmark/benchmark.h>

#include "GlibDeviceFile.h"
#include "RatioReporter.h"
#include "devices/ZQDeviceScan.h"
#include "scanners/ZQScannerTable.h"
#include "support/SampleDevices.h"
#include "support/TempFolder.h"

namespace ZQAPI::bench {
namespace {

using benchmark::State;

std::size_t SizeOf(const State& state) {
    return static_cast<std::size_t>(state.range(0));
}

// A saved list of so many devices.
struct SavedList {
    explicit SavedList(std::size_t count)
        : devices(test::SampleList(count)), path(folder.File("Devices.ini")) {
        devices.SaveToFile(path);
    }

    std::string LastId() const { return devices.GetDevice(devices.GetCount() - 1).GetDeviceID().str(); }

    test::TempFolder folder;
    CZQDeviceList devices;
    std::string path;
};

void LoadOurs(State& state) {
    const SavedList saved(SizeOf(state));
    for (auto _ : state) {
        CZQDeviceList list;
        list.LoadFromFile(saved.path);
        benchmark::DoNotOptimize(list.GetCount());
    }
    state.SetComplexityN(state.range(0));
}

void LoadRival(State& state) {
    const SavedList saved(SizeOf(state));
    for (auto _ : state) {
        benchmark::DoNotOptimize(LoadWithGlib(saved.path));
    }
    state.SetComplexityN(state.range(0));
}

void SaveOurs(State& state) {
    const SavedList saved(SizeOf(state));
    for (auto _ : state) {
        saved.devices.SaveToFile(saved.path);
    }
    state.SetComplexityN(state.range(0));
}

void SaveRival(State& state) {
    const SavedList saved(SizeOf(state));
    const std::vector<ZQDEVICEINFO> devices = LoadWithGlib(saved.path);
    const std::string path = saved.folder.File("rival.ini");
    for (auto _ : state) {
        SaveWithGlib(devices, path);
    }
    state.SetComplexityN(state.range(0));
}

void FindOurs(State& state) {
    const SavedList saved(SizeOf(state));
    const CZQString id = saved.LastId();
    for (auto _ : state) {
        benchmark::DoNotOptimize(saved.devices.FindDeviceByID(id));
    }
    state.SetComplexityN(state.range(0));
}

void FindRival(State& state) {
    const SavedList saved(SizeOf(state));
    const KeyFile file = ParseWithGlib(saved.path);
    const std::string id = saved.LastId();
    for (auto _ : state) {
        benchmark::DoNotOptimize(FindWithGlib(file.get(), id));
    }
    state.SetComplexityN(state.range(0));
}

void MergeOurs(State& state) {
    const CZQDeviceList list = test::SampleList(SizeOf(state));
    const CZQDeviceList both[] = {list, list};
    const CZQStringArray order = ScannerMergeOrder();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CZQDeviceScan::Merge(order, both).GetCount());
    }
    state.SetComplexityN(state.range(0));
}

void MergeRival(State& state) {
    const SavedList saved(SizeOf(state));
    const KeyFile file = ParseWithGlib(saved.path);
    for (auto _ : state) {
        benchmark::DoNotOptimize(MergeWithGlib(file.get(), file.get()));
    }
    state.SetComplexityN(state.range(0));
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond)->Complexity();
}

BENCHMARK(LoadOurs)->Name("load/ours")->Apply(Sizes);
BENCHMARK(LoadRival)->Name("load/rival")->Apply(Sizes);
BENCHMARK(SaveOurs)->Name("save/ours")->Apply(Sizes)->UseRealTime();
BENCHMARK(SaveRival)->Name("save/rival")->Apply(Sizes)->UseRealTime();
BENCHMARK(FindOurs)->Name("find/ours")->Apply(Sizes);
BENCHMARK(FindRival)->Name("find/rival")->Apply(Sizes);
BENCHMARK(MergeOurs)->Name("merge/ours")->Apply(Sizes);
BENCHMARK(MergeRival)->Name("merge/rival")->Apply(Sizes);

}  // namespace
}  // namespace ZQAPI::bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    ZQAPI::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    return 0;
}
