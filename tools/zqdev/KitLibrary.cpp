#include "KitLibrary.h"

#include <ZQAPI/ZQDeviceAPI.h>

#include <algorithm>
#include <iterator>

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

namespace {

#define ZQDEV_SLOT(function, parameters, arguments) kSlot_##function,
enum Slot { ZQDEV_FUNCTIONS(ZQDEV_SLOT) kNofSlots };
#undef ZQDEV_SLOT

#define ZQDEV_NAME(function, parameters, arguments) #function,
const char* const kNames[] = {ZQDEV_FUNCTIONS(ZQDEV_NAME) ""};
#undef ZQDEV_NAME
static_assert(std::size(kNames) == 21 + 1);

// The loaded library's functions; null while there is none.
void* g_slots[kNofSlots] = {};

}  // namespace

// NOLINTBEGIN(bugprone-macro-parentheses): parameter lists can't be put into parentheses of their own
#define ZQDEV_FORWARDER(function, parameters, arguments)                                    \
    int function parameters {                                                               \
        void* const target = g_slots[kSlot_##function];                                     \
        return target == nullptr ? static_cast<int>(ZQ_ERR_LIBRARY_NOT_LOADED)              \
                                 : reinterpret_cast<decltype(&function)>(target) arguments; \
    }
// NOLINTEND(bugprone-macro-parentheses)
extern "C" {
ZQDEV_FUNCTIONS(ZQDEV_FORWARDER)
}
#undef ZQDEV_FORWARDER

namespace ZQAPI::zqdev {

KitLibrary::KitLibrary(const std::string& file) {
    try {
        m_library.OpenLibrary(file, kNames, g_slots);
    } catch (const CZQException& exception) {
        std::fill(std::begin(g_slots), std::end(g_slots), nullptr);
        throw Failure(FailureLine("can't use the library " + file, exception.GetErrorNumber(),
                                  "it says: " + exception.GetExtraText().str()));
    }
}

KitLibrary::~KitLibrary() {
    std::fill(std::begin(g_slots), std::end(g_slots), nullptr);
}

}  // namespace ZQAPI::zqdev
