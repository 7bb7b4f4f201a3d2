#include "vendors/ZQMvDeviceManager.h"

#include "vendors/ZQForeignRecord.h"

namespace ZQAPI {

namespace {

constexpr const char* kNames[] = {"DMR_Init",
                                  "DMR_Close",
                                  "DMR_UpdateDeviceList",
                                  "DMR_GetDeviceCount",
                                  "DMR_GetDevice",
                                  "DMR_GetDeviceInfoEx",
                                  ""};

using Init = std::int32_t (*)(std::int32_t* manager);
using Close = std::int32_t (*)();
using UpdateDeviceList = std::int32_t (*)(std::uint32_t reserved, std::int32_t reserved2);
using GetDeviceCount = std::int32_t (*)(std::uint32_t* count);
using GetDevice = std::int32_t (*)(std::int32_t* device, std::int32_t searchMode, const char* pattern,
                                   std::uint32_t number, char wildcard);
using GetDeviceInfoEx = std::int32_t (*)(std::int32_t device, std::int32_t infoType, void* info,
                                         std::size_t* size);

constexpr std::int32_t kSearchBySerialNumber = 1;
constexpr const char* kEvery = "*";
constexpr char kWildcard = '*';
constexpr std::int32_t kDeviceInfo = 0;
constexpr std::int32_t kBufferTooSmall = -2123;

// The record begins with three texts. What follows them lies elsewhere in libraries of another compiler, and
// their records have another size: the library is asked for it.
constexpr std::size_t kSerialNumber = 0;
constexpr std::size_t kProduct = 76;
constexpr std::size_t kTextSize = 38;
constexpr std::size_t kMinInfoSize = kProduct + kTextSize;
constexpr std::size_t kMaxInfoSize = 4096;

}  // namespace

CZQMvDeviceManager::CZQMvDeviceManager(const CZQString& folder) {
    OpenFirst(folder, {"mvDeviceManager_x64.dll", "mvDeviceManager.dll", "libmvDeviceManager.so"}, kNames,
              m_slots.data());
    // The last step: a manager that could not be initialised is not closed.
    std::int32_t manager = 0;
    Call<Init>(ZQ_HERE("CZQMvDeviceManager::CZQMvDeviceManager"), kInit, &manager);
}

CZQMvDeviceManager::~CZQMvDeviceManager() {
    CheckRelease(kNames[kClose], reinterpret_cast<Close>(m_slots[kClose])());
}

template <class Function, class... Arguments>
void CZQMvDeviceManager::Call(const SourceLocation& here, Slot slot, Arguments... arguments) {
    Check(here, kNames[slot], reinterpret_cast<Function>(m_slots[slot])(arguments...));
}

std::uint32_t CZQMvDeviceManager::GetNofCameras() {
    const SourceLocation here = ZQ_HERE("CZQMvDeviceManager::GetNofCameras");
    // The application may have had the library initialised, and its list made, long ago.
    Call<UpdateDeviceList>(here, kUpdateDeviceList, 0U, 0);
    std::uint32_t count = 0;
    Call<GetDeviceCount>(here, kGetDeviceCount, &count);
    return CheckCount(here, kNames[kGetDeviceCount], count);
}

SMvCamera CZQMvDeviceManager::GetCamera(std::uint32_t index) {
    const SourceLocation here = ZQ_HERE("CZQMvDeviceManager::GetCamera");
    std::int32_t device = 0;
    Call<GetDevice>(here, kGetDevice, &device, kSearchBySerialNumber, kEvery, index, kWildcard);
    std::size_t size = GetInfoSize(here, device);
    CZQForeignRecord info(kMaxInfoSize);
    Call<GetDeviceInfoEx>(here, kGetDeviceInfoEx, device, kDeviceInfo, info.GetData(), &size);
    return {FieldText(info.GetField(kProduct, kTextSize)),
            FieldText(info.GetField(kSerialNumber, kTextSize))};
}

std::size_t CZQMvDeviceManager::GetInfoSize(const SourceLocation& here, std::int32_t device) {
    std::size_t size = 0;
    const auto getInfo = reinterpret_cast<GetDeviceInfoEx>(m_slots[kGetDeviceInfoEx]);
    const std::int32_t status = getInfo(device, kDeviceInfo, nullptr, &size);
    if (status != kBufferTooSmall) {
        Check(here, kNames[kGetDeviceInfoEx], status);
    }
    if (size < kMinInfoSize || size > kMaxInfoSize) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Size=%lu", kNames[kGetDeviceInfoEx],
                           static_cast<unsigned long>(size));
    }
    return size;
}

}  // namespace ZQAPI
