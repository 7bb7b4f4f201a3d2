// What the UDP command module takes for an answer, and its command addresses. Input: a command address; a datagram.
#include "Fuzz.h"
#include "ZQUdpConnection.h"

namespace ZQAPI::fuzz {

namespace {

constexpr const char* kHardwareAddress = "00A1B2C3D4E5";

void CheckAnswer(const CZQUdpConnection& connection, std::string_view datagram, std::uint32_t fromBe) {
    platform::Ipv4SocketAddress from;
    from.addressBe = fromBe;
    if (const auto answer = connection.AnswerIn(datagram, from)) {
        ZQ_REQUIRE(datagram.size() == answer->size() + 13 && datagram.ends_with(*answer));
        ZQ_REQUIRE(answer->ends_with('\n') && answer->find('\0') == std::string::npos);
    }
}

}  // namespace

void CheckInput(std::string_view input) {
    const std::string address = TakePart(input);
    Succeeds([&] {
        const CZQUdpCameraAddress camera{CZQString(address)};
        ZQ_REQUIRE(camera.addressBe != 0xFFFFFFFF && (camera.addressBe != 0 || camera.IsBroadcast()));
        ZQ_REQUIRE(!camera.IsBroadcast() || (camera.localBe != 0 && camera.hardwareAddress.size() == 12));
    });

    const std::string host = "127.0.0.1";
    static const CZQUdpCameraAddress loopback{CZQString(host)};
    static const CZQUdpConnection unicast{CZQString(host)};
    static const CZQUdpConnection broadcast(host + ":" + kHardwareAddress + "@" + host);
    CheckAnswer(unicast, input, loopback.addressBe);
    static const CZQUdpConnection inSubnet(host + ":" + kHardwareAddress + "@" + host + "/8");
    CheckAnswer(broadcast, input, loopback.addressBe);
    CheckAnswer(inSubnet, input, loopback.addressBe);
    platform::Ipv4SocketAddress stranger;
    stranger.addressBe = loopback.addressBe + 1;
    ZQ_REQUIRE(!unicast.AnswerIn(input, stranger) && !inSubnet.AnswerIn(input, stranger));
}

}  // namespace ZQAPI::fuzz
