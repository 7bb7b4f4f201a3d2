// Mode texts of serial ports, as settings have them.
#include "Fuzz.h"
#include "platform/posix/SerialModeText.h"

namespace ZQAPI::fuzz {

using platform::SerialControl;

namespace {

constexpr const char* kStopBits[] = {"1", "1.5", "2"};
constexpr const char* kParities[] = {"n", "o", "e", "m", "s"};
constexpr const char* kLines[] = {"off", "on", "hs", "tg"};

// The words that say what the control says; what was not said (data bits) stays unsaid.
std::string Words(const SerialControl& control) {
    const auto onOff = [](bool isOn) { return kLines[isOn ? 1 : 0]; };
    std::string text =
        "stop=" + std::string(kStopBits[control.stopBits]) + " parity=" + kParities[control.parity] +
        " dtr=" + kLines[static_cast<int>(control.dtr)] + " rts=" + kLines[static_cast<int>(control.rts)] +
        " xon=" + onOff(control.xonXoffInput) + " octs=" + onOff(control.outputWaitsForCts) +
        " odsr=" + onOff(control.outputWaitsForDsr) + " baud=" + std::to_string(control.baudRate);
    return control.dataBits == 0 ? text : text + " data=" + std::to_string(control.dataBits);
}

}  // namespace

void CheckInput(std::string_view input) {
    SerialControl control;
    control.baudRate = 12345;
    const SerialControl before = control;
    if (!platform::ParseSerialModeText(input, control)) {
        ZQ_REQUIRE(control == before);
        return;
    }
    ZQ_REQUIRE(control.dataBits == 0 || (control.dataBits >= 5 && control.dataBits <= 8));
    ZQ_REQUIRE(control.stopBits < std::size(kStopBits) && control.parity < std::size(kParities));
    SerialControl again;
    ZQ_REQUIRE(platform::ParseSerialModeText(Words(control), again) && again == control);
}

}  // namespace ZQAPI::fuzz
