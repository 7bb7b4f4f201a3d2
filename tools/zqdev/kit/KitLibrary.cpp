#include "kit/KitLibrary.h"

#include <ZQAPI/ZQDeviceAPI.h>

#include <memory>

#include "Failure.h"
#include "foundation/ZQException.h"

// X(function, parameters, arguments) for each function of the library.
#define ZQDEV_FUNCTIONS(X)                                                                            \
    X(ZQDEV_InitLibrary, (), ())                                                                      \
    X(ZQDEV_DeInitLibrary, (), ())                                                                    \
    X(ZQDEV_GetNofDevices, (unsigned int* count), (count))                                            \
    X(ZQDEV_GetDevice, (unsigned int index, ZQDEVICEINFO* device), (index, device))                   \
    X(ZQDEV_AddDevice, (ZQDEVICEINFO device), (device))                                               \
    X(ZQDEV_RemoveDevice, (const char* deviceId), (deviceId))                                         \
    X(ZQDEV_ModifyDevice, (ZQDEVICEINFO device), (device))                                            \
    X(ZQDEV_SaveDeviceConfig, (), ())                                                                 \
    X(ZQDEV_LoadDeviceConfig, (), ())                                                                 \
    X(ZQDEV_GetDefaultCCM, (const char* type, char* buffer, unsigned int size), (type, buffer, size)) \
    X(ZQDEV_GetDefaultIAM, (const char* type, char* buffer, unsigned int size), (type, buffer, size)) \
    X(ZQDEV_GetNofSupportedCCMs, (const char* type, unsigned int* count), (type, count))              \
    X(ZQDEV_GetSupportedCCM, (const char* type, unsigned int index, char* buffer, unsigned int size), \
      (type, index, buffer, size))                                                                    \
    X(ZQDEV_GetNofSupportedIAMs, (const char* type, unsigned int* count), (type, count))              \
    X(ZQDEV_GetSupportedIAM, (const char* type, unsigned int index, char* buffer, unsigned int size), \
      (type, index, buffer, size))                                                                    \
    X(ZQDEV_GetNofSupportedDeviceTypes, (unsigned int* count), (count))                               \
    X(ZQDEV_GetSupportedDevice, (unsigned int index, char* buffer, unsigned int size),                \
      (index, buffer, size))                                                                          \
    X(ZQDEV_ScanForDevices, (), ())                                                                   \
    X(ZQDEV_ScanForDevicesWithScanner, (int scanner), (scanner))                                      \
    X(ZQDEV_RescanDevice, (ZQDEVICEINFO * device), (device))                                          \
    X(ZQDEV_ChangeDeviceNetAddr, (ZQDEVICEINFO device, const char* newAddress), (device, newAddress))

// NOLINTBEGIN(bugprone-macro-parentheses): names and parameter lists can't be put into parentheses of their own

namespace {

// The library's functions, by their names.
struct Functions {
    explicit Functions(ZQAPI::CZQDynamicDLL& kit) : library(kit) {}

    ZQAPI::CZQDynamicDLL& library;

#define ZQDEV_ENTRY_POINT(function, parameters, arguments) \
    ZQAPI::CZQEntryPoint<decltype(::function)> function{library, #function};
    ZQDEV_FUNCTIONS(ZQDEV_ENTRY_POINT)
#undef ZQDEV_ENTRY_POINT
};

// Null while no library is loaded.
std::unique_ptr<Functions> g_functions;

}  // namespace

#define ZQDEV_FORWARDER(function, parameters, arguments)                            \
    int function parameters {                                                       \
        return g_functions == nullptr ? static_cast<int>(ZQ_ERR_LIBRARY_NOT_LOADED) \
                                      : g_functions->function arguments;            \
    }
extern "C" {
ZQDEV_FUNCTIONS(ZQDEV_FORWARDER)
}
#undef ZQDEV_FORWARDER

// NOLINTEND(bugprone-macro-parentheses)

namespace ZQAPI::zqdev {

KitLibrary::KitLibrary(const std::string& file) {
    g_functions = std::make_unique<Functions>(m_library);
    try {
        m_library.OpenLibrary(file);
    } catch (const CZQException& exception) {
        g_functions.reset();
        throw Failure(FailureLine("can't use the library " + file, exception.GetErrorNumber(),
                                  "it says: " + exception.GetExtraText().str()));
    }
}

KitLibrary::~KitLibrary() {
    g_functions.reset();
}

}  // namespace ZQAPI::zqdev
