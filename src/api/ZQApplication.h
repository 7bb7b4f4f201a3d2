#pragma once

#include "api/ZQDeviceAPIImpl.h"

namespace ZQAPI {

// The one device interface of this library, made when the library is loaded into a process and gone when it
// is unloaded; the end of the process leaves it as it is.
CZQDeviceAPI& Library() noexcept;

}  // namespace ZQAPI
