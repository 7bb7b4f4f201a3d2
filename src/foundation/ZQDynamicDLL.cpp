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

void CZQDynamicDLL::OpenLibrary(const CZQString& libraryName, const char* const* names, void** slots,
                                ELibraryPlace place) {
    OpenFirstLibrary({&libraryName, 1}, names, slots, place);
}

void CZQDynamicDLL::OpenFirstLibrary(std::span<const CZQString> libraryNames, const char* const* names,
                                     void** slots, ELibraryPlace place) {
    CloseLibrary();

    const CZQString* failedName = nullptr;
    SLoadedLibrary failure;
    for (const CZQString& name : libraryNames) {
        SLoadedLibrary library = FindAndLoadLibrary(name, place);
        m_library = library.handle;
        if (m_library != nullptr) {
            m_libraryName = name;
            break;
        }
        if (failedName == nullptr || (library.fileExists && !failure.fileExists)) {
            failedName = &name;
            failure = std::move(library);
        }
    }
    if (m_library == nullptr) {
        const CZQString reason = failure.detail.empty() ? FormatSystemError(failure.error)
                                                        : FormatSystemError(failure.error, failure.detail);
        throw CZQException(ZQ_HERE("CZQDynamicDLL::OpenLibrary"), ZQ_ERR_LIBRARY_NOT_LOADED, "DLLName=%s; %s",
                           failedName != nullptr ? failedName->c_str() : "", reason.c_str());
    }

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

void CZQDynamicDLL::KeepLibrary() noexcept {
    if (m_library != nullptr && !platform::KeepSharedLibrary(m_library)) {
        DebugOutput("ZQSDK: !! %s can't be kept in the process", m_libraryName.c_str());
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
