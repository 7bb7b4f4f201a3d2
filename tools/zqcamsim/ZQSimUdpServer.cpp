#include "ZQSimUdpServer.h"

#include <algorithm>
#include <exception>
#include <map>
#include <numeric>
#include <span>
#include <utility>

#include "communication/ZQComICMPPing.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI::sim {

namespace {

constexpr std::uint32_t kAnyAddress = 0;
constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr std::uint32_t kLoopbackMask = 0xFF000000;
constexpr std::uint32_t kMulticast = 0xE0000000;  // and above: no host's
constexpr std::uint32_t kLimitedBroadcast = 0xFFFFFFFF;
constexpr std::size_t kAddressFieldLength = 12;
// Anybody may ask, as fast as he likes: what is more than this is lost, as on a real network.
constexpr std::size_t kMaxWaitingAnswers = 32768;
constexpr int kMaxRequestsAtOnce = 64;  // of one socket, before others have their turn
constexpr std::string_view kDiscoveryQuery = "SYST:NET:IP?";
// The end is noticed after this time at the latest. No datagram to itself could tell it: loopback may be down.
constexpr std::chrono::milliseconds kLongestWait{50};

std::string WhyNot(const char* what, std::uint32_t address, platform::SystemErrorCode error) {
    return std::string(what) + " " + FormatIpv4(address) + ": " + FormatSystemError(error).str();
}

}  // namespace

CZQSimUdpServer::CZQSimUdpServer(std::vector<CZQSimCamera> cameras, CZQSimUdpSettings settings)
    : m_settings(std::move(settings)), m_interface(m_settings.interfaceName) {
    for (CZQSimCamera& camera : cameras) {
        const auto seed = m_settings.seed + static_cast<std::uint32_t>(m_stations.size());
        Station station{std::move(camera), {}, {}, std::mt19937(seed)};
        station.homeAddress = station.boundAddress = station.camera.GetAddress();
        station.homeMask = station.boundMask = station.camera.GetMask();
        m_stations.push_back(std::move(station));
    }
    BindEverything();
    CollectListeners();
    m_thread = std::thread([this] { Run(); });
}

CZQSimUdpServer::~CZQSimUdpServer() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_thread.join();
}

void CZQSimUdpServer::SetFaults(std::size_t camera, const CZQSimFaults& faults) {
    const std::lock_guard lock(m_mutex);
    m_stations.at(camera).faults = faults;
}

void CZQSimUdpServer::SetFaults(const CZQSimFaults& faults) {
    const std::lock_guard lock(m_mutex);
    for (Station& station : m_stations) {
        station.faults = faults;
    }
}

CZQSimCounts CZQSimUdpServer::GetCounts(std::size_t camera) const {
    const std::lock_guard lock(m_mutex);
    return m_stations.at(camera).counts;
}

CZQSimCamera CZQSimUdpServer::GetCamera(std::size_t camera) const {
    const std::lock_guard lock(m_mutex);
    return m_stations.at(camera).camera;
}

void CZQSimUdpServer::BindEverything() {
    for (Station& station : m_stations) {
        BindStation(station);
    }
    platform::SystemErrorCode error{};
    if (BindBroadcast(error)) {
        return;
    }
    // A system that can only listen on the wildcard address for broadcasts may take the cameras' own sockets,
    // on the same ports, for a conflict, unless they all agree to share.
    m_sharePorts = true;
    m_endpoints.clear();
    for (Station& station : m_stations) {
        BindStation(station);
    }
    if (!BindBroadcast(error)) {
        throw CZQException(ZQ_HERE("CZQSimUdpServer::BindEverything"), ZQ_ERR_SOCKET_CREATE, "%s",
                           WhyNot("No socket for broadcasts on", kAnyAddress, error).c_str());
    }
}

// Bound to the broadcast address itself where the system takes that: unlike a socket on the wildcard address
// it hears broadcasts alone, and leaves the cameras' own addresses to their sockets.
bool CZQSimUdpServer::BindBroadcast(platform::SystemErrorCode& error) {
    for (const EPort port : {kDiscovery, kCommand}) {
        platform::UdpSocket& socket = m_broadcast[port];
        if (!socket.Open(error) || !socket.EnableAddressReuse(error) ||
            (!socket.Bind(SocketAddress(kLimitedBroadcast, port), error) &&
             !socket.Bind(SocketAddress(kAnyAddress, port), error))) {
            return false;
        }
    }
    return true;
}

void CZQSimUdpServer::BindStation(Station& station) {
    const std::uint32_t address = station.camera.GetAddress();
    station.boundAddress = address;
    platform::SystemErrorCode error{};
    if (m_endpoints.contains(address) || TryToBind(address, error)) {
        return;
    }
    if (m_interface.IsUsable()) {
        m_interface.AddAddress(address);
        if (TryToBind(address, error)) {
            return;
        }
    }
    throw CZQException(ZQ_HERE("CZQSimUdpServer::BindStation"), ZQ_ERR_SOCKET_CREATE, "%s",
                       WhyNot("No camera can be at", address, error).c_str());
}

