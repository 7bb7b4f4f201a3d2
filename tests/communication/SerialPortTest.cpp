// What is particular to COM ports: mode texts, settings in files, and what goes wrong with a port.
#include <gmock/gmock.h>

#include <chrono>
#include <optional>
#include <span>

#include "communication/ZQComRS232.h"
#include "foundation/Io/ZQIniFile.h"
#include "platform/SerialPort.h"
#include "platform/posix/SerialModeText.h"
#include "support/ComPorts.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;
using platform::SerialControl;
using testing::Pair;
using testing::StartsWith;
using Line = SerialControl::Line;

SerialControl Control(std::uint32_t baud, std::uint8_t data, std::uint8_t stop, std::uint8_t parity,
                      Line lines = Line::kDisabled, bool xon = false) {
    SerialControl control;
    control.baudRate = baud;
    control.dataBits = data;
    control.stopBits = stop;
    control.parity = parity;
    control.dtr = control.rts = lines;
    control.xonXoffInput = control.xonXoffOutput = xon;
    return control;
}

SerialControl WithFlow(SerialControl control) {
    control.outputWaitsForCts = control.outputWaitsForDsr = true;
    return control;
}

const std::pair<const char*, SerialControl> kModeTexts[] = {
    {"baud=9600 parity=N data=8 stop=1 xon=off", Control(9600, 8, 0, 0)},
    {"STOP=1.5  Data=5 parity=m BAUD=115200", Control(115200, 5, 1, 3)},
    {"baud=96", Control(96, 0, 0, 0)},
    {"baud=110", Control(110, 0, 2, 0)},
    {"baud=110 stop=1", Control(110, 0, 0, 0)},
    {"data=8 data=7", Control(0, 7, 0, 0)},
    {"xon=on to=on idsr=off", Control(0, 0, 0, 0, Line::kDisabled, true)},
    {"dtr=on rts=on", Control(0, 0, 0, 0, Line::kEnabled)},
    {"octs=on odsr=on dtr=off rts=off", WithFlow(Control(0, 0, 0, 0))},
    {"", Control(0, 0, 0, 0)},
    {"COM1: baud=300 parity=s stop=2", Control(300, 0, 2, 4)},
    {"9600,n,8,1", Control(9600, 8, 0, 0, Line::kEnabled)},
    {"com12:96, E, 7, 2, X", Control(9600, 7, 2, 2, Line::kEnabled, true)},
    {"COM1 19,o,8,1.5,p", WithFlow(Control(19200, 8, 1, 1, Line::kHandshake))},
    {"115,n,8,1", Control(115, 8, 0, 0, Line::kEnabled)},
};

constexpr const char* kNoModeTexts[] = {
    "baud",        "baud=",    "baud=9600x",       "baud=-1",
    "baud = 9600", "data=4",   "baud=9600;data=8", "baud=9600,parity=n",
    "speed=1",     "data=9",   "stop=3",           "parity=odd",
    "xon=maybe",   "COM1",     "COM:9600,n,8,1",   "9600,n,8,1,q",
    "9600",        "9600,n,8", "9600,n,8,1,x,",    "LPT1:9600,n,8,1",
    "9600,,8,1",
};

// On Windows the system's parser has the last word; this one gives the same where there is none.
TEST(SerialModeText, MeansWhatTheSystemTakesItFor) {
    const auto parse = [](const char* text) {
        SerialControl own;
        SerialControl systems;
        platform::SystemErrorCode error = 0;
        const bool isGood = platform::ParseSerialModeText(text, own);
        EXPECT_EQ(platform::ParseModeText(text, systems, error), isGood) << text;
        EXPECT_EQ(systems, own) << text;
        return isGood ? std::optional(own) : std::nullopt;
    };
    for (const auto& [text, control] : kModeTexts) {
        EXPECT_EQ(parse(text), control) << text;
    }
    for (const char* text : kNoModeTexts) {
        EXPECT_EQ(parse(text), std::nullopt) << text;
    }
}

TEST(RS232Config, ComesFromAModeText) {
    using Handshake = CZQComRS232Config::Handshake;
    for (const auto& [text, handshake] :
         {std::pair("9600,n,8,1", Handshake::kHardware), std::pair("9600,n,8,1,x", Handshake::kXonXoff),
          std::pair("9600,n,8,1,p", Handshake::kNo), std::pair("baud=9600 dtr=on", Handshake::kNo)}) {
        EXPECT_EQ(CZQComRS232Config(3, text).GetHandshake(), handshake) << text;
    }
    EXPECT_EQ(CZQComRS232Config().ToString(), "(RS232) COM1, Baud=9600, Databits=8, Stopbits=0");
    EXPECT_THAT(FailureOf([] { CZQComRS232Config(1, "baud=fast"); }),
                Pair(ZQ_ERR_RS232_MODE_TEXT, StartsWith("strConfig=baud=fast; SysError (")));
}

