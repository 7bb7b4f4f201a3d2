// One network camera as it is heard now.
#pragma once

#include <ZQAPI/ZQDeviceAPI.h>

#include <map>
#include <optional>
#include <string>

#include "Session.h"
#include "communication/ZQComNetInterface.h"

namespace ZQAPI::zqdev {

struct Sighting {
    ZQDEVICEINFO camera;  // the saved record, with the addresses and the firmware version that it has now
    std::string hardwareAddress;  // empty where the camera's scanner does not tell
    std::string
        card;  // address and bits of the network card that reaches it, if that is known: "10.1.0.1/24"
    std::map<std::string, std::string> others = {};  // the hardware addresses of the others, by address
};

// Looks for the camera by its identifier; the library's list is the saved one afterwards. Nothing when it is not there.
// Throws Failure for an error, and for a camera that cannot be told from another: when two answer to the identifier, or
// the hardware address is heard at two places, or its address is another camera's too and the card is not known.
std::optional<Sighting> LookFor(Session& session, const ZQDEVICEINFO& saved);

// The machine's network card that an address is on, as "10.1.0.1/24"; nothing when there is none or several.
std::string OnlyCardInNetworkOf(const std::string& address);
bool IsInNetworkOfACard(const std::string& address);
bool IsAddressOfACard(const std::string& address);

}  // namespace ZQAPI::zqdev
