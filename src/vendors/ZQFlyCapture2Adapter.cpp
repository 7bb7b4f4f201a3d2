#include "vendors/ZQFlyCapture2Adapter.h"

#include "vendors/ZQForeignRecord.h"

namespace ZQAPI {

namespace {

constexpr std::size_t kGuidRoom = 64;
constexpr std::size_t kInfoRoom = 8192;
constexpr std::size_t kModelSize = 512;
// The model begins at 12 in the first versions of the record. In the later ones it begins at 16, and a truth
// value of 0 or 1 stands at 12, which no printable text begins with.
constexpr std::size_t kEarlyModel = 12;
constexpr std::size_t kModel = 16;
constexpr std::uint32_t kMaxTruthValue = 1;

}  // namespace

CZQFlyCapture2::CZQFlyCapture2(const CZQString& folder) {
    OpenFirst(folder, kFiles);
    void* context = nullptr;
    Call(ZQ_HERE("CZQFlyCapture2::CZQFlyCapture2"), m_createContext, &context);
    if (context == nullptr) {
        ZQ_THROW("CZQFlyCapture2::CZQFlyCapture2", ZQ_ERR_VENDOR_LIBRARY, "Function=%s; no context",
                 m_createContext.GetName());
    }
    m_context = Context(context, End{&m_destroyContext});
}

std::uint32_t CZQFlyCapture2::GetNofCameras() {
    std::uint32_t count = 0;
    Call(ZQ_HERE("CZQFlyCapture2::GetNofCameras"), m_getNumOfCameras, m_context.get(), &count);
    return CheckCount(ZQ_HERE("CZQFlyCapture2::GetNofCameras"), m_getNumOfCameras, count);
}

SFlyCapture2Camera CZQFlyCapture2::GetCamera(std::uint32_t index) {
    std::uint32_t serialNumber = 0;
    Call(ZQ_HERE("CZQFlyCapture2::GetCamera"), m_getSerialNumberFromIndex, m_context.get(), index,
         &serialNumber);
    // By its number, not by the index: cameras may have been counted anew in between.
    CZQForeignRecord guid(kGuidRoom);
    Call(ZQ_HERE("CZQFlyCapture2::GetCamera"), m_getCameraFromSerialNumber, m_context.get(), serialNumber,
         guid.GetData());
    Call(ZQ_HERE("CZQFlyCapture2::GetCamera"), m_connect, m_context.get(), guid.GetData());
    const Context connected(m_context.get(), End{&m_disconnect});
    return {ReadModel(), serialNumber};
}

CZQString CZQFlyCapture2::ReadModel() {
    CZQForeignRecord info(kInfoRoom);
    Call(ZQ_HERE("CZQFlyCapture2::GetCamera"), m_getCameraInfo, m_context.get(), info.GetData());
    const bool isEarly = info.GetNumber(kEarlyModel) > kMaxTruthValue;
    return FieldText(info.GetField(isEarly ? kEarlyModel : kModel, kModelSize));
}

}  // namespace ZQAPI
