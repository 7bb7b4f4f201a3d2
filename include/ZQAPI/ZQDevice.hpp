// The device library in C++17: a thin, header-only layer over the functions of ZQDeviceAPI.h, which it calls
// and nothing else. Their contracts hold here as well.
//
//     #include <ZQAPI/ZQDevice.hpp>
//
//     namespace dev = ZQAPI::device;
//
//     int main() {
//         try {
//             dev::Library library;
//             library.Scan();
//             for (const ZQDEVICEINFO& device : library.Devices()) {
//                 std::cout << dev::Text(device.DeviceID) << " at " << dev::Text(device.UsedAddress) << '\n';
//             }
//         } catch (const std::system_error& error) {
//             std::cerr << error.what() << " (" << error.code().value() << ")\n";
//         }
//     }
//
// Errors. Each operation comes in two forms. One throws std::system_error, whose code() holds the error
// number and whose what() names the function and the condition. The other takes a std::error_code, is
// noexcept, and clears the code when it succeeds. Numbers compare with codes: `if (error ==
// ZQ_ERR_DEVICE_NOT_FOUND)`.
//
// Allocation. Only the operations that return a std::vector or a std::string allocate; where memory runs out
// the noexcept form reports ZQ_ERR_OUT_OF_MEMORY.
//
// Texts. Parameters are texts ended by a NUL; a null pointer is reported as ZQ_ERR_NULL_INPUT.
#ifndef ZQAPI_ZQDEVICE_HPP
#define ZQAPI_ZQDEVICE_HPP

#include <cstddef>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZQDeviceAPI.h"
#include "ZQErrorText.h"

template <>
struct std::is_error_code_enum<ZQ_ERROR_NUMBER> : std::true_type {};

// Beside the enumeration, where std::error_code looks for it.
std::error_code make_error_code(ZQ_ERROR_NUMBER number) noexcept;

