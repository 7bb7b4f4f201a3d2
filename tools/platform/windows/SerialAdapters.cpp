#include "tools/platform/SerialAdapters.h"

namespace ZQAPI::platform {

std::vector<SerialAdapter> ListSerialAdapters() {
    return {};
}

DeviceAccess GetDeviceAccess(const std::string& /*device*/) {
    return {};  // any user may open any port
}

}  // namespace ZQAPI::platform
