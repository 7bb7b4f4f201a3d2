#include "vendors/ZQVendorLibrary.h"

#include <ZQAPI/vendors/ZQVendorLibrary.h>

#include <algorithm>
#include <optional>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

void CZQVendorLibrary::OpenFirst(const CZQString& folder, std::initializer_list<const char*> fileNames,
                                 const char* const* names, void** slots) {
    std::optional<CZQException> first;
    for (const char* const fileName : fileNames) {
        for (const CZQString& file : {folder + fileName, CZQString(fileName)}) {
            try {
                OpenLibrary(file, names, slots);
                return;
            } catch (const CZQException& failure) {
                if (failure.GetErrorNumber() != ZQ_ERR_LIBRARY_NOT_LOADED) {
                    throw;
                }
                first = first.value_or(failure);
            }
        }
    }
    throw CZQException(*first);
}

void CZQVendorLibrary::Check(const SourceLocation& here, const char* function, std::int32_t status) {
    if (status != 0) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Status=%ld", function,
                           static_cast<long>(status));
    }
}

void CZQVendorLibrary::CheckRelease(const char* function, std::int32_t status) noexcept {
    if (status != 0) {
        DebugOutput("ZQSDK: !! Function=%s; Status=%ld", function, static_cast<long>(status));
    }
}

std::uint32_t CZQVendorLibrary::CheckCount(const SourceLocation& here, const char* function,
                                           std::uint32_t count) {
    if (count > ZQVENDOR_MAX_CAMERAS) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; NofCameras=%lu", function,
                           static_cast<unsigned long>(count));
    }
    return count;
}

CZQString CZQVendorLibrary::FieldText(std::span<const char> field) {
    return CZQString(std::string(field.begin(), std::find(field.begin(), field.end(), '\0'))).Trim(" ");
}

}  // namespace ZQAPI
