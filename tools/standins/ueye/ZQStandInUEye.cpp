// Plays the IDS uEye library.
//
//     [ueye]
//     LateCameras=1            so many cameras are plugged in after they were counted
//     ShortStatus=1            what a list returns that tells of more cameras than there is room for
//     GrowsForever=1           each list has one camera more than the caller has room for
//     [ueye.0]
//     Model=VX-UE13M
//     Serial=4002711234
#include "ZQStandInFile.h"

namespace {

using ZQAPI::standin::CZQStandInFile;
using ZQAPI::standin::PlayCall;

constexpr const char* kName = "ueye";

struct CameraInfo {
    std::uint32_t cameraId;
    std::uint32_t deviceId;
    std::uint32_t sensorId;
    std::uint32_t inUse;
    char serialNumber[16];
    char model[16];
    std::uint32_t status;
    std::uint32_t reserved[2];
    char fullModelName[32];
    std::uint32_t reserved2[5];
};
static_assert(sizeof(CameraInfo) == 112);

struct CameraList {
    std::uint32_t count;
    CameraInfo cameras[1];
};

CameraInfo MakeInfo(CZQStandInFile& play, std::uint32_t index) {
    CameraInfo info{};
    info.cameraId = index + 1;
    info.deviceId = index + 1001;
    play.CopyCameraText(index, "Serial", info.serialNumber, sizeof info.serialNumber);
    play.CopyCameraText(index, "Model", info.model, sizeof info.model);
    play.CopyCameraText(index, "Model", info.fullModelName, sizeof info.fullModelName);
    return info;
}

std::uint32_t FillList(CZQStandInFile& play, CameraInfo* cameras, std::uint32_t room) {
    std::uint32_t count = 0;
    const std::uint32_t claimed = play.NofClaimedCameras();
    const std::uint32_t played = play.NofPlayedCameras();
    for (std::uint32_t i = 0; i < played; ++i) {
        if (play.IsThere(i) && count++ < room) {
            cameras[count - 1] = MakeInfo(play, i);
        }
    }
    return claimed > played ? claimed : count;
}

}  // namespace

extern "C" {

std::int32_t is_GetNumberOfCameras(std::int32_t* count) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        *count = static_cast<std::int32_t>(play.NofClaimedCameras()) - play.Number(kName, "LateCameras", 0);
        return 0;
    });
}

std::int32_t is_GetCameraList(CameraList* list) {
    return PlayCall(kName, __func__, [&](CZQStandInFile& play) {
        const std::uint32_t room = list->count;
        const std::uint32_t count = FillList(play, list->cameras, room);
        list->count = play.Number(kName, "GrowsForever", 0) != 0 ? room + 1 : count;
        return list->count > room ? play.Number(kName, "ShortStatus", 0) : 0;
    });
}

}  // extern "C"