TEST(RS232Config, ReadsWhatItWrites) {
    const TempFolder folder;
    const CZQString file = folder.File("port.ini");
    CZQComRS232Config(12, "19200,e,7,2,x").SaveToFile(file, "Port");
    EXPECT_EQ(ContentOf(file),
              "[Port]\r\nCOMPort=12\r\nBaudrate=19200\r\nDatabits=7\r\nStopBits=2\r\nParity=EVEN\r\n"
              "Handshake=XON/XOFF\r\n");
    const auto with = [&](const char* key, const char* value) {
        CZQIniFile ini(file);
        ini.SetSection("Port");
        ini.WriteString(key, value);
        return CZQComRS232Config(file, "Port");
    };
    EXPECT_EQ(with("Parity", "odd").GetParity(), CZQComRS232Config::Parity::kOdd);
    EXPECT_EQ(with("Handshake", "HW").GetHandshake(), CZQComRS232Config::Handshake::kHardware);
    for (const auto& [key, value, text] :
         {std::tuple("Parity", "MARK", "RS232.Parity=MARK; Validvalues: 'NO', 'ODD' 'EVEN'"),
          std::tuple("Handshake", "hw", "RS232.Handshake=hw; Validvalues: 'NO', 'HW' 'XON/XOFF'")}) {
        const auto thrown = ThrownBy([&, k = key, v = value] { with(k, v); });
        ASSERT_TRUE(thrown && thrown->GetInnerException() != nullptr) << key;
        EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_COM_CONFIG_LOAD);
        EXPECT_EQ(thrown->GetInnerException()->GetExtraText(), text);
        with(key, "NO");
    }
}

TEST(RS232, AllowsEachByteItsTimeOnTheLine) {
    EXPECT_EQ(CZQComRS232::TimePerByte(9600), 2ms);
    EXPECT_EQ(CZQComRS232::TimePerByte(115200), 1ms);
    EXPECT_EQ(CZQComRS232::TimePerByte(300), 56ms);
    EXPECT_GT(CZQComRS232::TimePerByte(0), 1s);
}

TEST(RS232, NamesThePortThatCanNotBeOpened) {
    CZQComRS232Config config;
    config.SetPortNumber(213);  // two digits and more: the plain name
    EXPECT_THAT(FailureOf([&] { CZQComRS232().Open(config); }),
                Pair(ZQ_ERR_RS232_OPEN, StartsWith("COM213: SysError (")));
}

class RS232OnPort : public ::testing::Test {
protected:
    void SetUp() override {
        if (!ComPort::AreThere()) {
            GTEST_SKIP() << "no pseudo-terminals";
        }
        device.emplace();
        config.SetPortNumber(device->Number());
    }

    std::optional<ComPort> device;
    CZQComRS232Config config;
    CZQComRS232 channel;
};

// The system would wait for it.
TEST_F(RS232OnPort, ClosingDiscardsWhatIsStillToBeSent) {
    constexpr std::size_t kMoreThanTheDeviceTakesUnread = 8000;
    const std::string unsent(kMoreThanTheDeviceTakesUnread, 'u');
    channel.Open(config);
    channel.Send(unsent.data(), static_cast<std::uint32_t>(unsent.size()));
    channel.Close();
    platform::SerialPort port;  // which discards nothing when it is opened
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(port.Open(config.GetPortName().str(), error)) << error;
    EXPECT_EQ(port.Write(std::as_bytes(std::span("x", 1)), error), 1U);
    std::size_t arrived = 0;
    for (std::string byte; byte != "x"; ++arrived) {
        byte = device->Read(1);
        ASSERT_EQ(byte.size(), 1U);
    }
    EXPECT_LT(arrived, unsent.size());
}

TEST_F(RS232OnPort, RefusedLineSettingsCloseThePort) {
    const TempFolder folder;
    WriteBytes(folder.Path() / "port.ini",
               "[Port]\r\nCOMPort=" + std::to_string(device->Number()) +
                   "\r\nBaudrate=9600\r\nDatabits=11\r\nStopBits=1\r\nParity=NO\r\nHandshake=NO\r\n");
    EXPECT_THAT(FailureOf([&] { channel.Open(folder.File("port.ini"), "Port"); }),
                Pair(ZQ_ERR_RS232_SETTINGS, testing::HasSubstr("Config=(RS232) COM")));
    EXPECT_FALSE(channel.IsOpen());
    channel.Open(config);
}

TEST_F(RS232OnPort, TellsThatTheLineIsGone) {
    channel.Open(config);
    device->Unplug();
    char byte = 0;
    EXPECT_ZQ_ERROR(channel.Recv(&byte, 1, 60000, false), ZQ_ERR_COM_RECV);
    EXPECT_ZQ_ERROR(channel.Send("x", 1), ZQ_ERR_COM_SEND);
}

}  // namespace
}  // namespace ZQAPI::test
