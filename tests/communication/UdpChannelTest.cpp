// What only the UDP channel does, and its configuration. Everything here is unicast on loopback.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <thread>

#include "communication/ZQComUDP.h"
#include "support/ExpectError.h"
#include "support/TempFolder.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;

CZQComNetInterface CardWithAddress(const char* host) {
    platform::NetworkInterfaceRecord record;
    record.address = CZQComIPAddr(host, 0).GetSocketAddress();
    return CZQComNetInterface(record);
}

class UdpChannel : public ::testing::Test {
protected:
    UdpChannel() {
        channel.Open(ConfigFor(camera));
        Send("hello");
        local = camera.Receive()->from;
    }
    static CZQComUDPConfig ConfigFor(const UdpPeer& peer) {
        CZQComUDPConfig config;
        config.SetHostName(CZQComIPAddr::GetAddressString(peer.Address()));
        config.SetPortNumber(peer.Port());
        return config;
    }
    void Send(std::string_view text) { channel.Send(text.data(), static_cast<std::uint32_t>(text.size())); }
    std::string Recv(std::uint32_t size, std::chrono::milliseconds limit = 10s,
                     bool returnOnFirstData = true) {
        std::string text(size, '\0');
        text.resize(
            channel.Recv(text.data(), size, static_cast<std::uint32_t>(limit.count()), returnOnFirstData));
        return text;
    }

    UdpPeer camera{"127.0.0.1"};
    UdpPeer stranger{"127.0.0.3"};
    CZQComUDP channel;
    platform::Ipv4SocketAddress local;  // the channel's
};

TEST_F(UdpChannel, HearsNobodyButItsCamera) {
    UdpPeer otherPort("127.0.0.1");
    stranger.Send(local, "from another host");
    otherPort.Send(local, "from another port");
    camera.Send(local, "from the camera");
    EXPECT_EQ(Recv(64), "from the camera");
    stranger.Send(local, "x");
    EXPECT_ZQ_ERROR(Recv(64, 20ms), ZQ_ERR_COM_TIMEOUT);
    stranger.Send(local, "x");
    camera.Send(local, "ab");
    EXPECT_EQ(Recv(2, 10s, false), "ab");
}

TEST_F(UdpChannel, LeavesADatagramThatIsTooLargeWhereItIs) {
    camera.Send(local, "12345");
    for (int i = 0; i < 2; ++i) {
        const auto thrown = ThrownBy([this] { Recv(4); });
        ASSERT_TRUE(thrown);
        EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_BUFFER_TOO_SMALL);
        EXPECT_EQ(thrown->GetExtraText(), "Host=127.0.0.1, NeededBytes=5, BufferSize=4");
    }
    EXPECT_EQ(Recv(5), "12345");
}

TEST_F(UdpChannel, CutsTheDatagramThatFillsTheBuffer) {
    camera.Send(local, "123");
    camera.Send(local, "456");
    camera.Send(local, "789");
    EXPECT_EQ(Recv(4, 10s, false), "1234");
    EXPECT_EQ(Recv(4), "789");
}

TEST_F(UdpChannel, TakesTheLargestDatagram) {
    const std::string most(65507, 'x');
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(const_cast<platform::UdpSocket&>(camera.Socket()).SetReceiveBuffer(1U << 20, error));
    Send(most);
    EXPECT_ZQ_ERROR(Send(most + "x"), ZQ_ERR_COM_SEND);
    camera.Send(local, most);
    EXPECT_EQ(Recv(65507), most);
}

