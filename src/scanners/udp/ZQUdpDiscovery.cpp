#include "scanners/udp/ZQUdpDiscovery.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <thread>
#include <utility>

#include "communication/ZQComUDP.h"
#include "communication/ZQComUDPConfig.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQSystem.h"
#include "scanners/udp/ZQNetworkCards.h"
#include "scanners/udp/ZQUdpScanLines.h"

namespace ZQAPI {

namespace {

// The address field of twelve F's speaks to every camera.
constexpr std::string_view kRequest = "FFFFFFFFFFFF:SYST:NET:IP?\n";
constexpr const char* kBroadcastAddress = "255.255.255.255";
// What does not fit is no answer.
constexpr std::size_t kRoomForDatagram = kMaxUdpAnswerSize + 1;

// That the search is to end is noticed within this time.
constexpr std::uint32_t kMaxWaitMs = 5;

// One search over all its sockets.
class Discovery {
public:
    Discovery(const SUdpDiscoverySettings& settings, const UdpHeardCallback& onHeard,
              const UdpGoesOnCallback& goesOn)
        : m_settings(settings), m_onHeard(onHeard), m_goesOn(goesOn) {}

    void Run() {
        const bool isBound =
            m_settings.networkCards.GetSize() > 0 || (m_settings.bindToNetworkCard && !AsksHosts());
        isBound ? ListenOnCards() : ListenAndTell(Config(), 0, "");
    }

private:
    bool AsksHosts() const noexcept { return m_settings.scanHosts.GetSize() > 0; }

    CZQComUDPConfig Config() const {
        CZQComUDPConfig config;
        config.SetHostName(AsksHosts() ? m_settings.scanHosts.GetAt(0) : kBroadcastAddress);
        config.SetPortNumber(m_settings.port);
        return config;
    }

    void ListenOnCards() {
        std::vector<CZQComNetInterface> cards = FindNetworkCards(m_settings.networkCards);
        const auto isUnusable = [this](const CZQComNetInterface& card) {
            return !IsUsableNetworkCard(card, !AsksHosts());
        };
        const auto firstUsable = std::stable_partition(cards.begin(), cards.end(), isUnusable);
        std::for_each(cards.begin(), firstUsable, TellUnusable);
        cards.erase(cards.begin(), firstUsable);

        std::vector<std::jthread> threads;
        threads.reserve(cards.size());
        for (std::size_t i = 0; i < cards.size(); ++i) {
            const auto listen = [this, &card = cards[i], i] { ListenOnCard(card, i); };
            try {
                threads.emplace_back(listen);
            } catch (const std::system_error&) {
                listen();  // no thread to be had: this card takes its time on this one
            }
        }
    }

    // Cameras may be behind it all the same.
    static void TellUnusable(const CZQComNetInterface& card) {
        if (!card.IsLoopback()) {
            SAskedCard asked{card.GetCidrText()};
            asked.whyNot = card.IsUp() ? "it can't broadcast" : "it is down";
            DebugOutput("%s", FormatAsked(asked).c_str());
        }
    }

    void ListenOnCard(const CZQComNetInterface& card, std::size_t index) noexcept {
        try {
            CZQComUDPConfig config = Config();
            config.SetBoundInterface(&card);
            DebugOutput("ZQSDK: Scan with UDP: %s", card.ToString().c_str());
            ListenAndTell(config, index, card.GetCidrText());
        } catch (const CZQException& exception) {
            DebugOutput("%s", exception.ToString().c_str());
        } catch (...) {
            DebugOutput("ZQSDK: Critical error in ScannerThread");
        }
    }

    // On one socket; tells at its end what came of it.
    void ListenAndTell(const CZQComUDPConfig& config, std::size_t card, const CZQString& localAddress) {
        SAskedCard asked{localAddress};
        try {
            Listen(config, card, asked);
        } catch (const CZQException& exception) {
            asked.whyNot = exception.ToReason();
            DebugOutput("%s", FormatAsked(asked).c_str());
            throw;
        }
        if (!asked.isSent) {
            asked.whyNot = m_settings.nofCycles == 0 ? "NofScanCycles is 0" : "the scan had ended";
        }
        DebugOutput("%s", FormatAsked(asked).c_str());
    }

