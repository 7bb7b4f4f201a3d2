#include "vendors/ZQUEyeAdapter.h"

namespace ZQAPI {

namespace {

// The list: its count, then the cameras. All versions have cameras of the same size with these two texts;
// what the oldest leave reserved behind them is not read.
constexpr std::size_t kCount = 0;
constexpr std::size_t kCameras = 4;
constexpr std::size_t kCameraSize = 112;
constexpr std::size_t kCameraSerialNumber = 16;
constexpr std::size_t kCameraModel = 32;
constexpr std::size_t kCameraTextSize = 16;
constexpr std::size_t kSpareRoom = 4096;

// How often the list is read while cameras are being added.
constexpr int kMaxReads = 8;

}  // namespace

CZQUEye::CZQUEye(const CZQString& folder) {
    OpenFirst(folder, kFiles);
}

std::uint32_t CZQUEye::GetNofCameras() {
    std::int32_t counted = 0;
    Call(ZQ_HERE("CZQUEye::GetNofCameras"), m_getNumberOfCameras, &counted);
    std::uint32_t room = CheckCount(ZQ_HERE("CZQUEye::GetNofCameras"), m_getNumberOfCameras,
                                    static_cast<std::uint32_t>(counted));
    m_count = 0;
    if (room == 0) {
        return 0;
    }

    for (int reads = 0; reads < kMaxReads; ++reads) {
        m_list = CZQForeignRecord(kCameras + room * kCameraSize + kSpareRoom);
        m_list.SetNumber(kCount, room);
        const std::int32_t status = m_getCameraList(m_list.GetData());
        const std::uint32_t listed =
            CheckCount(ZQ_HERE("CZQUEye::GetNofCameras"), m_getCameraList, m_list.GetNumber(kCount));
        // More than there is room for is told by the count, whether or not the call fails with it.
        if (listed <= room) {
            Check(ZQ_HERE("CZQUEye::GetNofCameras"), m_getCameraList, status);
            m_count = listed;
            return m_count;
        }
        room = listed;
    }
    ZQ_THROW("CZQUEye::GetNofCameras", ZQ_ERR_VENDOR_LIBRARY, "Function=%s; the list grew %d times",
             m_getCameraList.GetName(), kMaxReads);
}

SUEyeCamera CZQUEye::GetCamera(std::uint32_t index) {
    if (index >= m_count) {
        ZQ_THROW("CZQUEye::GetCamera", ZQ_ERR_BAD_INDEX, "Index=%lu", static_cast<unsigned long>(index));
    }
    const std::size_t camera = kCameras + index * kCameraSize;
    return {FieldText(m_list.GetField(camera + kCameraModel, kCameraTextSize)),
            FieldText(m_list.GetField(camera + kCameraSerialNumber, kCameraTextSize))};
}

}  // namespace ZQAPI
