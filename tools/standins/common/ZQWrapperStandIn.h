// What the stand-ins for the kit's wrapper libraries have alike; docs/wrapper-libraries.md tells their keys.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "ZQStandInFile.h"

namespace ZQAPI::standin {

// How the stand-ins fail by themselves; on request they fail with "FailingStatus".
enum WrapperStatus : std::int32_t {
    kDone = 0,
    kNullPointer = -2,
    kNoSuchCamera = -3,
    kNotInitialised = -4,
    kNotOpen = -5,
};

// One wrapper library: its four common functions, each given its own name. Made once for the library.
// Thread-safe.
class CZQWrapperStandIn {
public:
    // The name of the library's section.
    explicit CZQWrapperStandIn(const char* library) : m_library(library) {}

    std::int32_t Init(const char* function);
    std::int32_t GetNofCameras(const char* function, std::uint32_t* count);
    std::int32_t DeInit(const char* function);

    // `fill(file, index, record)` writes the camera's record. The caller gets as much of it as the caller has
    // room for; less with "InfoSize", as from an older library.
    template <class Record, class Fill>
    std::int32_t GetCameraInfo(const char* function, std::uint32_t index, Record* record, Fill&& fill) {
        CZQStandInFile file(m_library);
        const std::int32_t status = Begin(file, function, index, record);
        if (status != kDone) {
            return status;
        }
        Record filled{};
        fill(file, index, filled);
        const auto known = file.Number(m_library, "InfoSize", static_cast<std::int32_t>(sizeof filled));
        filled.size = static_cast<std::uint32_t>(std::min<std::size_t>(
            {record->size, sizeof filled, static_cast<std::size_t>(std::max(known, 0))}));
        std::memcpy(record, &filled, filled.size);
        return kDone;
    }

    // A call about one camera begins: it is traced, may be told to fail, and needs Init, a camera that is
    // still there and an output.
    std::int32_t Begin(CZQStandInFile& file, const char* function, std::uint32_t index, const void* output);

    const char* Library() const noexcept { return m_library; }

private:
    const char* const m_library;
    std::atomic<int> m_users{0};
};

}  // namespace ZQAPI::standin

// The library of that section in the file: g_library, and the four common functions of the names that begin with
// `prefix`. `fill` as GetCameraInfo takes it.
#define ZQ_WRAPPER_STANDIN(section, prefix, fill)                                \
    static ZQAPI::standin::CZQWrapperStandIn g_library(section);                 \
    extern "C" {                                                                 \
    int32_t prefix##_Init(void) {                                                \
        return g_library.Init(__func__);                                         \
    }                                                                            \
    int32_t prefix##_GetNofCameras(uint32_t* count) {                            \
        return g_library.GetNofCameras(__func__, count);                         \
    }                                                                            \
    int32_t prefix##_GetCameraInfo(uint32_t index, prefix##_CAMERA_INFO* info) { \
        return g_library.GetCameraInfo(__func__, index, info, fill);             \
    }                                                                            \
    int32_t prefix##_DeInit(void) {                                              \
        return g_library.DeInit(__func__);                                       \
    }                                                                            \
    }
