// What the fuzz targets share. Each target is one function, CheckInput, in a file of its own: libFuzzer calls it with the
// inputs it makes up (scripts/fuzz), else Replay.cpp with those of the corpus. The library's word on bad input is
// CZQException; every other exception, like a broken requirement, ends the program.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devices/ZQDeviceList.h"
#include "foundation/ZQLogger.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

// What must hold for every input.
#define ZQ_REQUIRE(condition) \
    ((condition) ? void() : ::ZQAPI::fuzz::RequirementBroken(#condition, __FILE__, __LINE__))

namespace ZQAPI::fuzz {

// The target.
void CheckInput(std::string_view input);

[[noreturn]] inline void RequirementBroken(const char* condition, const char* file, int line) {
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

// An input with several texts in it has these control characters between them, so that seeds can be written by hand.
inline constexpr char kBetweenParts = '\x1E';
inline constexpr char kBetweenFields = '\x1F';

// Takes the text up to the separator off the input's front, the separator too.
inline std::string TakePart(std::string_view& input, char separator = kBetweenParts) {
    const std::size_t end = std::min(input.find(separator), input.size());
    std::string part(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    return part;
}

// Takes one byte; 0 off an empty input.
inline std::uint8_t TakeByte(std::string_view& input) {
    const char byte = input.empty() ? '\0' : input.front();
    input.remove_prefix(std::min<std::size_t>(1, input.size()));
    return static_cast<std::uint8_t>(byte);
}

inline std::vector<std::string> AllParts(std::string_view input, char separator = kBetweenParts) {
    std::vector<std::string> parts;
    while (!input.empty()) {
        parts.push_back(TakePart(input, separator));
    }
    return parts;
}

// The result of the body; nothing when it fails as it may.
template <class Body>
auto ResultOf(Body&& body) -> std::optional<decltype(body())> {
    try {
        return body();
    } catch (const CZQException&) {
        return std::nullopt;
    }
}

template <class Body>
bool Succeeds(Body&& body) {
    return ResultOf([&] { return body(), true; }).has_value();
}

// One file in a folder of its own, written anew for each input.
class InputFile {
public:
    explicit InputFile(const char* name = "input") : m_path(m_folder.File(name)) {}
    void Write(const std::string& bytes) const { test::WriteBytes(m_path, bytes); }
    // Sealed as it is, where it can be: damage is another target's.
    bool WriteSealed(std::string_view content) const {
        return Succeeds([&] { test::WriteSealed(m_path, std::string(content)); });
    }
    std::string Read() const { return test::ContentOf(m_path); }
    const std::string& Path() const { return m_path; }
    std::string Folder() const { return m_folder.File(""); }

private:
    test::TempFolder m_folder;
    std::string m_path;
};

// Whether every text but the name, which the list gives, comes back from the device list file as itself.
inline bool IsKeepable(const CZQDeviceInfo& device) {
    const CZQString texts[] = {device.GetDeviceDesc(),  device.GetDeviceTypeByName(),
                               device.GetDeviceID(),    device.GetUsedScanner(),
                               device.GetUsedAddress(), device.GetCCM(),
                               device.GetCCMAddress(),  device.GetIAM(),
                               device.GetIAMAddress(),  device.GetFirmwareVersion()};
    return std::all_of(std::begin(texts), std::end(texts), CZQDeviceInfo::ReadsBack);
}

// What must hold of every record that a scanner makes, whatever the camera or library said.
inline void RequireKeepable(const CZQDeviceInfo& device) {
    ZQ_REQUIRE(Succeeds([&] { device.CheckTerminated(); }));
    ZQ_REQUIRE(IsKeepable(device));
}

// Saves the list; one of records that can be kept is then loaded without a difference.
inline void RequireComesBack(const CZQDeviceList& list) {
    static const InputFile saved;
    list.SaveToFile(saved.Path());
    CZQDeviceList again;
    const bool isLoaded = Succeeds([&] { again.LoadFromFile(saved.Path()); });
    const bool isKeepable =
        list.GetCount() > 0 && std::all_of(list.begin(), list.end(), [](const auto& device) {
            return IsKeepable(device) && Succeeds([&] { device.CheckName(); });
        });
    const auto areEqual = [](const CZQDeviceInfo& one, const CZQDeviceInfo& other) {
        return std::memcmp(&one.GetRecord(), &other.GetRecord(), sizeof(ZQDEVICEINFO)) == 0;
    };
    ZQ_REQUIRE(!isKeepable ||
               (isLoaded && std::equal(list.begin(), list.end(), again.begin(), again.end(), areEqual)));
}

// Failures that the library goes on after are expected by the thousand.
class QuietLogger : public CZQILogger {
public:
    void Log(std::uint32_t /*level*/, const CZQException& exception) override { exception.ToString(); }
    CZQString FormatError(std::int32_t /*errorNumber*/) override { return {}; }
};
inline const bool g_isQuiet = (SetGlobalLogger(std::make_unique<QuietLogger>()), true);

}  // namespace ZQAPI::fuzz
