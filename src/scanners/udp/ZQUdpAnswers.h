// What a scan makes of the datagrams that come back. Anybody can send one, and as many as he likes: what
// counts is checked, and what is kept is bounded.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/ZQString.h"

namespace ZQAPI {

// One camera's answer.
struct SUdpDeviceConnInfo {
    CZQString hardwareAddress;  // 12 letters or digits
    CZQString ipAddress;        // dotted; 0.0.0.0 for a camera that has none yet
    // Of the local interface that heard it, with the bits of its subnet, "192.168.1.5/24"; empty: the socket was bound
    // to none.
    CZQString localAddress;
    CZQString otherLocalAddress = {};  // of a further interface that heard it, if one did
    bool hasConflict = false;          // answers with this hardware address gave different IP addresses
};

// In bytes; a longer datagram is no answer.
inline constexpr std::size_t kMaxUdpAnswerSize = 63;

struct SUdpDatagram {
    std::string_view text;     // its bytes; of one that is longer than an answer at least one more than that
    std::uint32_t sender = 0;  // host byte order
    CZQString localAddress;    // as in SUdpDeviceConnInfo
};

// The camera behind a datagram, or why it counts for nothing.
struct SUdpAnswer {
    std::optional<SUdpDeviceConnInfo> camera;
    const char* whyNot = "";
    std::optional<SUdpDeviceConnInfo> notReachable =
        {};  // a camera's answer, but no command may be sent there
};

// An answer counts when commands that are sent to what it says can reach one camera and nobody else: its
// hardware address is not everybody's, its IP address is complete and a single machine's, and not this
// machine's own unless it comes from this machine.
SUdpAnswer ReadUdpAnswer(const SUdpDatagram& datagram);

// The cameras heard in one scan, each hardware address once. Thread-safe.
class CZQUdpCameras {
public:
    // More are left out, which is told once.
    static constexpr std::size_t kMaxCameras = 4096;
    // So many of those have one IP address, where commands go to that address alone: whoever it belongs to may be no
    // camera at all, and be sent all these commands.
    static constexpr std::size_t kMaxOfAnAddress = 16;

    enum class EHeard { kFirst, kOnEarlierCard, kAgain, kTooMany };

    // `card` is the place of the local interface in the system's order: the first interface that heard a
    // camera wins, whichever answer came first. A different IP address is a conflict, told once per camera.
    EHeard Add(std::size_t card, SUdpDeviceConnInfo camera);

    // In the order of the interfaces, and of each interface's answers.
    std::vector<SUdpDeviceConnInfo> Take();

private:
    bool HasRoomFor(const SUdpDeviceConnInfo& camera);

    struct Heard {
        std::size_t card = 0;
        std::uint64_t order = 0;
        SUdpDeviceConnInfo camera;
    };

    std::mutex m_mutex;
    std::map<std::string, Heard, std::less<>> m_heard;           // by hardware address
    std::map<std::string, std::size_t, std::less<>> m_nofAlone;  // by IP address
    std::uint64_t m_lastOrder = 0;
    bool m_isFull = false;
};

// Tells of the datagrams that count for nothing: of the first ones each, and of the cameras among them, of the others
// their number. Thread-safe.
class CZQIgnoredDatagrams {
public:
    static constexpr std::uint64_t kMaxTold = 16;

    CZQIgnoredDatagrams() = default;
    CZQIgnoredDatagrams(const CZQIgnoredDatagrams&) = delete;
    CZQIgnoredDatagrams& operator=(const CZQIgnoredDatagrams&) = delete;
    ~CZQIgnoredDatagrams();

    void Add(const SUdpDatagram& datagram, const SUdpAnswer& answer);

private:
    std::atomic<std::uint64_t> m_count{0};
};

}  // namespace ZQAPI
