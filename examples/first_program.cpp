// Prints the devices of this machine; with the argument "scan" it looks for them first.
#include <ZQAPI/ZQDevice.hpp>
#include <iostream>
#include <string_view>

namespace dev = ZQAPI::device;

int main(int argc, char** argv) {
    try {
        dev::Library library;
        if (argc > 1 && std::string_view(argv[1]) == "scan") {
            library.Scan();
        }
        for (const ZQDEVICEINFO& device : library.Devices()) {
            std::cout << dev::Text(device.Name) << ": " << dev::Text(device.DeviceID) << " at "
                      << dev::Text(device.UsedAddress) << '\n';
        }
        return 0;
    } catch (const std::system_error& error) {
        std::cerr << error.what() << " (" << error.code().value() << ")\n";
        return 1;
    }
}
