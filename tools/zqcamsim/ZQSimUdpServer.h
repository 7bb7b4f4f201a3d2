#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ZQSimCamera.h"
#include "ZQSimFaults.h"
#include "ZQSimInterface.h"
#include "communication/ZQComWs2DllInit.h"
#include "platform/UdpSocket.h"

namespace ZQAPI::sim {

struct CZQSimUdpSettings {
    std::uint16_t discoveryPort = 19380;
    std::uint16_t commandPort = 19383;
    // All chance comes from here: the same requests with the same seed are answered alike.
    std::uint32_t seed = 1;
    // Where addresses are added that this machine does not have yet; empty: they must be there.
    std::string interfaceName;
    // Told, on the server's thread, what went wrong after the start. It must not call the server.
    std::function<void(const std::string&)> onTrouble;
};

// What one camera has received, lost requests included, and sent.
struct CZQSimCounts {
    std::uint64_t discoveryRequests = 0;
    std::uint64_t commands = 0;
    std::uint64_t answers = 0;
};

// Puts cameras on the network. Each answers from its own address: discovery requests and commands that are
// sent to that address, and those that are broadcast. Runs from construction to destruction, on one thread of
// its own. Thread-safe.
//
// Anybody may tell a camera to take another address, and this process may be allowed to give the machine any:
// a camera takes only one of the subnet that it was started in (mask 0.0.0.0: any) that is free, neither this
// machine's own nor one where somebody answers. Otherwise it keeps its own, and onTrouble is told.
class CZQSimUdpServer {
public:
    // Answers when it returns. ZQ_ERR_SOCKET_CREATE when an address can't be had or is in use.
    CZQSimUdpServer(std::vector<CZQSimCamera> cameras, CZQSimUdpSettings settings);
    ~CZQSimUdpServer();
    CZQSimUdpServer(const CZQSimUdpServer&) = delete;
    CZQSimUdpServer& operator=(const CZQSimUdpServer&) = delete;

    // From the next request on. Cameras are counted from 0.
    void SetFaults(std::size_t camera, const CZQSimFaults& faults);
    void SetFaults(const CZQSimFaults& faults);

    CZQSimCounts GetCounts(std::size_t camera) const;
    CZQSimCamera GetCamera(std::size_t camera) const;

private:
    using Clock = std::chrono::steady_clock;

    enum EPort : std::size_t { kDiscovery, kCommand, kNofPorts };
    using Sockets = std::array<platform::UdpSocket, kNofPorts>;

    struct Station {  // a camera on the network
        CZQSimCamera camera;
        CZQSimFaults faults;
        CZQSimCounts counts;
        std::mt19937 random;
        std::uint32_t boundAddress = 0;  // host byte order, like the rest
        std::uint32_t boundMask = 0;
        std::uint32_t homeAddress = 0;  // that it was started with
        std::uint32_t homeMask = 0;
    };
    struct Listener {  // one socket to wait for
        platform::UdpSocket* socket;
        EPort port;
        std::vector<std::size_t> stations;  // that hear what arrives there
    };
    struct Answer {
        std::size_t station;
        EPort port;
        platform::Ipv4SocketAddress to;
        std::vector<std::string> datagrams;
    };

    // The lock need not be held before the thread runs; on the thread it is, but while waiting.
    void BindEverything();
    bool BindBroadcast(platform::SystemErrorCode& error);
    void BindStation(Station& station);
    bool TryToBind(std::uint32_t address, platform::SystemErrorCode& error);
    void CollectListeners();
    platform::Ipv4SocketAddress SocketAddress(std::uint32_t address, EPort port) const noexcept;

    void Run() noexcept;
    bool ServeOnce();
    void Receive(const Listener& listener);
    void Hear(std::size_t index, EPort port, std::string_view command,
              const platform::Ipv4SocketAddress& from);
    Clock::duration SendDueAnswers();
    void Send(const Answer& answer);
    void MoveToNewAddress(Station& station);
    std::string ObjectionTo(const Station& station, std::uint32_t address) const;
    void Trouble(const std::string& text) const;

    static std::vector<std::string> MakeDatagrams(Station& station, const CZQSimPortFaults& faults,
                                                  std::string_view answer);
    static bool Happens(Station& station, double share);
    static Clock::duration Draw(Station& station, const CZQSimDelay& delay);

    const CZQSimUdpSettings m_settings;
    CZQComWs2DllInit m_socketLibrary;

    mutable std::mutex m_mutex;
    CZQSimInterface m_interface;
    std::vector<Station> m_stations;
    // By address. Several cameras may have the same one, as new cameras do; a camera with an address that
    // this machine can't give it has none.
    std::map<std::uint32_t, Sockets> m_endpoints;
    Sockets m_broadcast;
    bool m_sharePorts = false;          // with other sockets of this machine
    std::vector<Listener> m_listeners;  // what the thread waits for; it alone uses them once it runs
    std::vector<const platform::UdpSocket*> m_waited;    // the same sockets
    std::multimap<Clock::time_point, Answer> m_answers;  // by the time they are due
    bool m_stop = false;
    std::thread m_thread;
};

}  // namespace ZQAPI::sim
