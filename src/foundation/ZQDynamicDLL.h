#pragma once

#include <span>

#include "foundation/ZQLibraryFile.h"
#include "foundation/ZQRoot.h"

namespace ZQAPI {

// A library loaded at run time, freed by the destructor. Base of every adapter to an outside library: the
// adapter owns the slots that the entry points are resolved into.
//
//     const char* const kNames[] = {"clSerialInit", "clSerialClose", ""};   // ended by an empty name
//     void* m_slots[2];                                                     // one per name, in that order
class CZQDynamicDLL : public CZQRoot {
public:
    CZQDynamicDLL() = default;
    CZQDynamicDLL(const CZQString& libraryName, const char* const* names, void** slots);
    CZQDynamicDLL(const CZQDynamicDLL&) = delete;
    CZQDynamicDLL& operator=(const CZQDynamicDLL&) = delete;
    ~CZQDynamicDLL() override;

    // Frees the library held so far, loads the named one (see FindAndLoadLibrary for where it is found) and resolves
    // the names. ZQ_ERR_LIBRARY_NOT_LOADED; ZQ_ERR_ENTRY_POINT_MISSING names the first missing one, and no
    // library is held then.
    void OpenLibrary(const CZQString& libraryName, const char* const* names, void** slots,
                     ELibraryPlace place = ELibraryPlace::kKitOrPath);
    // The same with the first of the libraries that can be loaded. When none can, the error tells of the
    // first one whose file is there, else of the first one.
    void OpenFirstLibrary(std::span<const CZQString> libraryNames, const char* const* names, void** slots,
                          ELibraryPlace place = ELibraryPlace::kKitOrPath);
    // Fills the slots up to the first missing name, whose slot becomes null. Without a library all are
    // missing.
    void GetProcAddresses(const char* const* names, void** slots);
    // From now on the library that is held stays in the process when it is closed, and costs nothing when it
    // is opened again.
    void KeepLibrary() noexcept;
    void CloseLibrary() noexcept;

    bool IsLibraryOpen() const noexcept { return m_library != nullptr; }
    const CZQString& GetLibraryName() const noexcept { return m_libraryName; }

private:
    platform::LibraryHandle m_library = nullptr;
    CZQString m_libraryName;
};

}  // namespace ZQAPI
