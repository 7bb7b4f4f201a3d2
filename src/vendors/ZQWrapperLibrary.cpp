#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

CZQWrapperLibrary::CZQWrapperLibrary(const CZQString& folder, const SWrapperNames& names)
    : m_init(*this, names.init),
      m_getNofCameras(*this, names.getNofCameras),
      m_getCameraInfo(*this, names.getCameraInfo),
      m_deInit(*this, names.deInit) {
    OpenFirst(folder, {&names.file, 1});
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
