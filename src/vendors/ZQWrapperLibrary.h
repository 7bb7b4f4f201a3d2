#pragma once

#include <cstring>
#include <type_traits>

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorAdapter.h"

namespace ZQAPI {

// A wrapper library's file and the four functions that it begins with, by name.
struct SWrapperNames {
    const char* file;
    const char* init;
    const char* getNofCameras;
    const char* getCameraInfo;
    const char* deInit;
};

// ZQ_WRAPPER_LIBRARY(STaviLibrary, ZQTAVI, "ZQTaviCore_64.v2.0.dll"): the library with this prefix in its header.
#define ZQ_WRAPPER_LIBRARY(structName, prefix, fileName)                                                \
    struct structName {                                                                                 \
        using Record = prefix##_CAMERA_INFO;                                                            \
        static constexpr ::ZQAPI::SWrapperNames kNames = {fileName, #prefix "_Init",                    \
                                                          #prefix "_GetNofCameras",                     \
                                                          #prefix "_GetCameraInfo", #prefix "_DeInit"}; \
    }

// One of the kit's wrapper libraries (see ZQAPI/vendors/ZQVendorLibrary.h): initialised while the object
// lives. Bound to one thread.
class CZQWrapperLibrary : public CZQVendorLibrary {
public:
    CZQWrapperLibrary(const CZQWrapperLibrary&) = delete;
    CZQWrapperLibrary& operator=(const CZQWrapperLibrary&) = delete;
    ~CZQWrapperLibrary() override;

protected:
    // `folder` is where the library is looked for first.
    CZQWrapperLibrary(const CZQString& folder, const SWrapperNames& names);

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

// The cameras of a wrapper library, a ZQ_WRAPPER_LIBRARY, that its records tell all about. Bound to one thread.
template <class Library>
class CZQWrapperCameras : public CZQWrapperLibrary, public CZQICameraSource<typename Library::Record> {
public:
    explicit CZQWrapperCameras(const CZQString& folder) : CZQWrapperLibrary(folder, Library::kNames) {}

    std::uint32_t GetNofCameras() override { return CountCameras(); }
    typename Library::Record GetCamera(std::uint32_t index) override {
        return ReadCameraInfo<typename Library::Record>(index);
    }
};

}  // namespace ZQAPI
