// Serial ports beyond what the library knows of them.
#pragma once

#include <string>
#include <vector>

namespace ZQAPI::platform {

// A serial port on USB, which has no COM number of its own: "/dev/ttyUSB0", and the name that it keeps wherever it is
// plugged in, "usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0"; that is empty where the system gives none.
struct SerialAdapter {
    std::string device;
    std::string stableName;
};

// Those that are plugged in, by their names; of the folder in which the library looks for COM ports
// (SerialPort::Open). None on Windows, where every port has a number.
std::vector<SerialAdapter> ListSerialAdapters();

struct DeviceAccess {
    bool isAllowed = true;
    std::string group;  // whose members are, if that would help
};
// Whether this process may open the device; that somebody else has it open does not count.
DeviceAccess GetDeviceAccess(const std::string& device);

}  // namespace ZQAPI::platform