TEST_F(UdpChannel, IsNotStoppedByEmptyDatagrams) {
    for (const bool returnOnFirstData : {true, false}) {
        camera.Send(local, "");
        stranger.Send(local, "");
        camera.Send(local, "answer");
        EXPECT_EQ(Recv(6, 10s, returnOnFirstData), "answer");
    }
    camera.Send(local, "old");
    camera.Send(local, "");
    camera.Send(local, "old");
    channel.Flush();
    EXPECT_ZQ_ERROR(Recv(6, 20ms), ZQ_ERR_COM_TIMEOUT);
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

// A time limit of 0 asks whether something is there.
TEST_F(UdpChannel, ReadsWhatHasArrivedWithoutWaiting) {
    // The limit is 1 ms of work, which a busy machine may miss now and then.
    std::string text;
    for (int i = 0; i < 50 && text.empty(); ++i) {
        camera.Send(local, "there");
        ErrorOf([&] { text = Recv(64, 0ms); });
    }
    EXPECT_EQ(text, "there");
}

TEST_F(UdpChannel, StrayTrafficDoesNotProlongAWait) {
    std::atomic<bool> ended{false};
    std::thread flood([&] {
        while (!ended) {
            stranger.Send(local, "stray");
            stranger.Send(local, "");
        }
    });
    EXPECT_ZQ_ERROR(Recv(64, 50ms), ZQ_ERR_COM_TIMEOUT);
    ended = true;
    flood.join();
}

TEST_F(UdpChannel, GivesItsPortBackWhenClosed) {
    CZQComUDPConfig config = channel.GetConfig();
    channel.Open(config);
    channel.Close();
    platform::UdpSocket reuser;
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(reuser.Open(error));
    EXPECT_TRUE(reuser.Bind(local, error)) << error;
}

// Wine binds a datagram socket to the interface behind an address, and to none when it finds none.
bool BindsToAddresses() {
    platform::UdpSocket socket;
    platform::SystemErrorCode error = 0;
    return socket.Open(error) && !socket.Bind(CZQComIPAddr("192.0.2.1", 0).GetSocketAddress(), error);
}

TEST_F(UdpChannel, SendsFromTheInterfaceItIsBoundTo) {
    if (!BindsToAddresses()) {
        GTEST_SKIP() << "this system does not bind datagram sockets to addresses";
    }
    CZQComUDPConfig config = ConfigFor(camera);
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
    channel.Open(copy);
    EXPECT_TRUE(channel.IsOpen());
}

TEST_F(UdpChannel, NeedsANumericHost) {
    for (const char* host : {"localhost", "LocalHost", "", " ", "camera", "300.1.1.1", "1.2.3.4.5", "::1"}) {
        CZQComUDPConfig config;
        config.SetHostName(host);
        const auto thrown = ThrownBy([&] { channel.Open(config); });
        ASSERT_TRUE(thrown) << host;
        EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_HOST_LOOKUP);
        EXPECT_TRUE(
            thrown->GetExtraText().view().starts_with(CZQString::Formatted("strHost=%s; ", host).view()));
        EXPECT_FALSE(channel.IsOpen());
    }
}

TEST(UdpConfig, LoadsAllOrNothing) {
    const TempFolder folder;
    const std::string file = folder.File("channel.ini");
    const struct {
        const char* keys;
        std::int32_t error;
        const char* loaded;
    } cases[] = {
        {"HostName=10.0.0.1\r\nPortNumber=65535\r\n", 0, "(UDP) IP 10.0.0.1; Port 65535"},
        {"HostName=10.0.0.1\r\nPortNumber=65536\r\n", ZQ_ERR_COM_CONFIG_LOAD, nullptr},
        {"HostName=10.0.0.1\r\nPortNumber=-1\r\n", ZQ_ERR_COM_CONFIG_LOAD, nullptr},
        {"HostName=10.0.0.1\r\n", ZQ_ERR_COM_CONFIG_LOAD, nullptr},
        {"PortNumber=1\r\n", ZQ_ERR_COM_CONFIG_LOAD, nullptr},
    };
    for (const auto& test : cases) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << "[Camera]\r\n" << test.keys;
        CZQComUDPConfig config;
        const CZQString before = config.ToString();
        EXPECT_ZQ_ERROR(config.LoadFromFile(file, "Camera"), test.error) << test.keys;
        EXPECT_EQ(config.ToString(), test.loaded != nullptr ? CZQString(test.loaded) : before) << test.keys;
    }
}

TEST(UdpSocket, WaitsForAnyOfMany) {
    std::vector<UdpPeer> peers(100);
    std::vector<const platform::UdpSocket*> sockets(peers.size());
    std::transform(peers.begin(), peers.end(), sockets.begin(),
                   [](const UdpPeer& peer) { return &peer.Socket(); });
    EXPECT_TRUE(platform::UdpSocket::WaitAny(sockets, 1ms).empty());
    UdpPeer sender;
    sender.Send(peers[7].Address(), "a");
    sender.Send(peers[99].Address(), "");
    EXPECT_EQ(platform::UdpSocket::WaitAny(sockets, 10s), (std::vector<std::size_t>{7, 99}));
    EXPECT_EQ(peers[99].Receive()->text, "");
    EXPECT_EQ(platform::UdpSocket::WaitAny(sockets, 10s), (std::vector<std::size_t>{7}));
}

}  // namespace
}  // namespace ZQAPI::test
