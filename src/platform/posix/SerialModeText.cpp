#include "platform/posix/SerialModeText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>

namespace ZQAPI::platform {

namespace {

using Line = SerialControl::Line;

// The codes of SerialControl stand at their own index.
constexpr std::string_view kStopBits[] = {"1", "1.5", "2"};
constexpr std::string_view kParities = "noems";

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

template <class Number>
bool ParseNumber(std::string_view text, Number& number) {
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    return !text.empty() && parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

bool ParseParity(std::string_view text, SerialControl& control) {
    const std::size_t code = text.size() == 1 ? kParities.find(text) : std::string_view::npos;
    control.parity = static_cast<std::uint8_t>(code);
    return code != std::string_view::npos;
}

bool ParseDataBits(std::string_view text, SerialControl& control) {
    return ParseNumber(text, control.dataBits) && control.dataBits >= 5 && control.dataBits <= 8;
}

bool ParseStopBits(std::string_view text, SerialControl& control) {
    const auto* const found = std::find(std::begin(kStopBits), std::end(kStopBits), text);
    control.stopBits = static_cast<std::uint8_t>(found - std::begin(kStopBits));
    return found != std::end(kStopBits);
}

std::optional<bool> ParseSwitch(std::string_view text) {
    return text == "on" ? std::optional(true) : text == "off" ? std::optional(false) : std::nullopt;
}

bool ParseLine(std::string_view text, bool maybeToggle, Line& line) {
    const auto isOn = ParseSwitch(text);
    line = isOn.value_or(false) ? Line::kEnabled : Line::kDisabled;
    if (text == "hs" || (text == "tg" && maybeToggle)) {
        line = text == "hs" ? Line::kHandshake : Line::kToggle;
        return true;
    }
    return isOn.has_value();
}

// Takes the part up to the separator off the text's front.
std::string_view TakePart(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

std::string_view Trim(std::string_view text) {
    while (text.starts_with(' ')) {
        text.remove_prefix(1);
    }
    while (text.ends_with(' ')) {
        text.remove_suffix(1);
    }
    return text;
}

// The short form may leave out the zeros of the classic rates: "96" is 9600.
std::uint32_t WholeBaudRate(std::uint32_t baudRate) {
    constexpr std::uint32_t kShort[][2] = {{11, 110},  {15, 150},  {30, 300},  {60, 600},  {12, 1200},
                                           {24, 2400}, {48, 4800}, {96, 9600}, {19, 19200}};
    const auto* const found = std::find_if(std::begin(kShort), std::end(kShort),
                                           [baudRate](const auto& row) { return row[0] == baudRate; });
    return found != std::end(kShort) ? (*found)[1] : baudRate;
}

// "9600,n,8,1" and what may follow.
bool ParseShortForm(std::string_view text, SerialControl& control) {
    std::array<std::string_view, 5> parts{};
    std::size_t count = 0;
    for (bool more = true; more; ++count) {
        more = text.find(',') != std::string_view::npos;
        if (count == parts.size()) {
            return false;
        }
        parts[count] = Trim(TakePart(text, ','));
    }
    const std::string_view handshake = parts[4];
    const bool isXonXoff = handshake == "x";
    const bool isHardware = handshake == "p";
    if (count < 4 || (count == 5 && !isXonXoff && !isHardware) || !ParseNumber(parts[0], control.baudRate) ||
        !ParseParity(parts[1], control) || !ParseDataBits(parts[2], control) ||
        !ParseStopBits(parts[3], control)) {
        return false;
    }
    control.baudRate = WholeBaudRate(control.baudRate);
    control.dtr = isHardware ? Line::kHandshake : Line::kEnabled;
    control.rts = control.dtr;
    control.outputWaitsForCts = isHardware;
    control.outputWaitsForDsr = isHardware;
    control.xonXoffOutput = isXonXoff;
    control.xonXoffInput = isXonXoff;
    return true;
}

bool ParseWord(std::string_view key, std::string_view value, SerialControl& control) {
    if (key == "baud") {
        return ParseNumber(value, control.baudRate);
    }
    if (key == "parity") {
        return ParseParity(value, control);
    }
    if (key == "data") {
        return ParseDataBits(value, control);
    }
    if (key == "stop") {
        return ParseStopBits(value, control);
    }
    if (key == "dtr") {
        return ParseLine(value, false, control.dtr);
    }
    if (key == "rts") {
        return ParseLine(value, true, control.rts);
    }
    const auto isOn = ParseSwitch(value);
    if (key == "xon") {
        control.xonXoffOutput = control.xonXoffInput = isOn.value_or(false);
    } else if (key == "octs") {
        control.outputWaitsForCts = isOn.value_or(false);
    } else if (key == "odsr") {
        control.outputWaitsForDsr = isOn.value_or(false);
    } else if (key != "to" && key != "idsr") {
        return false;
    }
    return isOn.has_value();
}

// "baud=9600 parity=N ..."
bool ParseWords(std::string_view text, SerialControl& control) {
    bool isStopGiven = false;
    while (!(text = Trim(text)).empty()) {
        std::string_view value = TakePart(text, ' ');
        const std::string_view key = TakePart(value, '=');
        if (!ParseWord(key, value, control)) {
            return false;
        }
        isStopGiven = isStopGiven || key == "stop";
    }
    constexpr std::uint32_t kTeleprinter = 110;
    if (!isStopGiven && control.baudRate == kTeleprinter) {
        control.stopBits = kTwoStopBits;
    }
    return true;
}

// Takes "com1:" off; false when there is a port's name and nothing behind it.
bool SkipPortName(std::string_view& text) {
    constexpr std::string_view kPrefix = "com";
    if (!text.starts_with(kPrefix)) {
        return true;
    }
    text.remove_prefix(kPrefix.size());
    const std::size_t digits =
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
    text.remove_prefix(digits);
    if (digits == 0 || !(text.starts_with(':') || text.starts_with(' '))) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

}  // namespace

bool ParseSerialModeText(std::string_view text, SerialControl& control) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    std::string_view rest = lower;
    SerialControl parsed;
    if (!SkipPortName(rest)) {
        return false;
    }
    const bool isShort = rest.find(',') != std::string_view::npos;
    if (isShort ? !ParseShortForm(rest, parsed) : !ParseWords(rest, parsed)) {
        return false;
    }
    control = parsed;
    return true;
}

}  // namespace ZQAPI::platform
