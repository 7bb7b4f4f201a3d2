#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

CZQWrapperLibrary::CZQWrapperLibrary(const CZQString& folder, const char* fileName,
                                     const SWrapperFunctions& functions)
    : m_init(*this, functions.init),
      m_getNofCameras(*this, functions.getNofCameras),
      m_getCameraInfo(*this, functions.getCameraInfo),
      m_deInit(*this, functions.deInit) {
    OpenFirst(folder, {fileName});
    Call(ZQ_HERE("CZQWrapperLibrary::CZQWrapperLibrary"), m_init);
}

CZQWrapperLibrary::~CZQWrapperLibrary() {
    Release(m_deInit);
}

std::uint32_t CZQWrapperLibrary::CountCameras() {
    std::uint32_t count = 0;
    Call(ZQ_HERE("CZQWrapperLibrary::CountCameras"), m_getNofCameras, &count);
    return CheckCount(ZQ_HERE("CZQWrapperLibrary::CountCameras"), m_getNofCameras, count);
}

void CZQWrapperLibrary::CheckFilled(std::int32_t status, std::size_t filled, std::size_t room) const {
    Check(ZQ_HERE("CZQWrapperLibrary::ReadCameraInfo"), m_getCameraInfo, status);
    if (filled <= sizeof(std::uint32_t) || filled > room) {
        ZQ_THROW("CZQWrapperLibrary::ReadCameraInfo", ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Size=%lu",
                 m_getCameraInfo.GetName(), static_cast<unsigned long>(filled));
    }
}

}  // namespace ZQAPI
