#pragma once

#include <span>
#include <vector>

#include "foundation/ZQEntryPoint.h"
#include "foundation/ZQLibraryFile.h"
#include "foundation/ZQRoot.h"

namespace ZQAPI {

// A library loaded at run time, freed by the destructor. Base of every adapter to an outside library: the adapter's
// members of type CZQEntryPoint say which functions it needs.
class CZQDynamicDLL : public CZQRoot {
public:
    CZQDynamicDLL() = default;
    explicit CZQDynamicDLL(const CZQString& libraryName);
    CZQDynamicDLL(const CZQDynamicDLL&) = delete;
    CZQDynamicDLL& operator=(const CZQDynamicDLL&) = delete;
    ~CZQDynamicDLL() override;

    // Frees the library held so far, loads the named one (see FindAndLoadLibrary for where it is found) and binds
    // the entry points. ZQ_ERR_LIBRARY_NOT_LOADED; ZQ_ERR_ENTRY_POINT_MISSING names the first missing one, and no
    // library is held then.
    void OpenLibrary(const CZQString& libraryName, ELibraryPlace place = ELibraryPlace::kKitOrPath);
    // The same with the first of the libraries that can be loaded. When none can, the error tells of the
    // first one whose file is there, else of the first one that bears its name on this system, else of the first one.
    void OpenFirstLibrary(std::span<const CZQString> libraryNames,
                          ELibraryPlace place = ELibraryPlace::kKitOrPath);
    // Binds the entry points up to the first missing one, for those that were made after the library was opened.
    // Without a library all are missing.
    void GetProcAddresses();
    // A single function of the library, for who needs it once. Thread-safe. ZQ_ERR_ENTRY_POINT_MISSING
    template <class Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(FindAddress(name));
    }
    // From now on the library that is held stays in the process when it is closed, and costs nothing when it
    // is opened again.
    void KeepLibrary() noexcept;
    // Nothing is bound any more.
    void CloseLibrary() noexcept;

    bool IsLibraryOpen() const noexcept { return m_library != nullptr; }
    const CZQString& GetLibraryName() const noexcept { return m_libraryName; }

private:
    friend class CZQNamedEntryPoint;  // enters and leaves the list

    void* FindAddress(const char* name) const;

    platform::LibraryHandle m_library = nullptr;
    CZQString m_libraryName;
    std::vector<CZQNamedEntryPoint*> m_entryPoints;
};

}  // namespace ZQAPI
