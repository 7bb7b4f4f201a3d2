// The vendors' libraries that VendorRecords.cpp loads, in one file under three names. They keep to their interfaces,
// write nowhere else than they may, and fill what they write with the input's bytes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#define FUZZ_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

const char* g_bytes = nullptr;
std::size_t g_size = 0;

// Takes bytes off the input; zeros at its end.
void Fill(void* target, std::size_t size) {
    const std::size_t count = std::min(size, g_size);
    std::memcpy(target, g_bytes, count);
    std::memset(static_cast<char*>(target) + count, 0, size - count);
    g_bytes += count;
    g_size -= count;
}

template <class Number>
void FillNumber(Number* number) {
    Fill(number, sizeof *number);
}

// Mostly success.
std::int32_t Status() {
    std::uint8_t byte = 0;
    FillNumber(&byte);
    return byte < 0xF0 ? 0 : -2000 - byte;
}

template <class... Numbers>
std::int32_t Tell(Numbers*... numbers) {
    (FillNumber(numbers), ...);
    return Status();
}

constexpr std::size_t kUEyeCameraSize = 112;
constexpr std::size_t kGuidSize = 16;
constexpr std::size_t kCameraInfoSize = 2048;
constexpr std::int32_t kBufferTooSmall = -2123;

}  // namespace

FUZZ_EXPORT void FuzzPlay(const char* bytes, std::size_t size) {
    g_bytes = bytes;
    g_size = size;
}

FUZZ_EXPORT std::int32_t is_GetNumberOfCameras(std::int32_t* count) {
    return Tell(count);
}
// The list has room for as many cameras as its count says.
FUZZ_EXPORT std::int32_t is_GetCameraList(void* list) {
    std::uint32_t room = 0;
    std::memcpy(&room, list, sizeof room);
    FillNumber(static_cast<std::uint32_t*>(list));
    Fill(static_cast<char*>(list) + sizeof room, room * kUEyeCameraSize);
    return Status();
}

FUZZ_EXPORT std::int32_t fc2CreateContext(void** context) {
    std::uint8_t isNull = 0;
    FillNumber(&isNull);
    *context = isNull == 1 ? nullptr : &g_size;
    return Status();
}
FUZZ_EXPORT std::int32_t fc2DestroyContext(void* /*context*/) {
    return Status();
}
FUZZ_EXPORT std::int32_t fc2GetNumOfCameras(void* /*context*/, std::uint32_t* count) {
    return Tell(count);
}
FUZZ_EXPORT std::int32_t fc2GetCameraSerialNumberFromIndex(void* /*context*/, std::uint32_t /*index*/,
                                                           std::uint32_t* number) {
    return Tell(number);
}
FUZZ_EXPORT std::int32_t fc2GetCameraFromSerialNumber(void* /*context*/, std::uint32_t /*number*/,
                                                      void* guid) {
    Fill(guid, kGuidSize);
    return Status();
}
FUZZ_EXPORT std::int32_t fc2Connect(void* /*context*/, void* /*guid*/) {
    return Status();
}
FUZZ_EXPORT std::int32_t fc2Disconnect(void* /*context*/) {
    return Status();
}
FUZZ_EXPORT std::int32_t fc2GetCameraInfo(void* /*context*/, void* info) {
    Fill(info, kCameraInfoSize);
    return Status();
}

FUZZ_EXPORT std::int32_t DMR_Init(std::int32_t* manager) {
    return Tell(manager);
}
FUZZ_EXPORT std::int32_t DMR_Close() {
    return Status();
}
FUZZ_EXPORT std::int32_t DMR_UpdateDeviceList(std::uint32_t /*reserved*/, std::int32_t /*reserved2*/) {
    return Status();
}
FUZZ_EXPORT std::int32_t DMR_GetDeviceCount(std::uint32_t* count) {
    return Tell(count);
}
FUZZ_EXPORT std::int32_t DMR_GetDevice(std::int32_t* device, std::int32_t /*searchMode*/,
                                       const char* /*pattern*/, std::uint32_t /*number*/, char /*wildcard*/) {
    return Tell(device);
}
FUZZ_EXPORT std::int32_t DMR_GetDeviceInfoEx(std::int32_t /*device*/, std::int32_t /*infoType*/, void* info,
                                             std::size_t* size) {
    if (info == nullptr) {
        std::uint16_t needed = 0;
        FillNumber(&needed);
        *size = needed;
        return kBufferTooSmall;
    }
    Fill(info, *size);
    return Status();
}
