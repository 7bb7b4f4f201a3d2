// UDP: addresses, the socket library, and what only this channel does. Everything here is
// unicast on loopback.
#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <cstring>
#include <thread>

#include "communication/ZQComUDP.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;
using testing::Pair;
using testing::StartsWith;

TEST(IPAddr, HoldsASocketAddressInNetworkOrder) {
    const CZQComIPAddr address("192.168.1.200", 0x1234);
    std::array<std::uint8_t, 16> bytes{};
    std::memcpy(bytes.data(), &address.GetSocketAddress(), sizeof bytes);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 16>{2, 0, 0x12, 0x34, 192, 168, 1, 200}));
    EXPECT_EQ(address.ToString(), "IPAddress: 192.168.1.200; Port: 4660");
    EXPECT_FALSE(address.IsBroadcast());
    EXPECT_TRUE(CZQComIPAddr("255.255.255.255", 65535).IsBroadcast());
    for (const std::string host : {"localhost", "", " ", "300.1.1.1", "1.2.3.4.5", "::1"}) {
        EXPECT_THAT(FailureOf([&] { CZQComIPAddr(host, 1); }),
                    Pair(ZQ_ERR_HOST_LOOKUP, StartsWith("strHost=" + host + "; ")));
    }
}

TEST(SocketLibrary, IsStartedWhileAnyoneUsesIt) {
    ASSERT_EQ(CZQComWs2DllInit::GetUseCount(), 0);
    const auto use = [] {
        for (int round = 0; round < 200; ++round) {
            const CZQComUDP channel;
            EXPECT_EQ(CZQComIPAddr("127.0.0.1", 1).GetHostAddress(), "127.0.0.1");
            EXPECT_GT(CZQComWs2DllInit::GetUseCount(), 0);
        }
    };
    std::jthread other(use);
    use();
    other.join();
    EXPECT_EQ(CZQComWs2DllInit::GetUseCount(), 0);
    // Started again after the last user stopped it.
    EXPECT_FALSE(UdpPeer().Receive(1ms));
}

class UdpChannel : public ::testing::Test {
protected:
    UdpChannel() {
        config.SetHostName("127.0.0.1");
        config.SetPortNumber(camera.Port());
        channel.Open(config);
        Send("hello");
        local = camera.Receive()->from;
    }
    void Send(std::string_view text) { channel.Send(text.data(), static_cast<std::uint32_t>(text.size())); }
    std::string Recv(std::uint32_t size, std::chrono::milliseconds limit = 10s,
                     bool returnOnFirstData = true) {
        std::string text(size, '\0');
        text.resize(
            channel.Recv(text.data(), size, static_cast<std::uint32_t>(limit.count()), returnOnFirstData));
        return text;
    }
    void ExpectSilence() { EXPECT_ZQ_ERROR(Recv(64, 20ms), ZQ_ERR_COM_TIMEOUT); }

    UdpPeer camera;
    UdpPeer stranger{"127.0.0.3"};
    CZQComUDPConfig config;
    CZQComUDP channel;
    platform::Ipv4SocketAddress local;  // the channel's
};

TEST_F(UdpChannel, HearsNobodyButItsCamera) {
    UdpPeer otherPort;
    stranger.Send(local, "from another host");
    otherPort.Send(local, "from another port");
    camera.Send(local, "from the camera");
    EXPECT_EQ(Recv(64), "from the camera");
    stranger.Send(local, "x");
    ExpectSilence();
    stranger.Send(local, "x");
    camera.Send(local, "ab");
    EXPECT_EQ(Recv(2, 10s, false), "ab");

    std::atomic<bool> ended{false};
    std::jthread flood([&] {
        while (!ended) {
            stranger.Send(local, "stray");
            stranger.Send(local, "");
        }
    });
    ExpectSilence();  // which stray traffic does not prolong
    ended = true;
}

