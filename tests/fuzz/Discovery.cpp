// Answers to discovery. Input: one byte, the last of the sender's address; then the datagrams, a part each.
#include "Fuzz.h"
#include "platform/UdpSocket.h"
#include "scanners/udp/ZQUdpAnswers.h"

namespace ZQAPI::fuzz {

namespace {

constexpr std::uint32_t kNetwork = 0x0A000000;  // 10.0.0.0

void CheckCamera(const SUdpDeviceConnInfo& camera, std::string_view datagram) {
    ZQ_REQUIRE(camera.hardwareAddress.GetLength() == 12 && camera.hardwareAddress != "FFFFFFFFFFFF");
    ZQ_REQUIRE(datagram.starts_with(camera.hardwareAddress.str() + ":"));
    std::uint32_t address = 0;
    platform::SystemErrorCode error = 0;
    ZQ_REQUIRE(platform::TextToAddress(camera.ipAddress.str(), address, error) && address != 0xFFFFFFFF);
    ZQ_REQUIRE(CZQString(camera.ipAddress).HasControlCharacter() == false && camera.localAddress.IsEmpty());
}

}  // namespace

void CheckInput(std::string_view input) {
    const std::uint32_t sender = kNetwork + TakeByte(input);
    CZQUdpCameras cameras;
    std::size_t nofFirst = 0;
    for (const std::string& datagram : AllParts(input)) {
        const SUdpAnswer answer = ReadUdpAnswer({datagram, sender, {}});
        ZQ_REQUIRE(answer.camera.has_value() == std::string_view(answer.whyNot).empty());
        if (answer.camera) {
            CheckCamera(*answer.camera, datagram);
            nofFirst += cameras.Add(0, *answer.camera) == CZQUdpCameras::EHeard::kFirst ? 1 : 0;
        }
    }
    ZQ_REQUIRE(cameras.Take().size() == nofFirst);
}

}  // namespace ZQAPI::fuzz
