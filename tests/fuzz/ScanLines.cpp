// Lines of debug output that tools read. Input: a line. One that is read is written again, and read as the same; where a
// camera's text stands in it, nothing of it passes for what stands before.
#include <utility>

#include "Fuzz.h"
#include "communication/ZQIpv4.h"
#include "communication/ZQUdpCameraAddress.h"
#include "devices/ZQScannerOutcome.h"
#include "foundation/ZQPrintableText.h"
#include "scanners/serial/ZQSerialScanLines.h"
#include "scanners/udp/ZQUdpScanLines.h"

namespace ZQAPI::fuzz {

namespace {

template <class Parse, class Format>
void CheckLine(std::string_view line, Parse&& parse, Format&& format) {
    if (const auto read = parse(line)) {
        const CZQString written = format(*read);
        ZQ_REQUIRE(parse(written.view()) == read);
    }
}

void CheckHeard(std::string_view line) {
    const auto heard = ParseHeard(line);
    if (heard) {
        ZQ_REQUIRE(IsHardwareAddress(heard->hardwareAddress.view()) && ParseIpv4(heard->ipAddress.view()));
        ZQ_REQUIRE(heard->deviceId.IsEmpty() || heard->detail.IsEmpty());
    }
    // A camera that was heard, with the input for its texts.
    SHeardCamera camera{"00A0B1000001", "192.168.1.20", "192.168.1.1/24"};
    camera.detail = CZQString(line).TrimRight("\r\n");
    ZQ_REQUIRE(ParseHeard(FormatHeard(camera).view()) == camera);
    camera.deviceId = std::exchange(camera.detail, {});
    ZQ_REQUIRE(camera.deviceId.IsEmpty() || ParseHeard(FormatHeard(camera).view()) == camera);
}

void CheckPrintable(std::string_view text) {
    const std::string printable = Printable(text);
    ZQ_REQUIRE(IsUtf8(printable) && Printable(printable) == printable);
    ZQ_REQUIRE(!CZQString(printable).HasControlCharacter());
    const std::string lines = PrintableLines(text);
    ZQ_REQUIRE(std::count(lines.begin(), lines.end(), '\n') == std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

void CheckInput(std::string_view input) {
    CheckLine(input, ParseConflict, FormatConflict);
    CheckLine(input, ParseHeard, FormatHeard);
    CheckLine(input, ParseAsked, FormatAsked);
    CheckLine(input, ParseSilentLine, FormatSilentLine);
    ResultOf([&] { return ParseScannerOutcome(input); });
    CheckHeard(input);
    CheckPrintable(input);
}

}  // namespace ZQAPI::fuzz
