#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

namespace {

using SimpleFunction = std::int32_t (*)();
using CountFunction = std::int32_t (*)(std::uint32_t*);

}  // namespace

CZQWrapperLibrary::CZQWrapperLibrary(const CZQString& folder, const char* fileName,
                                     const SWrapperFunctions& functions)
    : m_functions(functions) {
    const char* const names[] = {functions.init, functions.getNofCameras, functions.getCameraInfo,
                                 functions.deInit, ""};
    OpenFirst(folder, {fileName}, names, m_slots.data());
    Check(ZQ_HERE("CZQWrapperLibrary::CZQWrapperLibrary"), functions.init,
          reinterpret_cast<SimpleFunction>(m_slots[kInit])());
}

CZQWrapperLibrary::~CZQWrapperLibrary() {
    CheckRelease(m_functions.deInit, reinterpret_cast<SimpleFunction>(m_slots[kDeInit])());
}

std::uint32_t CZQWrapperLibrary::CountCameras() {
    const SourceLocation here = ZQ_HERE("CZQWrapperLibrary::CountCameras");
    std::uint32_t count = 0;
    Check(here, m_functions.getNofCameras, reinterpret_cast<CountFunction>(m_slots[kGetNofCameras])(&count));
    return CheckCount(here, m_functions.getNofCameras, count);
}

void CZQWrapperLibrary::CheckFilled(std::int32_t status, std::size_t filled, std::size_t room) const {
    const SourceLocation here = ZQ_HERE("CZQWrapperLibrary::ReadCameraInfo");
    Check(here, m_functions.getCameraInfo, status);
    if (filled <= sizeof(std::uint32_t) || filled > room) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Size=%lu", m_functions.getCameraInfo,
                           static_cast<unsigned long>(filled));
    }
}

}  // namespace ZQAPI
