#include "commands/UdevRule.h"

#include <algorithm>
#include <string_view>

namespace ZQAPI::zqdev {

namespace {

bool IsPlain(std::string_view text) {
    constexpr const char* kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789#+-.:=@_";
    return !text.empty() && text.find_first_not_of(kPlain) == std::string_view::npos;
}

bool IsNumber(std::string_view text) {
    return !text.empty() && text.size() <= 4 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Takes what is behind the last `mark` off the text, and the mark.
std::string_view TakeBehind(std::string_view& text, std::string_view mark) {
    const std::size_t place = text.rfind(mark);
    if (place == std::string_view::npos) {
        return {};
    }
    const std::string_view behind = text.substr(place + mark.size());
    text = text.substr(0, place);
    return behind;
}

}  // namespace

// "usb-<what udev calls ID_SERIAL>-if<number of the interface>", and "-port<number>" of a driver that has several.
std::string UdevRule(const std::string& stableName, std::uint32_t number) {
    constexpr std::string_view kBus = "usb-";
    std::string_view rest = stableName;
    if (!rest.starts_with(kBus)) {
        return {};
    }
    rest.remove_prefix(kBus.size());
    const std::string port(TakeBehind(rest, "-port"));
    const std::string interfaceNumber(TakeBehind(rest, "-if"));
    if (!IsPlain(rest) || !(interfaceNumber.size() == 2 && IsPlain(interfaceNumber)) ||
        !(port.empty() || IsNumber(port))) {
        return {};
    }
    return "SUBSYSTEM==\"tty\", ENV{ID_BUS}==\"usb\", ENV{ID_SERIAL}==\"" + std::string(rest) +
           "\", ENV{ID_USB_INTERFACE_NUM}==\"" + interfaceNumber + "\", " +
           (port.empty() ? "" : "ATTRS{port_number}==\"" + port + "\", ") + "SYMLINK+=\"COM" +
           std::to_string(number) + "\"";
}

}  // namespace ZQAPI::zqdev
