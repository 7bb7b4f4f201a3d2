#include "foundation/ZQDynamicDLL.h"

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQDynamicDLL::CZQDynamicDLL(const CZQString& libraryName, const char* const* names, void** slots) {
    OpenLibrary(libraryName, names, slots);
}

CZQDynamicDLL::~CZQDynamicDLL() {
    CloseLibrary();
}

void CZQDynamicDLL::OpenLibrary(const CZQString& libraryName, const char* const* names, void** slots) {
    CloseLibrary();

    platform::SystemErrorCode error = 0;
    std::string detail;
    m_library = platform::LoadSharedLibrary(libraryName.str(), error, detail);
    if (m_library == nullptr) {
        const CZQString reason = detail.empty() ? FormatSystemError(error) : FormatSystemError(error, detail);
        throw CZQException(ZQ_HERE("CZQDynamicDLL::OpenLibrary"), ZQ_ERR_LIBRARY_NOT_LOADED, "DLLName=%s; %s",
                           libraryName.c_str(), reason.c_str());
    }
    m_libraryName = libraryName;

    try {
        GetProcAddresses(names, slots);
    } catch (const CZQException&) {
        CloseLibrary();
        throw;
    }
}

void CZQDynamicDLL::GetProcAddresses(const char* const* names, void** slots) {
    for (; **names != '\0'; ++names, ++slots) {
        platform::SystemErrorCode error = 0;
        *slots = platform::FindSymbol(m_library, *names, error);
        if (*slots == nullptr) {
            throw CZQException(ZQ_HERE("CZQDynamicDLL::GetProcAddresses"), ZQ_ERR_ENTRY_POINT_MISSING,
                               "DLLName=%s, ProcName=%s; %s", m_libraryName.c_str(), *names,
                               FormatSystemError(error).c_str());
        }
    }
}

void CZQDynamicDLL::CloseLibrary() noexcept {
    if (m_library != nullptr) {
        platform::FreeSharedLibrary(m_library);
        m_library = nullptr;
    }
    m_libraryName.Empty();
}

}  // namespace ZQAPI
