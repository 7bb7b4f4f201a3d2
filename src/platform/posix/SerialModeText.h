// Mode texts of serial ports for systems that have no parser of their own.
#pragma once

#include <string_view>

#include "platform/SerialPort.h"

namespace ZQAPI::platform {

// By the rules of the Windows function BuildCommDCB: "COM1:" in front is allowed; then either "9600,n,8,1"
// with an optional ",x" (XON/XOFF) or ",p" (hardware handshake), or words "key=value" in any order and any
// case: baud, parity, data, stop, to, xon, odsr, octs, dtr, rts, idsr. False, with `control` unchanged, for
// anything else.
bool ParseSerialModeText(std::string_view text, SerialControl& control);

}  // namespace ZQAPI::platform