namespace ZQAPI::device {

// ---- errors -------------------------------------------------------------------------------------

// The condition that the error number stands for, in words; "unknown error" for a number outside the table.
inline const char* Condition(int number) noexcept {
    return ZQ_ErrorText(number);
}

// The category of the error numbers of ZQErrors.h.
inline const std::error_category& ErrorCategory() noexcept {
    class Category final : public std::error_category {
        const char* name() const noexcept override { return "ZQDeviceAPI"; }
        std::string message(int number) const override { return Condition(number); }
    };
    static const Category category;
    return category;
}

// A function's result as an error code: ZQ_OK becomes the empty one.
inline std::error_code MakeErrorCode(int result) noexcept {
    return result == ZQ_OK ? std::error_code() : std::error_code(result, ErrorCategory());
}

namespace detail {

inline void ThrowIf(const std::error_code& error, const char* function) {
    if (error) {
        throw std::system_error(error, function);
    }
}

}  // namespace detail

// ---- scanners -----------------------------------------------------------------------------------

// kManual, kZqUdp and so on, by number: see ZQDEV_SCANNER_TABLE.
#define ZQDEV_SCANNER_ENUMERATOR_(name, number, cppName, ccm, iam) cppName = (number),
enum class Scanner : int { ZQDEV_SCANNER_TABLE(ZQDEV_SCANNER_ENUMERATOR_) };
#undef ZQDEV_SCANNER_ENUMERATOR_

// The names by scanner number.
#define ZQDEV_SCANNER_TEXT_(name, number, cppName, ccm, iam) ZQDEV_SCANNER_NAME_##name,
inline constexpr std::string_view kScannerNames[] = {ZQDEV_SCANNER_TABLE(ZQDEV_SCANNER_TEXT_)};
#undef ZQDEV_SCANNER_TEXT_

// The scanner's name as it stands in a record; empty for a number that is no scanner's.
constexpr std::string_view ScannerName(Scanner scanner) noexcept {
    const int number = static_cast<int>(scanner);
    return number >= 0 && number < ZQDEV_NOF_SCANNERS ? kScannerNames[number] : std::string_view();
}

// The scanner of that exact name.
constexpr std::optional<Scanner> ScannerFromName(std::string_view name) noexcept {
    for (int number = 0; number < ZQDEV_NOF_SCANNERS; ++number) {
        if (kScannerNames[number] == name) {
            return static_cast<Scanner>(number);
        }
    }
    return std::nullopt;
}

// ---- records ------------------------------------------------------------------------------------

// One of a record's eleven fields.
using Field = char[ZQDEV_FIELD_SIZE];

// The field's text, bounded to the field even where the NUL is missing. It refers to the record: keep
// it no longer.
inline std::string_view Text(const Field& field) noexcept {
    const void* end = std::memchr(field, '\0', sizeof field);
    const auto length = end != nullptr ? static_cast<const char*>(end) - field : std::ptrdiff_t{sizeof field};
    return {field, static_cast<std::size_t>(length)};
}
std::string_view Text(const Field&& field) = delete;

// Sets the field and fills what is left with NULs. A text of more than 64 characters is ZQ_ERR_TEXT_TOO_LONG,
// one with a NUL in it ZQ_ERR_BAD_VALUE; the field is then as it was: a text is never cut.
inline void SetText(Field& field, std::string_view text, std::error_code& error) noexcept {
    if (text.size() >= sizeof field) {
        error = MakeErrorCode(ZQ_ERR_TEXT_TOO_LONG);
        return;
    }
    if (text.find('\0') != std::string_view::npos) {
        error = MakeErrorCode(ZQ_ERR_BAD_VALUE);
        return;
    }
    error.clear();
    Field copy = {};  // the text may lie in the field itself
    text.copy(copy, text.size());
    std::memcpy(field, copy, sizeof field);
}
inline void SetText(Field& field, std::string_view text) {
    std::error_code error;
    SetText(field, text, error);
    detail::ThrowIf(error, "ZQAPI::device::SetText");
}

// ---- library ------------------------------------------------------------------------------------

// The initialised library: counted up by the constructor, down by the destructor. Several may live at once,
// they share the one device list of the process. Movable; one that was moved from counts no more. Thread-safe
// but for moving.
class Library {
public:
    Library() {
        std::error_code error;
        *this = Library(error);
        detail::ThrowIf(error, "ZQDEV_InitLibrary");
    }
    // Is false afterwards when `error` is set.
    explicit Library(std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_InitLibrary());
        m_counted = !error;
    }
    Library(Library&& other) noexcept : m_counted(std::exchange(other.m_counted, false)) {}
    Library& operator=(Library&& other) noexcept {
        Library taken(std::move(other));
        std::swap(m_counted, taken.m_counted);
        return *this;
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (m_counted) {
            ZQDEV_DeInitLibrary();
        }
    }

    explicit operator bool() const noexcept { return m_counted; }

    // The device list.

    unsigned int Count(std::error_code& error) const noexcept {
        unsigned int count = 0;
        error = MakeErrorCode(ZQDEV_GetNofDevices(&count));
        return count;
    }
    unsigned int Count() const {
        std::error_code error;
        const unsigned int count = Count(error);
        detail::ThrowIf(error, "ZQDEV_GetNofDevices");
        return count;
    }

    // The device at the index, counted from 0. Past the end: ZQ_ERR_BAD_INDEX, and `device` is as it was.
    void GetDevice(unsigned int index, ZQDEVICEINFO& device, std::error_code& error) const noexcept {
        error = MakeErrorCode(ZQDEV_GetDevice(index, &device));
    }
    ZQDEVICEINFO Device(unsigned int index) const {
        ZQDEVICEINFO device = {};
        std::error_code error;
        GetDevice(index, device, error);
        detail::ThrowIf(error, "ZQDEV_GetDevice");
        return device;
    }

