// What a scan of serial ports takes, beside the time limit of one on which nobody answers: half a second, however many
// there are. A quarter of the ports, and at least one, has a camera.
#include <chrono>
#include <cstdio>
#include <string>

#include "ZQSimSerialServer.h"
#include "support/ComPorts.h"
#include "support/FileBytes.h"
#include "support/KitCopy.h"

namespace ZQAPI::bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double kSilentPortMs = 500;

// False when the scan does not find what is there.
bool Measure(test::KitCopy& kit, std::size_t ports) {
    const std::size_t cameras = (ports + 3) / 4;
    sim::CZQSimSerialServer server(sim::MakeCameras(ports, 0, 0, sim::kSerialCameraType));
    sim::CZQSimPortFaults silent;
    silent.silent = true;
    std::string list;
    for (std::size_t i = 0; i < ports; ++i) {
        test::ComPortFolder::Link(static_cast<std::uint32_t>(i + 1), server.GetPort(i));
        list += std::to_string(i + 1) + ";";
        if (i % 4 != 0) {
            server.SetFaults(i, silent);
        }
    }
    test::WriteSealed(kit.ApiIni(),
                      "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_RS232\r\n"
                      "[DeviceScanner.SCANNER_ZQ_RS232]\r\nCOMPort=1\r\nBaudrate=115200\r\nDatabits=8\r\n"
                      "StopBits=1\r\nParity=NO\r\nHandshake=NO\r\nScanCOMPorts=" +
                          list + "\r\n");

    const auto start = std::chrono::steady_clock::now();
    const int result = ZQ_CALL(kit, ZQDEV_ScanForDevices);
    const Milliseconds took = std::chrono::steady_clock::now() - start;
    unsigned count = 0;
    ZQ_CALL(kit, ZQDEV_GetNofDevices, &count);
    const double limit = cameras < ports ? kSilentPortMs : 0;
    std::printf("%8zu %8zu %12.1f %12.1f %12.1f", ports, cameras, took.count(), limit,
                (took.count() - limit) / static_cast<double>(ports));
    std::printf(limit > 0 ? " %12.3f\n" : "            -\n", took.count() / limit);
    return result == ZQ_OK && count == cameras;
}

int Main() {
    if (!test::ComPort::AreThere()) {
        std::printf("this system has no pseudo-terminals\n");
        return 1;
    }
    test::KitCopy kit;
    if (ZQ_CALL(kit, ZQDEV_InitLibrary) != ZQ_OK) {
        std::printf("the kit does not initialise\n");
        return 1;
    }
    std::printf("\nTime of a scan of serial ports\n%8s %8s %12s %12s %12s %12s\n", "ports", "cameras",
                "took [ms]", "limit [ms]", "over/port", "took/limit");
    bool allFound = true;
    for (const std::size_t ports : {1U, 8U, 32U}) {
        allFound = Measure(kit, ports) && allFound;
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
