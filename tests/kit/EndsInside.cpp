// A process that ends while another thread is inside an exported function, in a vendor's call that does not
// come back.
//     ends_inside rescan|scan
// A fault shows as a crash, or as a process that never ends and runs into CTest's time limit.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include <ZQAPI/ZQDeviceAPI.h>

#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQNoDestructor.h"
#include "support/StandIns.h"

namespace {

using namespace ZQAPI;

}  // namespace

int main(int argc, char** argv) {
    const bool isRescan = argc == 2 && std::strcmp(argv[1], "rescan") == 0;
    const test::StandIns standIns;
    const test::StandInPath path;
    standIns.Play("[ueye]\nBlockingCall=is_GetNumberOfCameras\nBlockMs=3600000\nTraceFile=" +
                  standIns.TraceFile() + "\n");

    // Never unloaded: only the end of the process ends it.
    static CZQNoDestructor<CZQDynamicDLL> library(ZQ_TEST_KIT "/" ZQ_TEST_LIBRARY);
    if (library.Get().Find<decltype(ZQDEV_InitLibrary)>("ZQDEV_InitLibrary")() != ZQ_OK) {
        std::fputs("the library can't be initialised\n", stderr);
        return 1;
    }
    std::thread([isRescan] {
        if (isRescan) {
            ZQDEVICEINFO device{};
            std::strcpy(device.UsedScanner, ZQDEV_SCANNER_NAME_IDS_UEYE);
            library.Get().Find<decltype(ZQDEV_RescanDevice)>("ZQDEV_RescanDevice")(&device);
        } else {
            library.Get().Find<decltype(ZQDEV_ScanForDevicesWithScanner)>("ZQDEV_ScanForDevicesWithScanner")(
                ZQDEV_SCANNER_IDS_UEYE);
        }
    }).detach();
    while (standIns.Traced().find("is_GetNumberOfCameras") == std::string::npos) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return 0;
}