    // The whole list, in its order: one allocation at most, none where `devices` has the capacity. When
    // another thread shortens the list meanwhile, what is left of it. After an error `devices` is empty.
    void GetDevices(std::vector<ZQDEVICEINFO>& devices, std::error_code& error) const noexcept {
        devices.clear();
        const unsigned int count = Count(error);
        if (error) {
            return;
        }
        try {
            devices.resize(count);
        } catch (const std::exception&) {
            error = MakeErrorCode(ZQ_ERR_OUT_OF_MEMORY);
            return;
        }
        for (unsigned int index = 0; index < count; ++index) {
            GetDevice(index, devices[index], error);
            if (error == ZQ_ERR_BAD_INDEX) {
                error.clear();
                devices.resize(index);
                return;
            }
            if (error) {
                devices.clear();
                return;
            }
        }
    }
    std::vector<ZQDEVICEINFO> Devices() const {
        std::vector<ZQDEVICEINFO> devices;
        std::error_code error;
        GetDevices(devices, error);
        detail::ThrowIf(error, "ZQDEV_GetDevice");
        return devices;
    }

    // Appends the device under a new name; its own Name is ignored.
    void Add(const ZQDEVICEINFO& device, std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_AddDevice(device));
    }
    void Add(const ZQDEVICEINFO& device) { Try("ZQDEV_AddDevice", &ZQDEV_AddDevice, device); }

    // Replaces the first device that has the record's DeviceID. None has it: ZQ_ERR_BAD_INDEX.
    void Modify(const ZQDEVICEINFO& device, std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_ModifyDevice(device));
    }
    void Modify(const ZQDEVICEINFO& device) { Try("ZQDEV_ModifyDevice", &ZQDEV_ModifyDevice, device); }

    // Removes the first device with this identifier; none is no error.
    void Remove(const char* deviceId, std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_RemoveDevice(deviceId));
    }
    void Remove(const char* deviceId) { Try("ZQDEV_RemoveDevice", &ZQDEV_RemoveDevice, deviceId); }

    // Writes the list to the device list file, the only place where a scan or an edit outlives the process.
    void Save(std::error_code& error) noexcept { error = MakeErrorCode(ZQDEV_SaveDeviceConfig()); }
    void Save() { Try("ZQDEV_SaveDeviceConfig", &ZQDEV_SaveDeviceConfig); }

    // Replaces the list by the file's content; after an error the list is empty.
    void Load(std::error_code& error) noexcept { error = MakeErrorCode(ZQDEV_LoadDeviceConfig()); }
    void Load() { Try("ZQDEV_LoadDeviceConfig", &ZQDEV_LoadDeviceConfig); }

    // Scanning. Each waits for its result: a scan up to 30 s.

    // Replaces the list by what the configured scanners find.
    void Scan(std::error_code& error) noexcept { error = MakeErrorCode(ZQDEV_ScanForDevices()); }
    void Scan() { Try("ZQDEV_ScanForDevices", &ZQDEV_ScanForDevices); }

    // Replaces the list by what this scanner finds.
    void Scan(Scanner scanner, std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_ScanForDevicesWithScanner(static_cast<int>(scanner)));
    }
    void Scan(Scanner scanner) {
        Try("ZQDEV_ScanForDevicesWithScanner", &ZQDEV_ScanForDevicesWithScanner, static_cast<int>(scanner));
    }

    // Refreshes the record's addresses and firmware version; the list is not changed. Not found any more:
    // ZQ_ERR_DEVICE_NOT_FOUND.
    void Rescan(ZQDEVICEINFO& device, std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_RescanDevice(&device));
    }
    void Rescan(ZQDEVICEINFO& device) { Try("ZQDEV_RescanDevice", &ZQDEV_RescanDevice, &device); }

    // Gives a network camera a new IPv4 address, in dotted decimal; the list is not changed.
    void ChangeNetAddress(const ZQDEVICEINFO& device, const char* newAddress,
                          std::error_code& error) noexcept {
        error = MakeErrorCode(ZQDEV_ChangeDeviceNetAddr(device, newAddress));
    }
    void ChangeNetAddress(const ZQDEVICEINFO& device, const char* newAddress) {
        Try("ZQDEV_ChangeDeviceNetAddr", &ZQDEV_ChangeDeviceNetAddr, device, newAddress);
    }

    // The modules of a device type, from its camera configuration file. Empty after an error.

    std::string DefaultCCM(const char* deviceType, std::error_code& error) const noexcept {
        return DefaultModule(&ZQDEV_GetDefaultCCM, deviceType, error);
    }
    std::string DefaultCCM(const char* deviceType) const {
        std::error_code error;
        std::string name = DefaultCCM(deviceType, error);
        detail::ThrowIf(error, "ZQDEV_GetDefaultCCM");
        return name;
    }
    std::string DefaultIAM(const char* deviceType, std::error_code& error) const noexcept {
        return DefaultModule(&ZQDEV_GetDefaultIAM, deviceType, error);
    }
    std::string DefaultIAM(const char* deviceType) const {
        std::error_code error;
        std::string name = DefaultIAM(deviceType, error);
        detail::ThrowIf(error, "ZQDEV_GetDefaultIAM");
        return name;
    }
    std::vector<std::string> SupportedCCMs(const char* deviceType, std::error_code& error) const noexcept {
        return SupportedModules(&ZQDEV_GetNofSupportedCCMs, &ZQDEV_GetSupportedCCM, deviceType, error);
    }
    std::vector<std::string> SupportedCCMs(const char* deviceType) const {
        std::error_code error;
        std::vector<std::string> names = SupportedCCMs(deviceType, error);
        detail::ThrowIf(error, "ZQDEV_GetSupportedCCM");
        return names;
    }
    std::vector<std::string> SupportedIAMs(const char* deviceType, std::error_code& error) const noexcept {
        return SupportedModules(&ZQDEV_GetNofSupportedIAMs, &ZQDEV_GetSupportedIAM, deviceType, error);
    }
    std::vector<std::string> SupportedIAMs(const char* deviceType) const {
        std::error_code error;
        std::vector<std::string> names = SupportedIAMs(deviceType, error);
        detail::ThrowIf(error, "ZQDEV_GetSupportedIAM");
        return names;
    }

