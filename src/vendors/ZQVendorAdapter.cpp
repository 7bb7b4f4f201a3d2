#include "vendors/ZQVendorAdapter.h"

#include <ZQAPI/vendors/ZQVendorLibrary.h>

#include <algorithm>
#include <vector>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQString FieldText(std::span<const char> field) {
    return CZQString(std::string(field.begin(), std::find(field.begin(), field.end(), '\0'))).Trim(" ");
}

void CZQVendorLibrary::OpenFirst(const CZQString& folder, std::span<const char* const> fileNames) {
    std::vector<CZQString> libraryNames;
    for (const char* const fileName : fileNames) {
        libraryNames.push_back(folder + fileName);
        libraryNames.emplace_back(fileName);
    }
    OpenFirstLibrary(libraryNames);
}

void CZQVendorLibrary::Check(const SSourceLocation& here, const CZQNamedEntryPoint& function,
                             std::int32_t status) {
    if (status != 0) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Status=%ld", function.GetName(),
                           static_cast<long>(status));
    }
}

void CZQVendorLibrary::CheckRelease(const CZQNamedEntryPoint& function, std::int32_t status) noexcept {
    if (status != 0) {
        DebugOutput("ZQSDK: !! Function=%s; Status=%ld", function.GetName(), static_cast<long>(status));
    }
}

std::uint32_t CZQVendorLibrary::CheckCount(const SSourceLocation& here, const CZQNamedEntryPoint& function,
                                           std::uint32_t count) {
    if (count > ZQVENDOR_MAX_CAMERAS) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; NofCameras=%lu", function.GetName(),
                           static_cast<unsigned long>(count));
    }
    return count;
}

}  // namespace ZQAPI