// An address that another simulator plays already is an error, as long as the ports are not shared.
bool CZQSimUdpServer::TryToBind(std::uint32_t address, platform::SystemErrorCode& error) {
    Sockets sockets;
    for (const EPort port : {kDiscovery, kCommand}) {
        if (!sockets[port].Open(error) || (m_sharePorts && !sockets[port].EnableAddressReuse(error)) ||
            !sockets[port].Bind(SocketAddress(address, port), error)) {
            return false;
        }
    }
    m_endpoints[address] = std::move(sockets);
    return true;
}

void CZQSimUdpServer::CollectListeners() {
    std::vector<std::size_t> all(m_stations.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    std::map<std::uint32_t, std::vector<std::size_t>> stationsAt;
    for (const std::size_t i : all) {
        stationsAt[m_stations[i].boundAddress].push_back(i);
    }
    m_listeners.clear();
    for (const EPort port : {kDiscovery, kCommand}) {
        m_listeners.push_back({&m_broadcast[port], port, all});
    }
    for (auto& [address, sockets] : m_endpoints) {
        for (const EPort port : {kDiscovery, kCommand}) {
            m_listeners.push_back({&sockets[port], port, stationsAt[address]});
        }
    }

    m_waited.clear();
    for (const Listener& listener : m_listeners) {
        m_waited.push_back(listener.socket);
    }
}

platform::Ipv4SocketAddress CZQSimUdpServer::SocketAddress(std::uint32_t address, EPort port) const noexcept {
    platform::Ipv4SocketAddress result;
    result.addressBe = platform::SwapAddress(address);
    result.portBe =
        platform::SwapPort(port == kDiscovery ? m_settings.discoveryPort : m_settings.commandPort);
    return result;
}

void CZQSimUdpServer::Run() noexcept {
    try {
        while (ServeOnce()) {
        }
    } catch (const CZQException& exception) {
        Trouble(exception.GetExtraText().str());
    } catch (const std::exception& exception) {
        Trouble(exception.what());
    }
}

bool CZQSimUdpServer::ServeOnce() {
    Clock::duration untilNext{};
    {
        const std::lock_guard lock(m_mutex);
        if (m_stop) {
            return false;
        }
        untilNext = SendDueAnswers();
    }
    const auto readable =
        platform::UdpSocket::WaitAny(m_waited, std::chrono::ceil<std::chrono::microseconds>(untilNext));
    const std::lock_guard lock(m_mutex);
    for (const std::size_t index : readable) {
        Receive(m_listeners[index]);
    }
    return true;
}

// Takes what has arrived at one socket. What is no request is ignored, as a camera does.
void CZQSimUdpServer::Receive(const Listener& listener) {
    char buffer[2048];
    platform::Ipv4SocketAddress from;
    platform::SystemErrorCode error{};
    for (int n = 0; n < kMaxRequestsAtOnce; ++n) {
        const auto size =
            listener.socket->ReceiveFrom(std::as_writable_bytes(std::span(buffer)), from, error);
        if (!size) {
            break;
        }
        std::string_view request(buffer, *size);
        if (request.size() < kAddressFieldLength + 2 || request[kAddressFieldLength] != ':' ||
            !request.ends_with('\n')) {
            continue;
        }
        request.remove_suffix(1);
        const std::string_view addressField = request.substr(0, kAddressFieldLength);
        const std::string_view command = request.substr(kAddressFieldLength + 1);
        if (listener.port == kDiscovery && command != kDiscoveryQuery) {
            continue;
        }
        for (const std::size_t i : listener.stations) {
            if (m_stations[i].camera.IsAddressedBy(addressField)) {
                Hear(i, listener.port, command, from);
            }
        }
    }
}

void CZQSimUdpServer::Hear(std::size_t index, EPort port, std::string_view command,
                           const platform::Ipv4SocketAddress& from) {
    Station& station = m_stations[index];
    ++(port == kDiscovery ? station.counts.discoveryRequests : station.counts.commands);
    const CZQSimPortFaults& faults = port == kDiscovery ? station.faults.discovery : station.faults.command;
    if (faults.silent || Happens(station, faults.requestLoss) || m_answers.size() >= kMaxWaitingAnswers) {
        return;
    }
    const std::string answer = station.camera.Execute(command);
    const auto due = Clock::now() + Draw(station, faults.delay);
    m_answers.emplace(due, Answer{index, port, from, MakeDatagrams(station, faults, answer)});
}

std::vector<std::string> CZQSimUdpServer::MakeDatagrams(Station& station, const CZQSimPortFaults& faults,
                                                        std::string_view answer) {
    if (Happens(station, faults.answerLoss)) {
        return {};
    }
    const std::string& hardwareAddress = station.camera.GetIdentity().hardwareAddress;
    std::vector<std::string> datagrams{
        FormAnswer(faults.form, hardwareAddress, answer, faults.longAnswerBytes)};
    if (faults.properFollows && faults.form != EAnswerForm::kProper) {
        datagrams.push_back(FormAnswer(EAnswerForm::kProper, hardwareAddress, answer, 0));
    }
    if (Happens(station, faults.duplicates)) {
        datagrams.push_back(datagrams.back());
    }
    return datagrams;
}

// How long to wait for the next one, and for requests.
CZQSimUdpServer::Clock::duration CZQSimUdpServer::SendDueAnswers() {
    while (!m_answers.empty()) {
        const auto next = m_answers.begin();
        const auto wait = next->first - Clock::now();
        if (wait > Clock::duration::zero()) {
            return std::min<Clock::duration>(wait, kLongestWait);
        }
        Send(next->second);
        m_answers.erase(next);
    }
    return kLongestWait;
}

void CZQSimUdpServer::Send(const Answer& answer) {
    Station& station = m_stations[answer.station];
    const auto endpoint = m_endpoints.find(station.boundAddress);
    for (const std::string& datagram : answer.datagrams) {
        if (endpoint == m_endpoints.end()) {
            break;  // off the network, which has been reported
        }
        platform::SystemErrorCode error{};
        if (endpoint->second[answer.port].SendTo(answer.to, std::as_bytes(std::span(datagram)), error)) {
            ++station.counts.answers;
        } else {
            Trouble(WhyNot("No answer could be sent from", station.boundAddress, error));
        }
    }
    // The command that changes the address is still answered from the old one.
    if (station.camera.GetAddress() != station.boundAddress) {
        MoveToNewAddress(station);
    }
    station.boundMask = station.camera.GetMask();
}

// Why the camera must not take this address; empty when it may.
std::string CZQSimUdpServer::ObjectionTo(const Station& station, std::uint32_t address) const {
    const std::uint32_t host = address & ~station.homeMask;
    const bool isHost = host != 0 && host != ~station.homeMask && address >> 24 != 0 && address < kMulticast;
    if (!isHost || ((address ^ station.homeAddress) & station.homeMask) != 0) {
        return "it is no host of the subnet that the camera was started in";
    }
    if (m_endpoints.contains(address)) {
        return "another camera has it";
    }
    if ((address & kLoopbackMask) == (kLoopback & kLoopbackMask)) {
        return address == kLoopback ? "it is this machine's own" : "";
    }
    platform::UdpSocket probe;
    platform::Ipv4SocketAddress own;
    own.addressBe = platform::SwapAddress(address);
    platform::SystemErrorCode error{};
    if (!probe.Open(error) || probe.Bind(own, error)) {
        return "it is this machine's own";
    }
    if (!m_interface.IsUsable()) {
        return "there is no interface to add it to";
    }
    try {
        constexpr std::uint32_t kEchoTimeoutMs = 500;
        const bool answers = CZQComICMPPing().Ping(FormatIpv4(address), kEchoTimeoutMs) >= 0;
        return answers ? "somebody answers there" : "";
    } catch (const CZQException& exception) {
        return "nobody can tell whether it is free: " + exception.GetExtraText().str();
    }
}

void CZQSimUdpServer::MoveToNewAddress(Station& station) {
    const std::uint32_t former = station.boundAddress;
    const std::uint32_t address = station.camera.GetAddress();
    try {
        const std::string objection = ObjectionTo(station, address);
        if (!objection.empty()) {
            station.camera.SetNetwork(former, station.boundMask);
            Trouble("Camera " + station.camera.GetIdentity().hardwareAddress + " keeps " +
                    FormatIpv4(former) + " and does not take " + FormatIpv4(address) + ": " + objection);
            return;
        }
        station.boundAddress = address;
        if (std::none_of(m_stations.begin(), m_stations.end(),
                         [&](const Station& other) { return other.boundAddress == former; })) {
            m_endpoints.erase(former);
            m_interface.RemoveAddress(former);
        }
        BindStation(station);
    } catch (const CZQException& exception) {
        Trouble(exception.GetExtraText().str());
    }
    CollectListeners();
}

void CZQSimUdpServer::Trouble(const std::string& text) const {
    if (m_settings.onTrouble) {
        m_settings.onTrouble(text);
    }
}

bool CZQSimUdpServer::Happens(Station& station, double share) {
    return share > 0 && std::bernoulli_distribution(share)(station.random);
}

CZQSimUdpServer::Clock::duration CZQSimUdpServer::Draw(Station& station, const CZQSimDelay& delay) {
    if (delay.maximum <= delay.minimum) {
        return delay.minimum;
    }
    return std::chrono::microseconds(std::uniform_int_distribution<std::int64_t>(
        delay.minimum.count(), delay.maximum.count())(station.random));
}

}  // namespace ZQAPI::sim
