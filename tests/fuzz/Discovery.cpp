// Answers to discovery, one datagram each.
#include "Fuzz.h"
#include "scanners/ZQUdpDiscovery.h"

using namespace ZQAPI;
using namespace ZQAPI::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view datagram = Text(data, size);
    if (const auto answer = ParseUdpAnswer(datagram)) {
        ZQ_REQUIRE(answer->hardwareAddress.GetLength() == 12);
        ZQ_REQUIRE(!answer->ipAddress.IsEmpty() && answer->localAddress.IsEmpty());
        ZQ_REQUIRE(datagram.starts_with(answer->hardwareAddress.str() + ":" + answer->ipAddress.str()));
    }
    return 0;
}