private:
    // The longest module list in a camera configuration file, and so the longest name, has 4094 characters.
    using ModuleName = char[4096];
    using DefaultQuery = int (*)(const char*, char*, unsigned int);
    using CountQuery = int (*)(const char*, unsigned int*);
    using NameQuery = int (*)(const char*, unsigned int, char*, unsigned int);

    template <class... Parameters, class... Arguments>
    static void Try(const char* name, int (*function)(Parameters...), const Arguments&... arguments) {
        detail::ThrowIf(MakeErrorCode(function(arguments...)), name);
    }

    static std::string DefaultModule(DefaultQuery query, const char* deviceType,
                                     std::error_code& error) noexcept {
        ModuleName name;
        error = MakeErrorCode(query(deviceType, name, sizeof name - 1));
        if (!error) {
            try {
                return name;
            } catch (const std::exception&) {
                error = MakeErrorCode(ZQ_ERR_OUT_OF_MEMORY);
            }
        }
        return {};
    }

    static std::vector<std::string> SupportedModules(CountQuery countQuery, NameQuery nameQuery,
                                                     const char* deviceType,
                                                     std::error_code& error) noexcept {
        unsigned int count = 0;
        error = MakeErrorCode(countQuery(deviceType, &count));
        if (error) {
            return {};
        }
        try {
            std::vector<std::string> names;
            names.reserve(count);
            ModuleName name;
            for (unsigned int index = 0; index < count && !error; ++index) {
                error = MakeErrorCode(nameQuery(deviceType, index, name, sizeof name - 1));
                if (!error) {
                    names.emplace_back(name);
                }
            }
            if (error) {
                names.clear();
            }
            return names;
        } catch (const std::exception&) {
            error = MakeErrorCode(ZQ_ERR_OUT_OF_MEMORY);
            return {};
        }
    }

    bool m_counted = false;
};

}  // namespace ZQAPI::device

inline std::error_code make_error_code(ZQ_ERROR_NUMBER number) noexcept {
    return ZQAPI::device::MakeErrorCode(number);
}

#endif
