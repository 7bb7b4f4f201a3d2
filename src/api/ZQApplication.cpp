// What happens when the library is loaded into a process, and when it is unloaded.
#include "api/ZQApplication.h"

#include "communication/ZQErrorReporter.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQAPILogger.h"
#include "foundation/ZQDllSearchPath.h"
#include "foundation/ZQException.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"
#include "platform/ModuleUnload.h"

namespace ZQAPI {

namespace {

// Runs one step of the library's loading or unloading; each is worth having without the others.
template <class Step>
void Attempt(const char* what, Step&& step) noexcept {
    try {
        step();
    } catch (const CZQException& exception) {
        DebugOutput("ZQSDK: !! %s: %s", what, exception.ToString().c_str());
    } catch (...) {
        DebugOutput("ZQSDK: !! %s", what);
    }
}

class CZQApplication {
public:
    CZQApplication() noexcept {
        Attempt("a folder of the kit could not be added to PATH", AddVendorFolder);
        Attempt("there is no logger", [] { SetGlobalLogger(std::make_unique<CZQAPILogger>("")); });
        platform::SetModuleUnloadHandler(TakeDown);
    }
    CZQApplication(const CZQApplication&) = delete;
    CZQApplication& operator=(const CZQApplication&) = delete;
    ~CZQApplication() {
        m_library.Reset();
        Attempt("the logger could not be taken down", DeleteGlobalLogger);
        Attempt("the library could not be taken down", [] {
            SetErrorReporter(nullptr);
            CZQSdkPaths::ForgetOwnKit();
        });
    }

    CZQDeviceAPI& GetLibrary() noexcept { return m_library; }

private:
    static void TakeDown();

    // The kit brings a vendor's library (FlyCapture2) in a folder of its own, where it is found by name.
    static void AddVendorFolder() {
        const CZQString separator = PathSeparator();
        const CZQDllSearchPath vendor(CZQSdkPaths::OfOwnKit().GetBinPath() + "3dParty" + separator + "PGR" +
                                      separator + "x64" + separator);
    }

    CZQDeviceAPI m_library{SDeviceAPIEnvironment()};
};

// Left alone when the process ends.
CZQNoDestructor<CZQApplication> g_application;

void CZQApplication::TakeDown() {
    g_application.Destroy();
}

}  // namespace

CZQDeviceAPI& Library() noexcept {
    return g_application.Get().GetLibrary();
}

}  // namespace ZQAPI
