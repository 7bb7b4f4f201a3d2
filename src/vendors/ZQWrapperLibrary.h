#pragma once

#include <cstring>
#include <type_traits>

#include "vendors/ZQVendorAdapter.h"

namespace ZQAPI {

// The four functions that a wrapper library of the kit begins with, by name.
struct SWrapperFunctions {
    const char* init;
    const char* getNofCameras;
    const char* getCameraInfo;
    const char* deInit;
};

// One of the kit's wrapper libraries (see ZQAPI/vendors/ZQVendorLibrary.h): initialised while the object
// lives. Base of their adapters. Bound to one thread.
class CZQWrapperLibrary : public CZQVendorLibrary {
public:
    CZQWrapperLibrary(const CZQWrapperLibrary&) = delete;
    CZQWrapperLibrary& operator=(const CZQWrapperLibrary&) = delete;
    ~CZQWrapperLibrary() override;

protected:
    CZQWrapperLibrary(const CZQString& folder, const char* fileName, const SWrapperFunctions& functions);

    std::uint32_t CountCameras();

    // Of a library that knows less of the record than the kit, the rest is zero. One that says to have filled
    // nothing, or more than there is room for: ZQ_ERR_VENDOR_LIBRARY, "Function=%s; Size=%lu".
    template <class Record>
    Record ReadCameraInfo(std::uint32_t index) {
        static_assert(std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>);
        Record record{};
        record.size = sizeof record;
        const std::int32_t status = m_getCameraInfo(index, &record);
        CheckFilled(status, record.size, sizeof record);
        Record complete{};
        std::memcpy(&complete, &record, record.size);
        return complete;
    }

private:
    void CheckFilled(std::int32_t status, std::size_t filled, std::size_t room) const;

    CZQEntryPoint<std::int32_t()> m_init;
    CZQEntryPoint<std::int32_t(std::uint32_t* count)> m_getNofCameras;
    CZQEntryPoint<std::int32_t(std::uint32_t index, void* record)> m_getCameraInfo;
    CZQEntryPoint<std::int32_t()> m_deInit;
};

}  // namespace ZQAPI
