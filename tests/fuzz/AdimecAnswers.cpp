// Answers of an Adimec camera. Input: what arrives behind each telegram, one part each; the last part's length is that
// of the buffer for the answer.
#include "Fuzz.h"
#include "camera_link/ZQAdimecCameraControl.h"
#include "scanners/serial/ZQScanAdimecCL.h"
#include "support/ScriptedPort.h"

namespace ZQAPI::fuzz {

namespace {

void AskWithBuffer(std::string_view script, std::size_t bufferSize) {
    test::ScriptedPort port([&](const auto&) { return TakePart(script); });
    CZQAdimecSerialProtocol protocol(port);
    std::vector<char> buffer(bufferSize, 'x');  // exact: the sanitizer guards its end
    const auto size = static_cast<std::uint32_t>(buffer.size());
    if (Succeeds([&] { protocol.GetData("ID?", buffer.data(), size); })) {
        const std::string_view text(buffer.data());
        ZQ_REQUIRE(text.size() < size && text.find('\r') == std::string_view::npos);
    }
    ZQ_REQUIRE(port.written.size() <= 3 * 2);  // three tries, each with its question for the error status
}

}  // namespace

void CheckInput(std::string_view input) {
    AskWithBuffer(input, input.size() - std::min(input.rfind(kBetweenParts), input.size()) + 1);

    test::ScriptedPort port([&](const auto&) { return TakePart(input); });
    CZQAdimecCameraControl camera(port);
    if (!Succeeds([&] { camera.Open(0); })) {
        return;
    }
    for (const char* const query : {"ID?", "SN?", "BS?"}) {
        const auto text = ResultOf([&] { return camera.GetString(query); });
        const auto type = ResultOf([&] { return SAdimecScanner::GetZQDeviceType(text.value_or("")); });
        ZQ_REQUIRE(!type || *type == "Q-12A65" || *type == "Q-12A65-V30");
    }
}

}  // namespace ZQAPI::fuzz
