// What happens when the library is loaded into a process, and when it is unloaded.
#include "api/ZQApplication.h"

#include "communication/ZQErrorReporter.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQAPILogger.h"
#include "foundation/ZQDllSearchPath.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

class CZQApplication {
public:
    CZQApplication() noexcept {
        try {
            AddVendorFolder();
            SetGlobalLogger(std::make_unique<CZQAPILogger>(""));
        } catch (...) {
            DebugOutput("ZQSDK: !! the library could not be set up");
        }
    }
    CZQApplication(const CZQApplication&) = delete;
    CZQApplication& operator=(const CZQApplication&) = delete;
    ~CZQApplication() {
        m_library.Reset();
        try {
            DeleteGlobalLogger();
            SetErrorReporter(nullptr);
            ForgetSdkPaths();
        } catch (...) {
            DebugOutput("ZQSDK: !! the library could not be taken down");
        }
    }

    CZQDeviceAPI& GetLibrary() noexcept { return m_library; }

private:
    // The kit brings a vendor's library (FlyCapture2) in a folder of its own, where it is found by name.
    static void AddVendorFolder() {
        const CZQString separator = PathSeparator();
        const CZQDllSearchPath vendor(GetBinPath() + "3dParty" + separator + "PGR" + separator + "x64" +
                                      separator);
    }

    CZQDeviceAPI m_library{CZQDeviceAPIEnvironment::OfOwnKit()};
};

CZQApplication g_application;

}  // namespace

CZQDeviceAPI& Library() noexcept {
    return g_application.GetLibrary();
}

}  // namespace ZQAPI
