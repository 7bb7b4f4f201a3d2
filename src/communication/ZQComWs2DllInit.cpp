#include "communication/ZQComWs2DllInit.h"

#include <atomic>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

namespace {

std::atomic<int> g_useCount{0};

}  // namespace

void CZQComWs2DllInit::Startup() {
    std::uint8_t low = 0;
    std::uint8_t high = 0;
    platform::SystemErrorCode error = 0;
    if (!platform::StartSocketLibrary(low, high, error)) {
        ZQ_THROW("CZQComWs2DllInit::Startup", ZQ_ERR_SOCKETS_START, "%s", FormatSystemError(error).c_str());
    }
    if (low != 2 || high != 0) {
        platform::StopSocketLibrary();
        ZQ_THROW("CZQComWs2DllInit::Startup", ZQ_ERR_SOCKETS_VERSION);
    }
    ++g_useCount;
}

CZQComWs2DllInit::~CZQComWs2DllInit() {
    // The system counts the starts too, and at none closes every socket of the process. Wine counts without a lock, and
    // would get there too early if each start had its stop: only the last of ours stops it, and what is left of its
    // count keeps the others' sockets open.
    if (--g_useCount == 0) {
        platform::StopSocketLibrary();
    }
}

int CZQComWs2DllInit::GetUseCount() noexcept {
    return g_useCount.load();
}

}  // namespace ZQAPI
