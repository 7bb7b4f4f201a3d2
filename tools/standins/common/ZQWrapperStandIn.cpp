#include "ZQWrapperStandIn.h"

namespace ZQAPI::standin {

std::int32_t CZQWrapperStandIn::Init(const char* function) {
    return PlayCall(m_library, function, [this](CZQStandInFile& /*file*/) {
        ++m_users;
        return kDone;
    });
}

std::int32_t CZQWrapperStandIn::GetNofCameras(const char* function, std::uint32_t* count) {
    return PlayCall(m_library, function, [this, count](CZQStandInFile& file) {
        if (m_users == 0) {
            return kNotInitialised;
        }
        if (count == nullptr) {
            return kNullPointer;
        }
        *count = file.NofClaimedCameras();
        return kDone;
    });
}

std::int32_t CZQWrapperStandIn::DeInit(const char* function) {
    CZQStandInFile file(m_library);
    const bool succeeds = file.Enter(function);
    if (m_users == 0) {
        return kNotInitialised;
    }
    --m_users;
    return succeeds ? kDone : file.FailingStatus();
}

std::int32_t CZQWrapperStandIn::Begin(CZQStandInFile& file, const char* function, std::uint32_t index,
                                      const void* output) {
    if (!file.Enter(function)) {
        return file.FailingStatus();
    }
    if (m_users == 0) {
        return kNotInitialised;
    }
    if (output == nullptr) {
        return kNullPointer;
    }
    return file.IsThere(index) ? kDone : kNoSuchCamera;
}

}  // namespace ZQAPI::standin