    void Listen(const CZQComUDPConfig& config, std::size_t card, SAskedCard& asked) {
        // It is not flushed: that would send the request to whoever has found its port already.
        CZQComUDP channel;
        channel.Open(config);
        if (AsksHosts()) {
            channel.SendToAll(m_settings.scanHosts);
        }

        // More cycles than milliseconds would only flood the network.
        const std::uint32_t nofCycles = std::min(m_settings.nofCycles, std::max(m_settings.scanTimeMs, 1U));
        const std::uint64_t cycleMs = nofCycles == 0 ? 0 : m_settings.scanTimeMs / nofCycles;
        // A camera that was asked by itself is commanded so, too, as the system routes it.
        const CZQString commandedThrough = AsksHosts() ? CZQString() : asked.card;
        std::array<char, kRoomForDatagram> buffer{};
        // All cycles go by one watch: a cycle that ends a little late takes nothing from the whole.
        const CZQStopWatch watch(true);
        for (std::uint32_t cycle = 0; cycle < nofCycles && m_goesOn(); ++cycle) {
            channel.Send(kRequest.data(), static_cast<std::uint32_t>(kRequest.size()));
            asked.isSent = true;
            const std::uint64_t cycleEndMs = (cycle + 1) * cycleMs;
            for (std::uint64_t now = watch.GetElapsed(); now < cycleEndMs && m_goesOn();
                 now = watch.GetElapsed()) {
                const auto leftMs = static_cast<std::uint32_t>(cycleEndMs - now);
                if (!HearNext(channel, buffer, {{}, 0, commandedThrough}, card, asked)) {
                    channel.WaitForDatagram(std::min(leftMs, kMaxWaitMs));
                }
            }
        }
        // What had come by then counts, too; what goes on coming has no end.
        for (std::uint32_t i = 0; i < CZQComUDP::kMaxBurst && m_goesOn(); ++i) {
            if (!HearNext(channel, buffer, {{}, 0, commandedThrough}, card, asked)) {
                break;
            }
        }
        channel.Close();
    }

    // False when nothing has come.
    bool HearNext(CZQComUDP& channel, std::span<char> room, SUdpDatagram datagram, std::size_t card,
                  SAskedCard& asked) {
        const auto text = channel.TakeDatagram(room);
        if (text && !text->empty()) {
            datagram.text = *text;
            datagram.sender = platform::SwapAddress(channel.GetSender().addressBe);
            ++(Hear(datagram, card) ? asked.nofAnswers : asked.nofIgnored);
        }
        return text.has_value();
    }

    // Both texts have one form alone.
    bool IsOfHostAsked(const SUdpDeviceConnInfo& camera, std::uint32_t sender) const {
        return camera.ipAddress == FormatIpv4(sender).c_str() &&
               m_settings.scanHosts.Contains(camera.ipAddress);
    }

    // Whether it counts.
    bool Hear(const SUdpDatagram& datagram, std::size_t card) {
        SUdpAnswer answer = ReadUdpAnswer(datagram);
        if (answer.camera && AsksHosts() && !IsOfHostAsked(*answer.camera, datagram.sender)) {
            answer = {{}, "nobody asked the host, or the IP address is another's"};
        }
        if (answer.camera) {
            m_onHeard(card, *answer.camera);
        } else {
            m_ignored.Add(datagram, answer);
        }
        return answer.camera.has_value();
    }

    const SUdpDiscoverySettings& m_settings;
    const UdpHeardCallback& m_onHeard;
    const UdpGoesOnCallback& m_goesOn;
    CZQIgnoredDatagrams m_ignored;
};

}  // namespace

void ListenForUdpDevices(const SUdpDiscoverySettings& settings, const UdpHeardCallback& onHeard,
                         const UdpGoesOnCallback& goesOn) {
    Discovery(settings, onHeard, goesOn).Run();
}

std::vector<SUdpDeviceConnInfo> DiscoverUdpDevices(const SUdpDiscoverySettings& settings) {
    CZQUdpCameras cameras;
    ListenForUdpDevices(
        settings,
        [&cameras](std::size_t card, const SUdpDeviceConnInfo& camera) { cameras.Add(card, camera); },
        [] { return true; });
    return cameras.Take();
}

}  // namespace ZQAPI
