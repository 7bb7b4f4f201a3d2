#include "scanners/ZQScanIFZqUDP.h"

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQUdpScanLines.h"
#include "scanners/ZQUpdateByScan.h"

namespace ZQAPI {

namespace {

using Settings = SUdpDiscoverySettings;
constexpr SSettingRow kSettings[] = {
    Setting<&Settings::port>("IPPort",
                             "port that the discovery request goes to; outside 0 to 65535 the scan fails",
                             {.refusedBy = "CZQScanIFZqUDP::CZQScanIFZqUDP"}),
    Setting<&Settings::nofCycles>("NofScanCycles", "how often it is sent; 0: never, nothing is found"),
    Setting<&Settings::scanTimeMs>("ScanTimeMs", "listening time in ms, shared equally by the cycles"),
    Setting<&Settings::bindToNetworkCard>(
        "BindToNetworkCard", "true: one broadcast on each suitable network card, from a socket bound to it"),
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
    : m_search(std::make_shared<CZQUdpSearch>(kit,
                                              ReadSettings<Settings>(kit.GetApiIniPath(), section, kSettings),
                                              CZQUdpSearch::Clock::now() + kTimeLimit)) {}

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
    // A re-check that has found its camera has asked the others for nothing.
    if (m_wantedId.IsEmpty() || found.FindDeviceByID(m_wantedId) < 0) {
        Report(cameras);
    }
    DebugOutput("ZQSDK: Scan with UDP finished nofFoundDevices=%d", static_cast<int>(found.GetCount()));
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
