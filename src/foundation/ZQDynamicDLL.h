#pragma once

#include "foundation/ZQRoot.h"
#include "platform/SharedLibrary.h"

namespace ZQAPI {

// A library loaded at run time, freed by the destructor. Base of every adapter to an outside library: the
// adapter owns the slots that the entry points are resolved into.
//
//     const char* const kNames[] = {"clSerialInit", "clSerialClose", ""};   // ended by an empty name
//     void* m_slots[2];                                                     // one per name, in the same
//     order
class CZQDynamicDLL : public CZQRoot {
public:
    CZQDynamicDLL() = default;
    CZQDynamicDLL(const CZQString& libraryName, const char* const* names, void** slots);
    CZQDynamicDLL(const CZQDynamicDLL&) = delete;
    CZQDynamicDLL& operator=(const CZQDynamicDLL&) = delete;
    ~CZQDynamicDLL() override;

    // Frees the library held so far, loads the named one and resolves the names. ZQ_ERR_LIBRARY_NOT_LOADED;
    // ZQ_ERR_ENTRY_POINT_MISSING names the first missing one, and no library is held then.
    void OpenLibrary(const CZQString& libraryName, const char* const* names, void** slots);
    // Fills the slots up to the first missing name, whose slot becomes null.
    void GetProcAddresses(const char* const* names, void** slots);
    void CloseLibrary() noexcept;

    bool IsLibraryOpen() const noexcept { return m_library != nullptr; }
    const CZQString& GetLibraryName() const noexcept { return m_libraryName; }

private:
    platform::LibraryHandle m_library = nullptr;
    CZQString m_libraryName;
};

}  // namespace ZQAPI
