#include "scanners/udp/ZQUdpAnswers.h"

#include <algorithm>
#include <cinttypes>
#include <utility>

#include "communication/ZQIpv4.h"
#include "communication/ZQUdpCameraAddress.h"
#include "foundation/ZQSystem.h"
#include "scanners/udp/ZQUdpScanLines.h"

namespace ZQAPI {

namespace {

// Why no command may be sent to the address; null when one may.
const char* WhyNotReachable(std::uint32_t address, const SUdpDatagram& datagram) {
    if (address == kNoAddressYet) {
        return datagram.localAddress.IsEmpty()
                   ? "a camera without an IP address is reached only through a network card of its own"
                   : nullptr;
    }
    if (!IsIpv4Unicast(address)) {
        return "the IP address is no single camera's";
    }
    if (IsIpv4Loopback(address) && !IsIpv4Loopback(datagram.sender)) {
        return "the IP address is this machine's own";
    }
    return nullptr;
}

// Anything may be in a datagram, and the line must stay one line.
CZQString Shown(std::string_view text) {
    CZQString shown;
    for (const char c : text) {
        const bool isPlain = c >= ' ' && c <= '~' && c != '\\';
        shown += isPlain ? CZQString(std::string(1, c))
                         : CZQString::Formatted("\\x%02X", static_cast<unsigned char>(c));
    }
    return shown;
}

}  // namespace

SUdpAnswer ReadUdpAnswer(const SUdpDatagram& datagram) {
    if (datagram.text.size() > kMaxUdpAnswerSize) {
        return {{}, "longer than an answer"};
    }
    std::string_view text = datagram.text.substr(0, datagram.text.find('\0'));
    if (text.size() <= kHardwareAddressLength || text[kHardwareAddressLength] != ':' || text.back() != '\n') {
        return {{}, "not an answer"};
    }
    text = text.substr(0, text.find_last_not_of('\n') + 1);
    const std::string_view hardwareAddress = text.substr(0, kHardwareAddressLength);
    if (!IsHardwareAddress(hardwareAddress)) {
        return {{}, "the hardware address is no camera's"};
    }
    const std::string_view ipAddress = text.substr(kHardwareAddressLength + 1);
    const auto parsed = ParseIpv4(ipAddress);
    if (!parsed) {
        return {{}, "not a complete IPv4 address"};
    }
    SUdpDeviceConnInfo camera{hardwareAddress, ipAddress, datagram.localAddress};
    if (const char* const whyNot = WhyNotReachable(*parsed, datagram)) {
        return {{}, whyNot, std::move(camera)};
    }
    return {std::move(camera)};
}

bool CZQUdpCameras::HasRoomFor(const SUdpDeviceConnInfo& camera) {
    if (m_heard.size() == kMaxCameras) {
        if (!std::exchange(m_isFull, true)) {
            DebugOutput("ZQSDK: !! %zu cameras heard, further ones are left out", kMaxCameras);
        }
        return false;
    }
    if (!camera.localAddress.IsEmpty()) {
        return true;
    }
    std::size_t& count = m_nofAlone[camera.ipAddress.str()];
    count = std::min(count + 1, kMaxOfAnAddress + 2);
    if (count == kMaxOfAnAddress + 1) {
        DebugOutput("ZQSDK: !! %zu cameras heard at %s, further ones are left out", kMaxOfAnAddress,
                    camera.ipAddress.c_str());
    }
    return count <= kMaxOfAnAddress;
}

CZQUdpCameras::EHeard CZQUdpCameras::Add(std::size_t card, SUdpDeviceConnInfo camera) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_heard.find(camera.hardwareAddress.view());
    if (found == m_heard.end()) {
        if (!HasRoomFor(camera)) {
            return EHeard::kTooMany;
        }
        std::string key = camera.hardwareAddress.str();
        m_heard.emplace(std::move(key), Heard{card, ++m_lastOrder, std::move(camera)});
        return EHeard::kFirst;
    }

    Heard& known = found->second;
    if (camera.ipAddress != known.camera.ipAddress && !std::exchange(known.camera.hasConflict, true)) {
        DebugOutput(
            "%s", FormatConflict({camera.hardwareAddress, known.camera.ipAddress, camera.ipAddress}).c_str());
    }
    if (card >= known.card) {
        if (card > known.card) {
            known.camera.otherLocalAddress = std::move(camera.localAddress);
        }
        return EHeard::kAgain;
    }
    camera.hasConflict = known.camera.hasConflict;
    camera.otherLocalAddress = std::move(known.camera.localAddress);
    known = {card, ++m_lastOrder, std::move(camera)};
    return EHeard::kOnEarlierCard;
}

std::vector<SUdpDeviceConnInfo> CZQUdpCameras::Take() {
    const std::lock_guard lock(m_mutex);
    std::vector<Heard> heard;
    heard.reserve(m_heard.size());
    for (auto& [hardwareAddress, entry] : m_heard) {
        heard.push_back(std::move(entry));
    }
    m_heard.clear();
    std::sort(heard.begin(), heard.end(), [](const Heard& left, const Heard& right) {
        return std::pair(left.card, left.order) < std::pair(right.card, right.order);
    });
    std::vector<SUdpDeviceConnInfo> cameras;
    cameras.reserve(heard.size());
    for (Heard& entry : heard) {
        cameras.push_back(std::move(entry.camera));
    }
    return cameras;
}

void CZQIgnoredDatagrams::Add(const SUdpDatagram& datagram, const SUdpAnswer& answer) {
    if (++m_count > kMaxTold) {
        return;
    }
    DebugOutput("ZQSDK: Answer from %s ignored, %s: '%s'", FormatIpv4(datagram.sender).c_str(), answer.whyNot,
                Shown(datagram.text).c_str());
    if (const auto& camera = answer.notReachable) {
        SHeardCamera heard{camera->hardwareAddress, camera->ipAddress, camera->localAddress};
        heard.reason = EWhyLeftOut::kNotReachable;
        heard.detail = answer.whyNot;
        DebugOutput("%s", FormatHeard(heard).c_str());
    }
}

CZQIgnoredDatagrams::~CZQIgnoredDatagrams() {
    if (m_count > kMaxTold) {
        DebugOutput("ZQSDK: %" PRIu64 " further answers ignored", m_count - kMaxTold);
    }
}

}  // namespace ZQAPI
