// Plays the C interface of the FlyCapture2 library.
//
//     [flycapture2]
//     Layout=early             cameras' records as the first versions have them
//     NullContext=1            a context is made, but none is given
//     [flycapture2.0]
//     Model=Valdremonix FLY-20M
//     Serial=4294967295        a number
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "ZQStandInFile.h"

namespace {

using ZQAPI::standin::CZQStandInFile;
using ZQAPI::standin::PlayCall;

constexpr const char* kName = "flycapture2";

enum Error : std::int32_t { kOk = 0, kNotConnected = 4, kInvalidParameter = 7, kNotFound = 12 };

struct Context {
    std::optional<std::uint32_t> connected;  // the camera's index
};

struct Guid {
    std::uint32_t value[4];
};

struct CameraInfo {
    std::uint32_t serialNumber;
    std::int32_t interfaceType;
    std::int32_t driverType;
    std::int32_t isColorCamera;
    char modelName[512];
    char vendorName[512];
    char other[4836];
};
static_assert(sizeof(CameraInfo) == 5876);

struct EarlyCameraInfo {
    std::uint32_t serialNumber;
    std::int32_t interfaceType;
    std::int32_t isColorCamera;
    char modelName[512];
    char vendorName[512];
    char other[4816];
};
static_assert(sizeof(EarlyCameraInfo) == 5852);

constexpr std::int32_t kUsb2 = 1;

std::uint32_t SerialNumber(CZQStandInFile& play, std::uint32_t index) {
    return static_cast<std::uint32_t>(
        std::strtoull(play.Text(play.Camera(index), "Serial").c_str(), nullptr, 10));
}

template <class Info>
void FillInfo(CZQStandInFile& play, std::uint32_t index, void* target) {
    Info info{};
    info.serialNumber = SerialNumber(play, index);
    info.interfaceType = kUsb2;
    info.isColorCamera = 1;
    play.CopyCameraText(index, "Model", info.modelName, sizeof info.modelName);
    std::memcpy(target, &info, sizeof info);
}

}  // namespace

extern "C" {

std::int32_t fc2CreateContext(void** context) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        *context = play.Number(kName, "NullContext", 0) != 0 ? nullptr : new Context;
        return kOk;
    });
}

std::int32_t fc2DestroyContext(Context* context) {
    const std::unique_ptr<Context> released(context);  // also when the call is to fail
    return PlayCall(kName, __func__, [&](CZQStandInFile&) { return kOk; });
}

std::int32_t fc2GetNumOfCameras(Context* /*context*/, std::uint32_t* count) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        *count = play.NofClaimedCameras();
        return kOk;
    });
}

std::int32_t fc2GetCameraSerialNumberFromIndex(Context* /*context*/, std::uint32_t index,
                                               std::uint32_t* serialNumber) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        if (!play.IsThere(index)) {
            return kNotFound;
        }
        *serialNumber = SerialNumber(play, index);
        return kOk;
    });
}

std::int32_t fc2GetCameraFromSerialNumber(Context* /*context*/, std::uint32_t serialNumber, Guid* guid) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        const std::uint32_t count = play.NofPlayedCameras();
        for (std::uint32_t index = 0; index < count; ++index) {
            if (SerialNumber(play, index) == serialNumber) {
                *guid = {{index, 0, 0, serialNumber}};
                return kOk;
            }
        }
        return kNotFound;
    });
}

std::int32_t fc2Connect(Context* context, const Guid* guid) {
    return PlayCall(kName, __func__, [&](CZQStandInFile&) {
        if (context->connected) {
            return kInvalidParameter;
        }
        context->connected = guid->value[0];
        return kOk;
    });
}

std::int32_t fc2Disconnect(Context* context) {
    return PlayCall(kName, __func__, [&](CZQStandInFile&) {
        const bool wasConnected = context->connected.has_value();
        context->connected.reset();
        return wasConnected ? kOk : kNotConnected;
    });
}

std::int32_t fc2GetCameraInfo(Context* context, void* info) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        if (!context->connected) {
            return kNotConnected;
        }
        const bool isEarly = play.Text(kName, "Layout") == "early";
        (isEarly ? FillInfo<EarlyCameraInfo> : FillInfo<CameraInfo>)(play, *context->connected, info);
        return kOk;
    });
}

}  // extern "C"
