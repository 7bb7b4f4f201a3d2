#include "foundation/ZQDynamicDLL.h"

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// Whether the name is one on this system, rather than another system's that stands for one here.
bool IsOwnName(const CZQString& name) {
    return platform::LibraryFileName(name.str()) == name.str();
}

}  // namespace

CZQNamedEntryPoint::CZQNamedEntryPoint(CZQDynamicDLL& library, const char* name)
    : m_library(library), m_name(name) {
    library.m_entryPoints.push_back(this);
}

CZQNamedEntryPoint::~CZQNamedEntryPoint() {
    std::erase(m_library.m_entryPoints, this);
}

CZQDynamicDLL::CZQDynamicDLL(const CZQString& libraryName) {
    OpenLibrary(libraryName);
}

CZQDynamicDLL::~CZQDynamicDLL() {
    CloseLibrary();
}

void CZQDynamicDLL::OpenLibrary(const CZQString& libraryName, ELibraryPlace place) {
    OpenFirstLibrary({&libraryName, 1}, place);
}

void CZQDynamicDLL::OpenFirstLibrary(std::span<const CZQString> libraryNames, ELibraryPlace place) {
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
        const bool tellsMore = failedName != nullptr && !failure.fileExists &&
                               (library.fileExists || (!IsOwnName(*failedName) && IsOwnName(name)));
        if (failedName == nullptr || tellsMore) {
            failedName = &name;
            failure = std::move(library);
        }
    }
    if (m_library == nullptr) {
        const CZQString reason = failure.detail.empty() ? FormatSystemError(failure.error)
                                                        : FormatSystemError(failure.error, failure.detail);
        ZQ_THROW("CZQDynamicDLL::OpenLibrary", ZQ_ERR_LIBRARY_NOT_LOADED, "DLLName=%s; %s",
                 failedName != nullptr ? failedName->c_str() : "", reason.c_str());
    }

    try {
        GetProcAddresses();
    } catch (const CZQException&) {
        CloseLibrary();
        throw;
    }
}

void CZQDynamicDLL::GetProcAddresses() {
    for (CZQNamedEntryPoint* const entryPoint : m_entryPoints) {
        entryPoint->m_address = nullptr;
        entryPoint->m_address = FindAddress(entryPoint->m_name);
    }
}

void* CZQDynamicDLL::FindAddress(const char* name) const {
    platform::SystemErrorCode error = 0;
    void* const address = platform::FindSymbol(m_library, name, error);
    if (address == nullptr) {
        ZQ_THROW("CZQDynamicDLL::GetProcAddresses", ZQ_ERR_ENTRY_POINT_MISSING, "DLLName=%s, ProcName=%s; %s",
                 m_libraryName.c_str(), name, FormatSystemError(error).c_str());
    }
    return address;
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
    for (CZQNamedEntryPoint* const entryPoint : m_entryPoints) {
        entryPoint->m_address = nullptr;
    }
    m_libraryName.Empty();
}

}  // namespace ZQAPI
