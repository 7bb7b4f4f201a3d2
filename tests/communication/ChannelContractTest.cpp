// What every kind of channel promises, run against each of them. A new kind is one more row of Kinds().
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <thread>
#include <vector>

#include "communication/ZQComImaqRS232.h"
#include "communication/ZQComRS232.h"
#include "communication/ZQComUDP.h"
#include "support/ComPorts.h"
#include "support/ExpectError.h"
#include "support/StandIns.h"
#include "support/TempFolder.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// A device at the other end of the line.
class Device {
public:
    Device() = default;
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    virtual ~Device() = default;

    // What a channel is opened with to reach the device.
    virtual const CZQComConfigBase& Config() const = 0;
    // The next bytes that arrive, as many as `size`.
    virtual std::string Read(std::size_t size) = 0;
    // To whoever was read from last.
    virtual void Write(std::string_view text) = 0;
};

struct ChannelKind {
    const char* name;
    std::unique_ptr<CZQComBase> (*makeChannel)();
    std::unique_ptr<Device> (*makeDevice)();
    bool isDatagram;  // and returns the first data
    std::int32_t sendClosed;
    std::int32_t recvClosed;
};

class UdpDevice : public Device {
public:
    UdpDevice() {
        m_config.SetHostName("127.0.0.1");
        m_config.SetPortNumber(m_peer.Port());
    }
    const CZQComConfigBase& Config() const override { return m_config; }
    std::string Read(std::size_t /*size*/) override {
        const auto datagram = m_peer.Receive();
        m_channel = datagram ? datagram->from : platform::Ipv4SocketAddress{};
        return datagram ? datagram->text : "nothing";
    }
    void Write(std::string_view text) override { m_peer.Send(m_channel, text); }

private:
    UdpPeer m_peer;
    CZQComUDPConfig m_config;
    platform::Ipv4SocketAddress m_channel;
};

class ComPortDevice : public Device {
public:
    ComPortDevice() { m_config.SetPortNumber(m_port.Number()); }
    const CZQComConfigBase& Config() const override { return m_config; }
    std::string Read(std::size_t size) override { return m_port.Read(size); }
    void Write(std::string_view text) override { m_port.Write(text); }

private:
    ComPort m_port;
    CZQComRS232Config m_config;
};

// An interface of the stand-in library whose line leads to this test.
class ImaqDevice : public Device {
public:
    ImaqDevice() : m_config("img" + std::to_string(s_count++ % kNofInterfaces), "") {
        std::string play;
        for (int i = 0; i < kNofInterfaces; ++i) {
            play += "[imaq." + std::to_string(i) + "]\nModel=wire\n";
        }
        m_standIns.Play(play);
        m_library.OpenLibrary(StandIns::Folder() + "imaq.dll");
    }
    const CZQComConfigBase& Config() const override { return m_config; }
    std::string Read(std::size_t size) override {
        std::string text(size, '\0');
        text.resize(
            m_read(m_config.GetInterfaceName().c_str(), text.data(), static_cast<std::uint32_t>(size)));
        return text;
    }
    void Write(std::string_view text) override {
        m_write(m_config.GetInterfaceName().c_str(), text.data(), static_cast<std::uint32_t>(text.size()));
    }

private:
    static constexpr int kNofInterfaces = 2;
    static inline int s_count = 0;
    StandIns m_standIns;
    StandInPath m_path;
    CZQComImaqRS232Config m_config;
    CZQDynamicDLL m_library;
    CZQEntryPoint<std::uint32_t(const char*, char*, std::uint32_t)> m_read{m_library, "imgPlayRead"};
    CZQEntryPoint<void(const char*, const char*, std::uint32_t)> m_write{m_library, "imgPlayWrite"};
};

template <class Made, class Base>
std::unique_ptr<Base> Make() {
    return std::make_unique<Made>();
}

std::vector<ChannelKind> Kinds() {
    std::vector<ChannelKind> kinds = {
        {"UDP", &Make<CZQComUDP, CZQComBase>, &Make<UdpDevice, Device>, true, ZQ_ERR_UDP_SEND_CLOSED,
         ZQ_ERR_UDP_RECV_CLOSED},
        {"ImaqRS232", &Make<CZQComImaqRS232, CZQComBase>, &Make<ImaqDevice, Device>, false,
         ZQ_ERR_SERIAL_CLOSED, ZQ_ERR_SERIAL_CLOSED}};
    // Wine's ports are held against the same devices by a script, which has them made outside.
    if (ComPort::AreThere()) {
        kinds.push_back({"RS232", &Make<CZQComRS232, CZQComBase>, &Make<ComPortDevice, Device>, false,
                         ZQ_ERR_SERIAL_CLOSED, ZQ_ERR_SERIAL_CLOSED});
    }
    return kinds;
}

