#include "scanners/ZQUdpDiscovery.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <thread>
#include <unordered_set>

#include "communication/ZQComNetInterface.h"
#include "communication/ZQComUDP.h"
#include "communication/ZQComUDPConfig.h"
#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// The address field of twelve F's speaks to every camera.
constexpr std::string_view kRequest = "FFFFFFFFFFFF:SYST:NET:IP?\n";
constexpr const char* kBroadcastAddress = "255.255.255.255";
constexpr std::size_t kMaxAnswerSize = 63;
constexpr std::size_t kHardwareAddressLength = 12;

using Answers = std::vector<SUdpDeviceConnInfo>;

// Takes one datagram off the channel; none when the time passed without one.
std::optional<std::string_view> ReceiveAnswer(CZQComUDP& channel,
                                              std::array<char, kMaxAnswerSize + 1>& buffer,
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

// Discovery on one socket.
void Discover(const CZQComUDPConfig& config, const CZQString& localAddress,
              const UdpDiscoverySettings& settings, Answers& answers) {
    CZQComUDP channel;
    channel.Open(config);
    channel.Flush();

    // More cycles than milliseconds would only flood the network.
    const std::uint32_t nofCycles = std::min(settings.nofCycles, std::max(settings.scanTimeMs, 1U));
    const std::uint64_t cycleMs = nofCycles == 0 ? 0 : settings.scanTimeMs / nofCycles;
    std::unordered_set<std::string> known;
    std::array<char, kMaxAnswerSize + 1> buffer{};
    // All cycles go by one watch: a cycle that ends a little late takes nothing from the whole.
    const CZQStopWatch watch(true);
    for (std::uint32_t cycle = 0; cycle < nofCycles; ++cycle) {
        channel.Send(kRequest.data(), static_cast<std::uint32_t>(kRequest.size()));
        const std::uint64_t cycleEndMs = (cycle + 1) * cycleMs;
        for (std::uint64_t now = watch.GetElapsed(); now < cycleEndMs; now = watch.GetElapsed()) {
            const auto datagram =
                ReceiveAnswer(channel, buffer, static_cast<std::uint32_t>(cycleEndMs - now));
            if (!datagram) {
                break;
            }
            auto answer = ParseUdpAnswer(*datagram);
            if (answer && known.insert(answer->hardwareAddress.str()).second) {
                answer->localAddress = localAddress;
                answers.push_back(*std::move(answer));
            }
        }
    }
    channel.Close();
}

CZQComUDPConfig BroadcastConfig(const UdpDiscoverySettings& settings) {
    CZQComUDPConfig config;
    config.SetHostName(kBroadcastAddress);
    config.SetPortNumber(settings.port);
    return config;
}

void DiscoverOnInterface(const CZQComNetInterface& card, const UdpDiscoverySettings& settings,
                         Answers& answers) noexcept {
    try {
        CZQComUDPConfig config = BroadcastConfig(settings);
        config.SetBoundInterface(&card);
        DebugOutput("ZQSDK: Scan with UDP: %s", card.ToString().c_str());
        Discover(config, card.GetAddressText(), settings, answers);
    } catch (const CZQException& exception) {
        DebugOutput("%s", exception.ToString().c_str());
    } catch (...) {
        DebugOutput("ZQSDK: Critical error in ScannerThread");
    }
}

Answers DiscoverOnAllInterfaces(const UdpDiscoverySettings& settings) {
    std::vector<CZQComNetInterface> cards;
    CZQComNetInterface::SearchForInterfaces(cards);
    std::erase_if(cards, [](const CZQComNetInterface& card) { return !card.IsSuitableForBroadcast(); });

    std::vector<Answers> perCard(cards.size());
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < cards.size(); ++i) {
            threads.emplace_back([&card = cards[i], &settings, &answers = perCard[i]] {
                DiscoverOnInterface(card, settings, answers);
            });
        }
    }

    Answers merged;
    std::unordered_set<std::string> known;
    for (Answers& answers : perCard) {
        for (SUdpDeviceConnInfo& answer : answers) {
            if (known.insert(answer.hardwareAddress.str()).second) {
                merged.push_back(std::move(answer));
            }
        }
    }
    return merged;
}

}  // namespace

std::optional<SUdpDeviceConnInfo> ParseUdpAnswer(std::string_view datagram) {
    if (datagram.size() <= kHardwareAddressLength || datagram[kHardwareAddressLength] != ':' ||
        datagram.back() != '\n') {
        return std::nullopt;
    }
    SUdpDeviceConnInfo answer;
    answer.hardwareAddress = datagram.substr(0, kHardwareAddressLength);
    answer.ipAddress = datagram.substr(kHardwareAddressLength + 1);
    answer.ipAddress.TrimRight("\n");
    if (answer.ipAddress.IsEmpty()) {
        return std::nullopt;
    }
    return answer;
}

std::vector<SUdpDeviceConnInfo> DiscoverUdpDevices(const UdpDiscoverySettings& settings) {
    if (settings.bindToNetworkCard) {
        return DiscoverOnAllInterfaces(settings);
    }
    Answers answers;
    Discover(BroadcastConfig(settings), "", settings, answers);
    return answers;
}

}  // namespace ZQAPI
