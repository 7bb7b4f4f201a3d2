#include "vendors/ZQUEye.h"

namespace ZQAPI {

namespace {

constexpr const char* kNames[] = {"is_GetNumberOfCameras", "is_GetCameraList", ""};

using GetNumberOfCameras = std::int32_t (*)(std::int32_t* count);
using GetCameraList = std::int32_t (*)(void* list);

// The list: its count, then the cameras. All versions have cameras of the same size with these two texts;
// what the oldest leave reserved behind them is not read.
constexpr std::size_t kCount = 0;
constexpr std::size_t kCameras = 4;
constexpr std::size_t kCameraSize = 112;
constexpr std::size_t kSerialNumber = 16;
constexpr std::size_t kModel = 32;
constexpr std::size_t kTextSize = 16;
constexpr std::size_t kSpareRoom = 4096;

// How often the list is read while cameras are being added.
constexpr int kMaxReads = 8;

}  // namespace

CZQUEye::CZQUEye(const CZQString& folder) {
    OpenFirst(folder, {"uEye_api_64.dll", "libueye_api.so", "libueye_api.so.1"}, kNames, m_slots.data());
}

std::uint32_t CZQUEye::GetNofCameras() {
    const SourceLocation here = ZQ_HERE("CZQUEye::GetNofCameras");
    std::int32_t counted = 0;
    Check(here, kNames[kGetNumberOfCameras],
          reinterpret_cast<GetNumberOfCameras>(m_slots[kGetNumberOfCameras])(&counted));
    std::uint32_t room = CheckCount(here, kNames[kGetNumberOfCameras], static_cast<std::uint32_t>(counted));
    m_count = 0;
    if (room == 0) {
        return 0;
    }

    for (int reads = 0; reads < kMaxReads; ++reads) {
        m_list = CZQForeignRecord(kCameras + room * kCameraSize + kSpareRoom);
        m_list.SetNumber(kCount, room);
        const std::int32_t status =
            reinterpret_cast<GetCameraList>(m_slots[kGetCameraList])(m_list.GetData());
        const std::uint32_t listed = CheckCount(here, kNames[kGetCameraList], m_list.GetNumber(kCount));
        // More than there is room for is told by the count, whether or not the call fails with it.
        if (listed <= room) {
            Check(here, kNames[kGetCameraList], status);
            m_count = listed;
            return m_count;
        }
        room = listed;
    }
    throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; the list grew %d times",
                       kNames[kGetCameraList], kMaxReads);
}

SUEyeCamera CZQUEye::GetCamera(std::uint32_t index) {
    const SourceLocation here = ZQ_HERE("CZQUEye::GetCamera");
    if (index >= m_count) {
        throw CZQException(here, ZQ_ERR_BAD_INDEX, "Index=%lu", static_cast<unsigned long>(index));
    }
    const std::size_t camera = kCameras + index * kCameraSize;
    return {FieldText(m_list.GetField(camera + kModel, kTextSize)),
            FieldText(m_list.GetField(camera + kSerialNumber, kTextSize))};
}

}  // namespace ZQAPI