class ChannelContract : public ::testing::TestWithParam<ChannelKind> {
protected:
    // Opens the channel to the device and lets the device know it.
    void Connect(Device& to) {
        channel->Open(to.Config());
        Send("hello");
        ASSERT_EQ(to.Read(5), "hello");
    }
    void Send(std::string_view text) const {
        EXPECT_EQ(channel->Send(text.data(), static_cast<std::uint32_t>(text.size())), text.size());
    }
    // At most `size` bytes, what is received first or the whole size.
    std::string Recv(std::uint32_t size, std::chrono::milliseconds limit, bool returnOnFirstData) const {
        std::string text(size, '\0');
        text.resize(
            channel->Recv(text.data(), size, static_cast<std::uint32_t>(limit.count()), returnOnFirstData));
        return text;
    }

    const ChannelKind kind = GetParam();
    const bool firstData = kind.isDatagram;
    std::unique_ptr<CZQComBase> channel = kind.makeChannel();
    std::unique_ptr<Device> device = kind.makeDevice();
    std::array<char, 4> buffer{};
};

TEST_P(ChannelContract, AClosedChannelRefusesWork) {
    const auto refuses = [this] {
        EXPECT_FALSE(channel->IsOpen());
        EXPECT_ZQ_ERROR(channel->Send("x", 1), kind.sendClosed);
        EXPECT_ZQ_ERROR(channel->Send(nullptr, 1), kind.sendClosed);
        EXPECT_ZQ_ERROR(channel->Recv(buffer.data(), 1, 0, firstData), kind.recvClosed);
        EXPECT_ZQ_ERROR(channel->Recv(nullptr, 0, 0, firstData), kind.recvClosed);
        EXPECT_ZQ_ERROR(channel->Flush(), kind.recvClosed);
        EXPECT_EQ(channel->IsDatagram(), kind.isDatagram);
        channel->Abort();
    };
    refuses();
    Connect(*device);
    EXPECT_TRUE(channel->IsOpen());
    channel->Close();
    refuses();
    channel->Close();
    Connect(*device);
}