TEST_F(UdpChannel, TakesDatagramsOfAnySize) {
    camera.Send(local, "12345");
    for (int i = 0; i < 2; ++i) {  // it stays where it is
        EXPECT_EQ(FailureOf([this] { Recv(4); }),
                  Failure(ZQ_ERR_BUFFER_TOO_SMALL, "Host=127.0.0.1, NeededBytes=5, BufferSize=4"));
    }
    EXPECT_EQ(Recv(5), "12345");
    // The one that fills the buffer is cut.
    camera.Send(local, "123");
    camera.Send(local, "456");
    camera.Send(local, "789");
    EXPECT_EQ(Recv(4, 10s, false), "1234");
    EXPECT_EQ(Recv(4), "789");

    for (const bool returnOnFirstData : {true, false}) {
        camera.Send(local, "");
        stranger.Send(local, "");
        camera.Send(local, "answer");
        EXPECT_EQ(Recv(6, 10s, returnOnFirstData), "answer");
    }
    const std::string most(65507, 'x');
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(const_cast<platform::UdpSocket&>(camera.Socket()).SetReceiveBuffer(1U << 20, error));
    Send(most);
    EXPECT_ZQ_ERROR(Send(most + "x"), ZQ_ERR_COM_SEND);
    camera.Send(local, most);
    EXPECT_EQ(Recv(65507), most);
}

TEST_F(UdpChannel, SendsToWhomeverItLastFlushed) {
    stranger.Send(local, "stray");
    channel.Flush();
    Send("to the stranger");
    EXPECT_EQ(stranger.Receive()->text, "to the stranger");
    stranger.Send(local, "heard now");
    EXPECT_EQ(Recv(64), "heard now");
    channel.Open(channel.GetConfig());
    Send("to the camera");
    EXPECT_EQ(camera.Receive()->text, "to the camera");
}

CZQComNetInterface CardWithAddress(const char* host) {
    platform::NetworkInterfaceRecord record;
    record.address = CZQComIPAddr(host, 0).GetSocketAddress();
    return CZQComNetInterface(record);
}

TEST_F(UdpChannel, SendsFromTheInterfaceItIsBoundTo) {
    platform::UdpSocket socket;
    platform::SystemErrorCode error = 0;
    if (!socket.Open(error) || socket.Bind(CZQComIPAddr("192.0.2.1", 0).GetSocketAddress(), error)) {
        GTEST_SKIP() << "Wine binds to the interface behind an address, and to none when it finds none";
    }
    {
        const CZQComNetInterface card = CardWithAddress("127.0.0.2");
        config.SetBoundInterface(&card);
    }
    const CZQComUDPConfig copy = config;
    config.SetBoundInterface(nullptr);
    EXPECT_EQ(config.GetBoundInterface(), nullptr);
    channel.Open(copy);
    Send("hello");
    EXPECT_EQ(CZQComIPAddr::GetAddressString(camera.Receive()->from), "127.0.0.2");

    const CZQComNetInterface notHere = CardWithAddress("192.0.2.1");
    config.SetBoundInterface(&notHere);
    EXPECT_ZQ_ERROR(channel.Open(config), ZQ_ERR_SOCKET_CREATE);
    EXPECT_FALSE(channel.IsOpen());
}

TEST(UdpConfig, LoadsAllOrNothing) {
    const TempFolder folder;
    const std::string file = folder.File("channel.ini");
    for (const std::string keys : {"HostName=10.0.0.1\r\nPortNumber=65536\r\n", "PortNumber=1\r\n",
                                   "HostName=10.0.0.1\r\nPortNumber=-1\r\n", "HostName=10.0.0.1\r\n",
                                   "HostName=10.0.0.1\r\nPortNumber=65535\r\n"}) {
        WriteBytes(file, "[Camera]\r\n" + keys);
        CZQComUDPConfig config;
        const CZQString before = config.ToString();
        const bool isGood = keys.find("65535") != std::string::npos;
        EXPECT_ZQ_ERROR(config.LoadFromFile(file, "Camera"), isGood ? 0 : ZQ_ERR_COM_CONFIG_LOAD) << keys;
        EXPECT_EQ(config.ToString(), isGood ? "(UDP) IP 10.0.0.1; Port 65535" : before) << keys;
    }
}

}  // namespace
}  // namespace ZQAPI::test
