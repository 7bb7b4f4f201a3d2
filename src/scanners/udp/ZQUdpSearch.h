#pragma once

#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "scanners/udp/ZQIdentificationWorkers.h"
#include "scanners/udp/ZQUdpCamera.h"
#include "scanners/udp/ZQUdpDiscovery.h"

namespace ZQAPI {

// One search of the network: listens for cameras and asks each who it is as soon as it has been heard. Shared
// by the scanner and the thread that listens.
class CZQUdpSearch : public std::enable_shared_from_this<CZQUdpSearch> {
public:
    using Clock = CZQIdentificationRound::Clock;
    struct SHeard {
        SUdpDeviceConnInfo answer;
        std::shared_ptr<CZQUdpCamera> camera;
    };
    using Cameras = std::vector<SHeard>;

    // Nothing is sent after the deadline.
    CZQUdpSearch(const CZQSdkPaths& kit, const SUdpDiscoverySettings& settings, Clock::time_point deadline)
        : m_kit(kit), m_settings(settings), m_deadline(deadline) {}

    // What was heard, in the order of discovery, identified as far as there was time. Ends when the listening
    // time is over and every camera has been asked, or as soon as one with the identifier `wantedId` (empty:
    // none) has been identified, or at the deadline. Errors of the discovery. Once per search.
    Cameras Run(const CZQString& wantedId);

    // From any thread, for good: nothing is sent once this has returned.
    void Stop() noexcept { m_round.Stop(); }

private:
    void Listen() noexcept;
    Cameras InOrder();
    void Hear(std::size_t card, const SUdpDeviceConnInfo& answer);
    std::shared_ptr<CZQUdpCamera> Keep(std::size_t card, const SUdpDeviceConnInfo& answer);
    void Check(const CZQDeviceInfo& device) noexcept;

    const CZQSdkPaths m_kit;
    const SUdpDiscoverySettings m_settings;
    const Clock::time_point m_deadline;
    CZQString m_wantedId;
    const std::shared_ptr<CZQUdpKitFiles> m_kitFiles = std::make_shared<CZQUdpKitFiles>(m_kit);
    const std::shared_ptr<CZQUdpNeighbours> m_neighbours = std::make_shared<CZQUdpNeighbours>();
    CZQIdentificationRound m_round;
    std::exception_ptr m_failure;  // of the listening, written before it ends

    std::mutex m_mutex;  // for what follows
    CZQUdpCameras m_heard;
    std::map<std::string, std::shared_ptr<CZQUdpCamera>> m_cameras;  // by hardware address
};

}  // namespace ZQAPI
