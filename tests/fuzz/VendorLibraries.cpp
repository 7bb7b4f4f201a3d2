// The vendors' libraries that VendorRecords.cpp loads, in one file under three names. They keep to their interfaces,
// write nowhere else than they may, and fill what they write with the input's bytes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#define FUZZ_EXPORT extern "C" __attribute__((visibility("default")))
// A function that writes nothing.
#define FUZZ_STATUS(name, ...)                   \
    FUZZ_EXPORT std::int32_t name(__VA_ARGS__) { \
        return Status();                         \
    }

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
Number Take() {
    Number number{};
    Fill(&number, sizeof number);
    return number;
}

// Mostly success.
std::int32_t Status() {
    const auto byte = Take<std::uint8_t>();
    return byte < 0xF0 ? 0 : -2000 - byte;
}

template <class Number>
std::int32_t Tell(Number* number) {
    *number = Take<Number>();
    return Status();
}
std::int32_t Tell(void* target, std::size_t size) {
    Fill(target, size);
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
    return Tell(list, sizeof room + room * kUEyeCameraSize);
}

FUZZ_EXPORT std::int32_t fc2CreateContext(void** context) {
    *context = Take<std::uint8_t>() == 1 ? nullptr : &g_size;
    return Status();
}
FUZZ_STATUS(fc2DestroyContext, void* /*context*/)
FUZZ_EXPORT std::int32_t fc2GetNumOfCameras(void* /*context*/, std::uint32_t* count) {
    return Tell(count);
}
FUZZ_EXPORT std::int32_t fc2GetCameraSerialNumberFromIndex(void* /*context*/, std::uint32_t /*index*/,
                                                           std::uint32_t* number) {
    return Tell(number);
}
FUZZ_EXPORT std::int32_t fc2GetCameraFromSerialNumber(void* /*context*/, std::uint32_t /*number*/,
                                                      void* guid) {
    return Tell(guid, kGuidSize);
}
FUZZ_STATUS(fc2Connect, void* /*context*/, void* /*guid*/)
FUZZ_STATUS(fc2Disconnect, void* /*context*/)
FUZZ_EXPORT std::int32_t fc2GetCameraInfo(void* /*context*/, void* info) {
    return Tell(info, kCameraInfoSize);
}

FUZZ_EXPORT std::int32_t DMR_Init(std::int32_t* manager) {
    return Tell(manager);
}
FUZZ_STATUS(DMR_Close)
FUZZ_STATUS(DMR_UpdateDeviceList, std::uint32_t /*reserved*/, std::int32_t /*reserved2*/)
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
        *size = Take<std::uint16_t>();
        return kBufferTooSmall;
    }
    return Tell(info, *size);
}