TEST_P(ChannelContract, ChecksItsArguments) {
    Connect(*device);
    device->Write("abc");
    EXPECT_ZQ_ERROR(channel->Send(nullptr, 0), ZQ_ERR_NULL_INPUT);
    EXPECT_ZQ_ERROR(channel->Recv(nullptr, 0, 0, firstData), ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(channel->Recv(buffer.data(), 0, 60000, firstData), 0U);
    EXPECT_EQ(channel->Recv(buffer.data(), 0, 60000, false), 0U);
    EXPECT_EQ(Recv(3, 10s, false), "abc");
}

TEST_P(ChannelContract, CarriesBytesOfAnyValueBothWays) {
    Connect(*device);
    const std::string bytes("\0\n\r\xFF\x1A", 5);
    Send(bytes);
    EXPECT_EQ(device->Read(5), bytes);
    device->Write(bytes);
    EXPECT_EQ(Recv(5, 10s, false), bytes);
}

TEST_P(ChannelContract, FillsTheBufferOrReturnsTheFirstData) {
    Connect(*device);
    if (firstData) {
        device->Write("abc");
        EXPECT_EQ(Recv(64, 10s, true), "abc");
    } else {
        EXPECT_ZQ_ERROR(Recv(64, 10s, true), ZQ_ERR_NOT_SUPPORTED);
    }
    device->Write("abc");
    device->Write("de");
    EXPECT_EQ(Recv(5, 10s, false), "abcde");
}

TEST_P(ChannelContract, GivesUpAtTheTimeLimit) {
    Connect(*device);
    const struct {
        const char* arrives;
        bool returnOnFirstData;
        std::chrono::milliseconds limit;
    } cases[] = {{"", firstData, 0ms}, {"", firstData, 130ms}, {"", false, 20ms}, {"a", false, 20ms}};
    for (const auto& test : cases) {
        if (*test.arrives != '\0') {
            device->Write(test.arrives);
        }
        const auto start = Clock::now();
        EXPECT_ZQ_ERROR(Recv(2, test.limit, test.returnOnFirstData), ZQ_ERR_COM_TIMEOUT);
        EXPECT_GE(Clock::now() - start, test.limit);
    }
}

TEST_P(ChannelContract, AbortEndsAWaitFromAnotherThread) {
    Connect(*device);
    channel->Abort();  // before the wait: means nothing
    device->Write("abc");
    EXPECT_EQ(Recv(3, 10s, false), "abc");

    std::jthread aborter([this](const std::stop_token& ended) {
        // Each Recv begins with the flag cleared, so that one Abort could come too early.
        while (!ended.stop_requested()) {
            channel->Abort();
            std::this_thread::yield();
        }
    });
    EXPECT_ZQ_ERROR(Recv(2, 60s, firstData), ZQ_ERR_COM_ABORTED);
    aborter = {};

    device->Write("still open");
    EXPECT_EQ(Recv(10, 10s, false), "still open");
}

TEST_P(ChannelContract, FlushDiscardsWhatHasArrived) {
    Connect(*device);
    channel->Flush();
    device->Write("1old");
    EXPECT_EQ(Recv(1, 10s, false), "1");  // on a line the rest has arrived with it
    if (kind.isDatagram) {
        device->Write("");
        device->Write("2older");
    }
    channel->Flush();
    device->Write("new");
    EXPECT_EQ(Recv(3, 10s, false), "new");
}

TEST_P(ChannelContract, ASecondOpenReplacesTheFirst) {
    Connect(*device);
    device->Write("from the first device");
    const std::unique_ptr<Device> second = kind.makeDevice();
    Connect(*second);
    EXPECT_ZQ_ERROR(Recv(64, 20ms, firstData), ZQ_ERR_COM_TIMEOUT);
    second->Write("from the second");
    EXPECT_EQ(Recv(15, 10s, false), "from the second");
    // With its own configuration, which is also the one that it replaces.
    channel->Open(channel->GetConfig());
    Send("again");
    EXPECT_EQ(second->Read(5), "again");
}

TEST_P(ChannelContract, RefusesTheConfigurationOfAnotherKind) {
    Connect(*device);
    const CZQComUDPConfig udp;
    const CZQComRS232Config line;
    const CZQComConfigBase& other = kind.isDatagram ? static_cast<const CZQComConfigBase&>(line) : udp;
    EXPECT_EQ(FailureOf([&] { channel->Open(other); }),
              Failure(ZQ_ERR_BAD_CAST, std::string("Can't cast '") + other.GetTypeName() + "' into '" +
                                           channel->GetConfig().GetTypeName() + "'"));
    // The connection is as it was.
    device->Write("abc");
    EXPECT_EQ(Recv(3, 10s, false), "abc");
}

TEST_P(ChannelContract, OpensWithTheSettingsOfAFile) {
    const TempFolder folder;
    const CZQString file = folder.File("channel.ini");
    device->Config().SaveToFile(file, "Camera");
    channel->Open(file, "Camera");
    EXPECT_EQ(channel->GetConfig().ToString(), device->Config().ToString());
    Send("hello");
    EXPECT_EQ(device->Read(5), "hello");

    const std::unique_ptr<CZQComConfigBase> clone = device->Config().Clone();
    EXPECT_EQ(clone->ToString(), device->Config().ToString());
}

TEST_P(ChannelContract, SaysWhichFileAndSectionFailed) {
    const TempFolder folder;
    const std::string missing = folder.File("missing.ini");
    const std::string nowhere = folder.File("no such folder/channel.ini");
    EXPECT_EQ(FailureOf([&] { channel->Open(missing, "Camera"); }),
              Failure(ZQ_ERR_COM_CONFIG_LOAD, "strFileName=" + missing + "; strSection=Camera"));
    EXPECT_EQ(FailureOf([&] { device->Config().SaveToFile(nowhere, "Camera"); }),
              Failure(ZQ_ERR_COM_CONFIG_SAVE, "strFileName=" + nowhere + "; strSection=Camera"));
    EXPECT_FALSE(channel->IsOpen());
}

INSTANTIATE_TEST_SUITE_P(Kinds, ChannelContract, ::testing::ValuesIn(Kinds()),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace ZQAPI::test
