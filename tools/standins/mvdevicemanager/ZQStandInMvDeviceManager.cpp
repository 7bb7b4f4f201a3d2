// Plays the MATRIX VISION device manager.
//
//     [mvdevicemanager]
//     Layout=packed            cameras' records as the GCC build has them
//     SizeQueryStatus=-2123    what asking for a record's size returns
//     CountsUsers=0            the first DMR_Close is the last one
//     InfoSize=0               the size that is reported, when it lies
//     [mvdevicemanager.0]
//     Model=Valdremonix MV-12  the product
//     Serial=GX000123
#include <atomic>
#include <cstring>

#include "ZQStandInFile.h"

namespace {

using ZQAPI::standin::CZQStandInFile;
using ZQAPI::standin::PlayCall;

constexpr const char* kName = "mvdevicemanager";

enum Error : std::int32_t {
    kNoError = 0,
    kDeviceNotFound = -2100,
    kNotInitialized = -2104,
    kInvalidParameter = -2108,
    kInputBufferTooSmall = -2123,
};

struct Texts {
    char serial[38];
    char family[38];
    char product[38];
};

struct DeviceInfo : Texts {
    std::int32_t firmwareVersion;
    std::int32_t deviceId;
};
static_assert(sizeof(DeviceInfo) == 124);

#pragma pack(push, 1)
struct PackedDeviceInfo : Texts {
    std::int32_t firmwareVersion;
    std::int32_t deviceId;
    char padding[6];
};
#pragma pack(pop)
static_assert(sizeof(PackedDeviceInfo) == 128);

constexpr std::int32_t kFirstDevice = 4096;
constexpr std::int32_t kFirmwareVersion = 0x02010203;

std::atomic<int> g_initialised{0};

// A call that needs the library initialised.
template <class Body>
std::int32_t PlayWhenInitialised(const char* function, Body&& body) {
    return PlayCall(kName, function, [&](CZQStandInFile& play) -> std::int32_t {
        return g_initialised > 0 ? body(play) : kNotInitialized;
    });
}

template <class Info>
void FillInfo(CZQStandInFile& play, std::uint32_t index, void* target) {
    Info info{};
    play.CopyCameraText(index, "Serial", info.serial, sizeof info.serial);
    play.CopyCameraText(index, "Model", info.family, sizeof info.family);
    play.CopyCameraText(index, "Model", info.product, sizeof info.product);
    info.firmwareVersion = kFirmwareVersion;
    info.deviceId = static_cast<std::int32_t>(index);
    std::memcpy(target, &info, sizeof info);
}

}  // namespace

extern "C" {

std::int32_t DMR_Init(std::int32_t* manager) {
    return PlayCall(kName, __func__, [&](CZQStandInFile&) {
        ++g_initialised;
        *manager = 1;
        return kNoError;
    });
}

std::int32_t DMR_Close() {
    return PlayWhenInitialised(__func__, [&](CZQStandInFile& play) {
        if (play.Number(kName, "CountsUsers", 1) != 0) {
            --g_initialised;
        } else {
            g_initialised = 0;
        }
        return kNoError;
    });
}

std::int32_t DMR_UpdateDeviceList(std::uint32_t reserved, std::int32_t reserved2) {
    return PlayWhenInitialised(__func__, [&](CZQStandInFile&) {
        return reserved == 0 && reserved2 == 0 ? kNoError : kInvalidParameter;
    });
}

std::int32_t DMR_GetDeviceCount(std::uint32_t* count) {
    return PlayWhenInitialised(__func__, [&](CZQStandInFile& play) {
        *count = play.NofClaimedCameras();
        return kNoError;
    });
}

std::int32_t DMR_GetDevice(std::int32_t* device, std::int32_t searchMode, const char* pattern,
                           std::uint32_t number, char wildcard) {
    return PlayWhenInitialised(__func__, [&](CZQStandInFile& play) {
        if (searchMode != 1 || std::strcmp(pattern, "*") != 0 || wildcard != '*') {
            return kInvalidParameter;
        }
        if (!play.IsThere(number)) {
            return kDeviceNotFound;
        }
        *device = kFirstDevice + static_cast<std::int32_t>(number);
        return kNoError;
    });
}

std::int32_t DMR_GetDeviceInfoEx(std::int32_t device, std::int32_t infoType, void* info, std::size_t* size) {
    return PlayWhenInitialised(__func__, [&](CZQStandInFile& play) {
        if (infoType != 0 || device < kFirstDevice) {
            return std::int32_t{kInvalidParameter};
        }
        const bool isPacked = play.Text(kName, "Layout") == "packed";
        const std::size_t needed = isPacked ? sizeof(PackedDeviceInfo) : sizeof(DeviceInfo);
        if (info == nullptr) {
            *size =
                static_cast<std::size_t>(play.Number(kName, "InfoSize", static_cast<std::int32_t>(needed)));
            return play.Number(kName, "SizeQueryStatus", kNoError);
        }
        if (*size < needed) {
            return std::int32_t{kInputBufferTooSmall};
        }
        const auto index = static_cast<std::uint32_t>(device - kFirstDevice);
        (isPacked ? FillInfo<PackedDeviceInfo> : FillInfo<DeviceInfo>)(play, index, info);
        return std::int32_t{kNoError};
    });
}

}  // extern "C"
