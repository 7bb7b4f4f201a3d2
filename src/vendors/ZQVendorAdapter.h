#pragma once

#include <cstdint>
#include <span>

#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

// The text in a field of fixed size, with or without a NUL, without blanks at its ends. It may hold anything.
CZQString FieldText(std::span<const char> field);

// A camera vendor's library: base of the adapters. Bound to one thread.
class CZQVendorLibrary : public CZQDynamicDLL {
protected:
    // Loads the first of the files that can be loaded: each is looked for in the folder (the kit's bin path),
    // then where the system looks for libraries. None: ZQ_ERR_LIBRARY_NOT_LOADED, as
    // OpenFirstLibrary tells it. A library that lacks an entry point ends the search: ZQ_ERR_ENTRY_POINT_MISSING.
    void OpenFirst(const CZQString& folder, std::span<const char* const> fileNames);

    // Calls a function whose status 0 is success: any other is ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Status=%ld".
    template <class... Parameters, class... Arguments>
    static void Call(const SSourceLocation& here, const CZQEntryPoint<std::int32_t(Parameters...)>& function,
                     Arguments... arguments) {
        Check(here, function, function(arguments...));
    }
    static void Check(const SSourceLocation& here, const CZQNamedEntryPoint& function, std::int32_t status);

    // The same for destructors: a failure goes to the debug output.
    template <class... Parameters, class... Arguments>
    static void Release(const CZQEntryPoint<std::int32_t(Parameters...)>& function,
                        Arguments... arguments) noexcept {
        CheckRelease(function, function(arguments...));
    }

    // For counts: one above ZQVENDOR_MAX_CAMERAS is ZQ_ERR_VENDOR_LIBRARY, "Function=%s; NofCameras=%lu".
    static std::uint32_t CheckCount(const SSourceLocation& here, const CZQNamedEntryPoint& function,
                                    std::uint32_t count);

private:
    static void CheckRelease(const CZQNamedEntryPoint& function, std::int32_t status) noexcept;
};

}  // namespace ZQAPI
