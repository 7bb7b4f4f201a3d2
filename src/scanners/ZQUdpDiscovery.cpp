#include "scanners/ZQUdpDiscovery.h"

#include <algorithm>
#include <array>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "communication/ZQComNetInterface.h"
#include "communication/ZQComUDP.h"
#include "communication/ZQComUDPConfig.h"
#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQUdpScanLines.h"

namespace ZQAPI {

namespace {

// The address field of twelve F's speaks to every camera.
constexpr std::string_view kRequest = "FFFFFFFFFFFF:SYST:NET:IP?\n";
constexpr const char* kBroadcastAddress = "255.255.255.255";
constexpr std::size_t kMaxAnswerSize = 63;

// That the search is to end is noticed within this time.
constexpr std::uint32_t kMaxWaitMs = 5;

using AnswerBuffer = std::array<char, kMaxAnswerSize + 1>;

// Takes one datagram off the channel; none when the time passed without one.
std::optional<std::string_view> ReceiveAnswer(CZQComUDP& channel, AnswerBuffer& buffer,
                                              std::uint32_t timeoutMs) {
    buffer.fill('\0');
    try {
        channel.Recv(buffer.data(), kMaxAnswerSize, timeoutMs, true);
    } catch (const CZQException& exception) {
        if (exception.GetErrorNumber() != ZQ_ERR_COM_TIMEOUT) {
            throw;
        }
        return std::nullopt;
    }
    return buffer.data();
}

// One search over all its sockets.
class Discovery {
public:
    Discovery(const SUdpDiscoverySettings& settings, const UdpHeardCallback& onHeard,
              const UdpGoesOnCallback& goesOn)
        : m_settings(settings), m_onHeard(onHeard), m_goesOn(goesOn) {}

    void Run() {
        m_settings.bindToNetworkCard ? ListenOnAllCards() : ListenAndTell(BroadcastConfig(), 0, "");
    }

private:
    CZQComUDPConfig BroadcastConfig() const {
        CZQComUDPConfig config;
        config.SetHostName(kBroadcastAddress);
        config.SetPortNumber(m_settings.port);
        return config;
    }

    void ListenOnAllCards() {
        std::vector<CZQComNetInterface> cards;
        CZQComNetInterface::SearchForInterfaces(cards);
        TellUnsuitable(cards);
        std::erase_if(cards, [](const CZQComNetInterface& card) { return !card.IsSuitableForBroadcast(); });

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

    // Cameras may be behind them all the same.
    static void TellUnsuitable(const std::vector<CZQComNetInterface>& cards) {
        for (const CZQComNetInterface& card : cards) {
            if (!card.IsSuitableForBroadcast() && !card.IsLoopback()) {
                SAskedCard asked{card.GetCidrText()};
                asked.whyNot = card.IsUp() ? "it can't broadcast" : "it is down";
                DebugOutput("%s", FormatAsked(asked).c_str());
            }
        }
    }

    void ListenOnCard(const CZQComNetInterface& card, std::size_t index) noexcept {
        try {
            CZQComUDPConfig config = BroadcastConfig();
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

        // More cycles than milliseconds would only flood the network.
        const std::uint32_t nofCycles = std::min(m_settings.nofCycles, std::max(m_settings.scanTimeMs, 1U));
        const std::uint64_t cycleMs = nofCycles == 0 ? 0 : m_settings.scanTimeMs / nofCycles;
        AnswerBuffer buffer{};
        // All cycles go by one watch: a cycle that ends a little late takes nothing from the whole.
        const CZQStopWatch watch(true);
        for (std::uint32_t cycle = 0; cycle < nofCycles && m_goesOn(); ++cycle) {
            channel.Send(kRequest.data(), static_cast<std::uint32_t>(kRequest.size()));
            asked.isSent = true;
            const std::uint64_t cycleEndMs = (cycle + 1) * cycleMs;
            for (std::uint64_t now = watch.GetElapsed(); now < cycleEndMs && m_goesOn();
                 now = watch.GetElapsed()) {
                const auto leftMs = static_cast<std::uint32_t>(cycleEndMs - now);
                if (!channel.WaitForDatagram(std::min(leftMs, kMaxWaitMs))) {
                    continue;
                }
                const auto text = ReceiveAnswer(channel, buffer, leftMs);
                if (!text) {
                    break;
                }
                const std::uint32_t sender = platform::SwapAddress(channel.GetSender().addressBe);
                ++(Hear({*text, sender, asked.card}, card) ? asked.nofAnswers : asked.nofIgnored);
            }
        }
        channel.Close();
    }

    // Whether it counts.
    bool Hear(const SUdpDatagram& datagram, std::size_t card) {
        const SUdpAnswer answer = ReadUdpAnswer(datagram);
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
