#include "Advice.h"

#include <ZQAPI/ZQErrors.h>

#include <algorithm>

#include "Text.h"
#include "kit/ConfigFiles.h"

namespace ZQAPI::zqdev {

namespace {

bool IsDenied(const std::string& file) {
    return !IsMissing(file) && !ReadingObstacle(file).empty();
}

bool IsWriteDenied(const std::string& file) {
    return !WritingObstacle(file).empty();
}

bool IsNoDeviceList(const std::string& file) {
    return !IsDeviceList(file);
}

constexpr const char* kMissing = "{file} does not exist: make it with \"{zqdev config init}\"";
constexpr const char* kDenied =
    "the system does not let {file} be read ({why-not-read}): mend that, or run it as a user who may read it";
constexpr const char* kWriteDenied =
    "the system does not let {file} be replaced ({why-not-written}): mend that, or run it as a user who may write "
    "to its folder";
constexpr const char* kCutOff =
    "{file} is cut off: restore it, or replace it with \"{zqdev config init --force}\"";
constexpr const char* kDamaged =
    "{file} is damaged or was edited by hand: check it, then \"{zqdev config seal FILE}\", or restore it";

// The first row that fits is the answer. {file} is the file, {why-not-...} the system's reason.
struct Row {
    Subject subject;
    int number;                                // 0: any
    bool (*applies)(const std::string& file);  // null: always
    const char* advice;
};

constexpr Row kRows[] = {
    {Subject::kLoading, ZQ_ERR_SEAL_READ, IsMissing, kMissing},
    {Subject::kLoading, 0, IsDenied, kDenied},
    {Subject::kLoading, ZQ_ERR_SEAL_READ, nullptr, kCutOff},
    {Subject::kLoading, ZQ_ERR_INI_KEY_MISSING, IsDeviceListEmpty,
     "{file} was saved from an empty list: mend it with \"{zqdev config init}\""},
    {Subject::kLoading, ZQ_ERR_INI_KEY_MISSING, IsNoDeviceList,
     "{file} is no device list: restore it, or replace it with \"{zqdev config init --force}\""},
    {Subject::kLoading, ZQ_ERR_INI_KEY_MISSING, nullptr,
     "a device in {file} lacks a value: add it by hand, then \"{zqdev config seal FILE}\""},
    {Subject::kLoading, ZQ_ERR_TEXT_TOO_LONG, nullptr,
     "a text in {file} is too long (names 63, values 64 characters): shorten it by hand, then "
     "\"{zqdev config seal FILE}\""},
    {Subject::kLoading, ZQ_ERR_SEAL_MISMATCH, nullptr, kDamaged},
    {Subject::kLoading, 0, IsWriteDenied, kWriteDenied},
    {Subject::kLoading, 0, nullptr, "check that {file} can be read and written"},

    {Subject::kSaving, 0, IsWriteDenied, kWriteDenied},
    {Subject::kSaving, 0, nullptr, "check that the folder of {file} can be written to and has room"},

    {Subject::kScan, ZQ_ERR_SEAL_READ, IsMissing, kMissing},
    {Subject::kScan, 0, IsDenied, kDenied},
    {Subject::kScan, ZQ_ERR_SEAL_READ, nullptr, kCutOff},
    {Subject::kScan, ZQ_ERR_SEAL_MISMATCH, nullptr, kDamaged},
    {Subject::kScan, ZQ_ERR_INI_KEY_MISSING, nullptr,
     "name at least one scanner in ActiveScanners in {file}, then \"{zqdev config seal FILE}\""},
    {Subject::kScan, ZQ_ERR_BAD_VALUE, nullptr,
     "ActiveScanners or another setting in {file} is wrong (\"{zqdev config check}\" says which): mend it, then "
     "\"{zqdev config seal FILE}\""},
    {Subject::kScan, ZQ_ERR_COM_CONFIG_LOAD, nullptr,
     "a scanner's line settings are missing or wrong in {file} (\"{zqdev config show}\" lists them): "
     "mend them, then \"{zqdev config seal FILE}\""},
    {Subject::kScan, 0, IsWriteDenied, kWriteDenied},
    {Subject::kScan, 0, nullptr, "check the settings in {file} and the network; -v shows what the scan did"},

    {Subject::kOneScanner, 0, IsDenied, kDenied},
    {Subject::kOneScanner, 0, nullptr,
     "check the settings in {file} and the network; -v shows what the scan did"},

    {Subject::kRescan, ZQ_ERR_DEVICE_NOT_FOUND, nullptr,
     "switch the device on and check its connection; \"{zqdev scan}\" shows what is there"},
    {Subject::kRescan, ZQ_ERR_BAD_VALUE, nullptr,
     "the device's scanner is none that this library knows: give it another with "
     "\"{zqdev modify ID --scanner NAME}\""},
    {Subject::kRescan, 0, IsDenied, kDenied},
    {Subject::kRescan, 0, nullptr, "check the settings in {file} and the network; -v shows what was tried"},

    {Subject::kAddress, ZQ_ERR_BAD_NEW_ADDRESS, nullptr,
     "give a whole address such as 192.168.1.20, below 224.0.0.0, not of 127.x.x.x, and neither the "
     "first nor the last of its network"},
    {Subject::kAddress, ZQ_ERR_COM_TIMEOUT, nullptr,
     "the camera does not answer: check that it is on and that \"{zqdev scan}\" finds it"},
    {Subject::kAddress, ZQ_ERR_LIBRARY_NOT_LOADED, nullptr,
     "what carries the change to this kind of camera is missing from the kit; -v shows its name"},
    {Subject::kAddress, 0, nullptr,
     "-v shows what was tried; \"{zqdev scan}\" shows where the camera is now"},

    {Subject::kCommand, ZQ_ERR_COM_TIMEOUT, nullptr,
     "check that it is on, and with \"{zqdev status}\" where it is; it may also not know the command"},
    {Subject::kCommand, ZQ_ERR_COM_ABORTED, nullptr, "it was given up; --time-out says when"},
    {Subject::kCommand, ZQ_ERR_LIBRARY_NOT_LOADED, nullptr,
     "the command module {file} can't be loaded: check that the kit is whole; -v shows the reason"},
    {Subject::kCommand, ZQ_ERR_ENTRY_POINT_MISSING, nullptr,
     "{file} is no command module: check that the kit is whole"},
    {Subject::kCommand, ZQ_ERR_HOST_LOOKUP, nullptr,
     "that is no address for this module: \"{zqdev status}\" shows where the camera is"},
    {Subject::kCommand, ZQ_ERR_BAD_VALUE, nullptr,
     "that is no address or no command for this module; \"{zqdev show}\" shows the address"},
    {Subject::kCommand, ZQ_ERR_RS232_OPEN, nullptr,
     "\"{zqdev ports}\" shows the serial ports; close the program that has it, or see that you may use it"},
    {Subject::kCommand, 0, nullptr, "-v shows what was sent and answered"},

    {Subject::kRecord, ZQ_ERR_BAD_VALUE, nullptr,
     "a text holds a control character, or the name is one that the file can't hold (';', ']', blanks "
     "at an end)"},
    {Subject::kRecord, 0, nullptr, "check the texts that were given"},

    {Subject::kModules, ZQ_ERR_SEAL_READ, IsMissing,
     "{file} does not exist: check the spelling of the device type, or add the file to the kit"},
    {Subject::kModules, ZQ_ERR_SEAL_READ, IsDenied, kDenied},
    {Subject::kModules, ZQ_ERR_SEAL_MISMATCH, nullptr, kDamaged},
    {Subject::kModules, ZQ_ERR_BAD_VALUE, nullptr, "a device type has no separators or colons in its name"},
    {Subject::kModules, ZQ_ERR_INI_KEY_MISSING, nullptr,
     "{file} lists no modules: fill in CCMs and IAMs, then \"{zqdev config seal FILE}\""},
    {Subject::kModules, 0, nullptr, "check that {file} can be read"},

    {Subject::kFile, ZQ_ERR_SEAL_READ, IsMissing,
     "there is no such file; \"{zqdev config init}\" makes missing ones"},
    {Subject::kFile, ZQ_ERR_SEAL_READ, IsDenied, kDenied},
    {Subject::kFile, ZQ_ERR_SEAL_READ, nullptr, "it is cut off: restore it"},
    {Subject::kFile, ZQ_ERR_SEAL_MISSING, nullptr, "check it, then \"{zqdev config seal FILE}\""},
    {Subject::kFile, ZQ_ERR_SEAL_MISMATCH, nullptr,
     "it is damaged or was edited by hand: check it, then \"{zqdev config seal FILE}\", or restore it"},
    {Subject::kFile, 0, nullptr, "check that it can be read and written"},

    {Subject::kSeal, 0, IsMissing, "there is no such file: check the name"},
    {Subject::kSeal, 0, IsDenied, kDenied},
    {Subject::kSeal, 0, IsWriteDenied, kWriteDenied},
    {Subject::kSeal, 0, nullptr, "try it again"},

    {Subject::kSettings, 0, nullptr, "mend it, then \"{zqdev config seal FILE}\""},
};

}  // namespace

std::string Filled(std::string_view text, const Kit& kit, const Words& words) {
    constexpr std::string_view kCall = "zqdev ";
    const auto wordOf = [&](std::string_view name) {
        const auto word =
            std::find_if(words.begin(), words.end(), [&](const auto& one) { return one.first == name; });
        return word == words.end() ? std::string() : word->second;
    };
    std::string filled;
    for (std::size_t start = 0; (start = text.find('{')) != std::string_view::npos;) {
        const std::string_view mark = text.substr(start + 1, text.find('}', start) - start - 1);
        filled += text.substr(0, start);
        text.remove_prefix(start + mark.size() + 2);
        if (!mark.starts_with(kCall)) {
            filled += wordOf(mark);
            continue;
        }
        std::string arguments(mark.substr(kCall.size()));
        for (const std::string_view name : {"FILE", "ID"}) {
            const std::size_t at = arguments.find(name);
            if (const std::string word = wordOf(name); at != std::string::npos && !word.empty()) {
                arguments.replace(at, name.size(), word);
            }
        }
        filled += kit.Command(arguments);
    }
    return filled.append(text);
}

std::string Advice(Subject subject, int number, const Kit& kit, const std::string& file) {
    for (const Row& row : kRows) {
        if (row.subject == subject && (row.number == 0 || row.number == number) &&
            (row.applies == nullptr || row.applies(file))) {
            const std::string_view text = row.advice;
            const auto has = [&](std::string_view mark) { return text.find(mark) != std::string_view::npos; };
            return Filled(text, kit,
                          {{"file", file},
                           {"FILE", Quoted(file, "FILE")},
                           {"why-not-read", has("{why-not-read}") ? ReadingObstacle(file) : ""},
                           {"why-not-written", has("{why-not-written}") ? WritingObstacle(file) : ""}});
        }
    }
    return "run it again with -v to see what the library does";
}

}  // namespace ZQAPI::zqdev
