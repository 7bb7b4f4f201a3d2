// Whole scans for network cameras, and a re-check of the first one found, against a camera on loopback that answers
// what the input says. Runs in a network namespace alone (scripts/netns). Input, three parts of several fields each:
// what discovery is answered with; what comes before each answer to a command; the texts of those answers, for type,
// serial number, description and firmware version.
#include <array>
#include <mutex>
#include <thread>

#include "Fuzz.h"
#include "communication/ZQComIPAddr.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQDynamicDLL.h"
#include "scanners/udp/ZQScanIFZqUDP.h"
#include "scanners/udp/ZQUdpAnswers.h"

namespace ZQAPI::fuzz {

namespace {

constexpr std::uint16_t kDiscoveryPort = 19380;
constexpr std::uint16_t kCommandPort = 19383;
constexpr const char* kAnywhere = "0.0.0.0";
constexpr const char* kCamera = "127.0.0.1";
constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr std::size_t kMaxAnswers = 8;
constexpr std::size_t kMaxDatagram = 1400;
constexpr const char* kSection = "DeviceScanner." ZQDEV_SCANNER_NAME_ZQ_UDP;
constexpr const char* kSettings = "]\r\nIPPort=19380\r\nNofScanCycles=2\r\nScanTimeMs=10\r\n";

using Texts = std::vector<std::string>;

struct Script {
    Texts discovery;
    Texts strays;
    Texts answers;
};

// Commands to an address where nobody is would only cost their time-outs.
std::string Reachable(const std::string& datagram) {
    const auto answer = ReadUdpAnswer({datagram.c_str(), kLoopback, {}});
    return answer.camera ? datagram.substr(0, 13) + kCamera + "\n" : datagram;
}

Script ScriptOf(std::string_view input) {
    Script script;
    for (Texts* const texts : {&script.discovery, &script.strays, &script.answers}) {
        *texts = AllParts(TakePart(input), kBetweenFields);
        texts->resize(std::min(texts->size(), kMaxAnswers));
        for (std::string& text : *texts) {
            text.resize(std::min(text.size(), kMaxDatagram));
        }
    }
    std::transform(script.discovery.begin(), script.discovery.end(), script.discovery.begin(), Reachable);
    script.answers.resize(4);
    for (std::string& text : script.answers) {
        std::erase(text, '\0');  // what the module takes for no answer, it would wait for the answer behind
    }
    return script;
}

// Never ends: it goes with the process.
class Camera {
public:
    Camera() {
        Open(m_discovery, kAnywhere, kDiscoveryPort);
        Open(m_commands, kCamera, kCommandPort);
        std::thread([this] { Serve(); }).detach();
    }
    void Play(Script script) {
        const std::lock_guard lock(m_mutex);
        m_script = std::move(script);
    }

private:
    static void Open(platform::UdpSocket& socket, const char* host, std::uint16_t port) {
        platform::SystemErrorCode error = 0;
        ZQ_REQUIRE(socket.Open(error) && socket.EnableAddressReuse(error) && socket.EnableBroadcast(error) &&
                   socket.Bind(CZQComIPAddr(host, port).GetSocketAddress(), error));
    }

    [[noreturn]] void Serve() {
        const std::array<const platform::UdpSocket*, 2> sockets = {&m_discovery, &m_commands};
        for (;;) {
            for (const std::size_t index : platform::UdpSocket::WaitAny(sockets, std::chrono::seconds(1))) {
                Answer(index == 0 ? m_discovery : m_commands, index == 0);
            }
        }
    }

    void Answer(platform::UdpSocket& socket, bool isDiscovery) {
        std::array<char, 256> request{};
        platform::Ipv4SocketAddress from;
        platform::SystemErrorCode error = 0;
        const auto size = socket.ReceiveFrom(std::as_writable_bytes(std::span(request)), from, error);
        const std::lock_guard lock(m_mutex);
        for (const std::string& datagram :
             isDiscovery ? m_script.discovery : CommandAnswers({request.data(), size.value_or(0)})) {
            socket.SendTo(from, std::as_bytes(std::span(datagram)), error);
        }
    }

    Texts CommandAnswers(std::string_view request) const {
        constexpr std::string_view kCommands[] = {"SERV:ID?", "SYST:SERN?", "SYST:ID?", "SYST:VERS?"};
        const auto* const found = std::find_if(
            std::begin(kCommands), std::end(kCommands),
            [&](std::string_view command) { return request.find(command) != std::string_view::npos; });
        Texts answers = m_script.strays;
        if (found != std::end(kCommands)) {
            const auto index = static_cast<std::size_t>(found - std::begin(kCommands));
            answers.push_back(std::string(request.substr(0, 13)) + m_script.answers[index] + "\n");
        }
        return answers;
    }

    platform::UdpSocket m_discovery;
    platform::UdpSocket m_commands;
    std::mutex m_mutex;
    Script m_script;
};

// The one that this program lies in; its settings are this target's.
CZQSdkPaths MakeKit() {
    const CZQString binPath = CZQSdkPaths::OfOwnKit().GetBinPath();
    const std::string own = binPath.str();
    std::filesystem::create_directories(own + "AppData/config");
    test::WriteBytes(own + CZQSdkPaths::kMarkerFile, "");
    CZQSdkPaths kit(binPath);
    test::WriteBytes(kit.GetApiIniPath().str(), "[" + std::string(kSection) + kSettings);
    return kit;
}

}  // namespace

void CheckInput(std::string_view input) {
    if (std::getenv("ZQ_NETNS") == nullptr) {
        std::fputs("This target broadcasts: run it through scripts/netns.\n", stderr);
        std::exit(2);
    }
    static Camera& camera = *new Camera;
    // Held: libFuzzer goes on reading the module's counters when it has been unloaded.
    static const CZQSdkPaths kit = MakeKit();
    static const CZQDynamicDLL module(kit.GetCcmPath() + "ZQCCMUdpAPI.dll");
    camera.Play(ScriptOf(input));

    CZQDeviceList found;
    // An answer that is too long ends the search.
    Succeeds([&] { CZQScanIFZqUDP(kit, kSection).Scan(found); });
    if (found.GetCount() == 0) {
        return;
    }
    CZQDeviceList list;
    for (const CZQDeviceInfo& device : found) {
        RequireKeepable(device);
        list.AddDevice(device, true);
    }
    RequireComesBack(list);

    CZQDeviceInfo device = found.GetDevice(0);
    Succeeds([&] { CZQScanIFZqUDP(kit, kSection).Update(device); });
    RequireKeepable(device);
}

}  // namespace ZQAPI::fuzz
