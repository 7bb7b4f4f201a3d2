#include "scanners/udp/ZQScanIFZqUDP.h"

#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQUpdateByScan.h"
#include "scanners/udp/ZQNetworkCards.h"
#include "scanners/udp/ZQUdpScanLines.h"

namespace ZQAPI {

namespace {

constexpr const char* kConstructor = "CZQScanIFZqUDP::CZQScanIFZqUDP";

CZQString CardComplaint(const CZQString& piece) {
    return piece.IsEmpty() || piece.HasControlCharacter() ? "'" + piece + "' is no network card's name" : "";
}

CZQString HostComplaint(const CZQString& piece) {
    const auto address = ParseIpv4(piece.view());
    return address && IsIpv4Unicast(*address)
               ? CZQString()
               : "'" + piece + "' is no complete IPv4 address of a single machine";
}

using Settings = SUdpDiscoverySettings;
constexpr SSettingRow kSettings[] = {
    Setting<&Settings::port>("IPPort",
                             "port that the discovery request goes to; outside 0 to 65535 the scan fails",
                             {.refusedBy = kConstructor}),
    Setting<&Settings::nofCycles>("NofScanCycles", "how often it is sent; 0: never, nothing is found"),
    Setting<&Settings::scanTimeMs>("ScanTimeMs", "listening time in ms, shared equally by the cycles"),
    Setting<&Settings::bindToNetworkCard>(
        "BindToNetworkCard", "true: one broadcast on each suitable network card, from a socket bound to it"),
    Setting<&Settings::networkCards>(
        "NetworkCards",
        "network cards, by name or address, separated by `;`, 32 at most: the scan is bound to these alone",
        {.refusedBy = kConstructor,
         .maxPieces = Settings::kMaxNetworkCards,
         .getPieceComplaint = CardComplaint}),
    Setting<&Settings::scanHosts>(
        "ScanHosts",
        "IPv4 addresses, separated by `;`, 255 at most: the request goes to each of these instead of everybody",
        {.refusedBy = kConstructor,
         .maxPieces = Settings::kMaxScanHosts,
         .getPieceComplaint = HostComplaint}),
};

EWhyLeftOut ReasonOf(const CZQException& exception) {
    switch (exception.GetErrorNumber()) {
        case ZQ_ERR_COM_TIMEOUT:
            return EWhyLeftOut::kSilent;
        case ZQ_ERR_COM_SEND:
            return EWhyLeftOut::kNotReachable;
        case ZQ_ERR_BAD_VALUE:
        case ZQ_ERR_TEXT_TOO_LONG:
            return EWhyLeftOut::kBadText;
        default:
            return EWhyLeftOut::kFailed;
    }
}

}  // namespace

CZQScanIFZqUDP::CZQScanIFZqUDP(const CZQSdkPaths& kit, const CZQString& section)
    : m_settings(ReadSettings<Settings>(kit.GetApiIniPath(), section, kSettings)),
      m_search(std::make_shared<CZQUdpSearch>(kit, m_settings, CZQUdpSearch::Clock::now() + kTimeLimit)) {}

std::span<const SSettingRow> CZQScanIFZqUDP::GetSettings() {
    return kSettings;
}

void CZQScanIFZqUDP::Scan(CZQDeviceList& found) {
    DebugOutput("ZQSDK: Start scan with UDP");
    const CZQUdpSearch::Cameras cameras = m_search->Run(m_wantedId);
    // Those that were found first, for there may not be much time left.
    for (const auto& [answer, camera] : cameras) {
        if (const auto device = camera->GetDevice()) {
            found.AddDevice(*device, false);
        }
    }
    // A re-check that has found its camera has asked the others for nothing, and needs no further card.
    const bool isWantedFound = !m_wantedId.IsEmpty() && found.FindDeviceByID(m_wantedId) >= 0;
    if (!isWantedFound) {
        Report(cameras);
    }
    DebugOutput("ZQSDK: Scan with UDP finished nofFoundDevices=%d", static_cast<int>(found.GetCount()));
    if (!isWantedFound) {
        RequireCards();
    }
}

// What the other cards have found counts all the same.
void CZQScanIFZqUDP::RequireCards() const {
    for (const CZQString& name : m_settings.networkCards) {
        const CZQString complaint = NetworkCardComplaint(name, m_settings.scanHosts.GetSize() == 0);
        if (!complaint.IsEmpty()) {
            ZQ_THROW("CZQScanIFZqUDP::Scan", ZQ_ERR_BAD_VALUE, "NetworkCards: %s", complaint.c_str());
        }
    }
}

void CZQScanIFZqUDP::Report(const CZQUdpSearch::Cameras& cameras) {
    std::size_t nofUnfinished = 0;
    for (const auto& [answer, camera] : cameras) {
        SHeardCamera heard{answer.hardwareAddress, answer.ipAddress, answer.localAddress,
                           answer.otherLocalAddress};
        if (const auto device = camera->GetDevice()) {
            heard.deviceId = device->GetDeviceID();
        }
        try {
            camera->RethrowFailure();
            if (heard.deviceId.IsEmpty()) {
                heard.reason = EWhyLeftOut::kNoTime;
                ++nofUnfinished;
            }
        } catch (CZQException& exception) {
            const CZQString unknownType = camera->GetUnknownType();
            heard.reason = unknownType.IsEmpty() ? ReasonOf(exception) : EWhyLeftOut::kUnknownType;
            heard.detail = unknownType.IsEmpty() ? exception.ToReason() : unknownType;
            ReportRecovered(exception, camera->ToText(), ZQ_HERE("CZQScanIFZqUDP::Scan"));
        }
        DebugOutput("%s", FormatHeard(heard).c_str());
    }
    if (nofUnfinished > 0) {
        CZQException exception(ZQ_HERE("CZQScanIFZqUDP::Scan"), ZQ_ERR_COM_TIMEOUT,
                               "%zu cameras could not be identified within the scan's time", nofUnfinished);
        ReportRecovered(exception, ZQ_HERE("CZQScanIFZqUDP::Scan"));
    }
}

void CZQScanIFZqUDP::Update(CZQDeviceInfo& device) {
    m_wantedId = device.GetDeviceID();
    UpdateByScan(*this, device, ZQ_HERE("CZQScanIFZqUDP::Update"));
}

}  // namespace ZQAPI
