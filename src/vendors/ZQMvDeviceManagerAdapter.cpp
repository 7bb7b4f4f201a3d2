#include "vendors/ZQMvDeviceManagerAdapter.h"

#include "vendors/ZQForeignRecord.h"

namespace ZQAPI {

namespace {

constexpr std::int32_t kSearchBySerialNumber = 1;
constexpr const char* kEvery = "*";
constexpr char kWildcard = '*';
constexpr std::int32_t kDeviceInfo = 0;
constexpr std::int32_t kBufferTooSmall = -2123;

// The record begins with three texts. What follows them lies elsewhere in libraries of another compiler, and
// their records have another size: the library is asked for it.
constexpr std::size_t kSerialNumber = 0;
constexpr std::size_t kInfoProduct = 76;
constexpr std::size_t kInfoTextSize = 38;
constexpr std::size_t kMinInfoSize = kInfoProduct + kInfoTextSize;
constexpr std::size_t kMaxInfoSize = 4096;

}  // namespace

CZQMvDeviceManager::CZQMvDeviceManager(const CZQString& folder) {
    OpenFirst(folder, kFiles);
    // The last step: a manager that could not be initialised is not closed.
    std::int32_t manager = 0;
    Call(ZQ_HERE("CZQMvDeviceManager::CZQMvDeviceManager"), m_init, &manager);
}

CZQMvDeviceManager::~CZQMvDeviceManager() {
    Release(m_close);
}

std::uint32_t CZQMvDeviceManager::GetNofCameras() {
    // The application may have had the library initialised, and its list made, long ago.
    Call(ZQ_HERE("CZQMvDeviceManager::GetNofCameras"), m_updateDeviceList, 0U, 0);
    std::uint32_t count = 0;
    Call(ZQ_HERE("CZQMvDeviceManager::GetNofCameras"), m_getDeviceCount, &count);
    return CheckCount(ZQ_HERE("CZQMvDeviceManager::GetNofCameras"), m_getDeviceCount, count);
}

SMvDeviceManagerCamera CZQMvDeviceManager::GetCamera(std::uint32_t index) {
    std::int32_t device = 0;
    Call(ZQ_HERE("CZQMvDeviceManager::GetCamera"), m_getDevice, &device, kSearchBySerialNumber, kEvery, index,
         kWildcard);
    std::size_t size = GetInfoSize(device);
    CZQForeignRecord info(kMaxInfoSize);
    Call(ZQ_HERE("CZQMvDeviceManager::GetCamera"), m_getDeviceInfoEx, device, kDeviceInfo, info.GetData(),
         &size);
    return {FieldText(info.GetField(kInfoProduct, kInfoTextSize)),
            FieldText(info.GetField(kSerialNumber, kInfoTextSize))};
}

std::size_t CZQMvDeviceManager::GetInfoSize(std::int32_t device) {
    std::size_t size = 0;
    const std::int32_t status = m_getDeviceInfoEx(device, kDeviceInfo, nullptr, &size);
    if (status != kBufferTooSmall) {
        Check(ZQ_HERE("CZQMvDeviceManager::GetCamera"), m_getDeviceInfoEx, status);
    }
    if (size < kMinInfoSize || size > kMaxInfoSize) {
        ZQ_THROW("CZQMvDeviceManager::GetCamera", ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Size=%lu",
                 m_getDeviceInfoEx.GetName(), static_cast<unsigned long>(size));
    }
    return size;
}

}  // namespace ZQAPI
