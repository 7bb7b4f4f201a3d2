#include "scanners/ZQSerialLineScanner.h"

#include <string_view>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQTextCommandCamera.h"
#include "scanners/ZQUpdateByScan.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kQuestion = "SYST:ID?\n";
constexpr std::string_view kMaker = "Valdremonix";
constexpr std::size_t kMaxAnswerLength = 64;

}  // namespace

void CZQSerialLineScanner::Scan(CZQDeviceList& found) {
    const CZQStringArray lines = ListLines();
    for (std::uint32_t i = 0; i < lines.GetSize(); ++i) {
        const CZQString& line = lines.GetAt(i);
        if (!IsCameraOn(line)) {
            continue;
        }
        try {
            found.AddDevice(Identify(line, i), false);
        } catch (CZQException& exception) {
            ReportRecovered(exception, ZQ_HERE(m_names.scanMethod));
        }
    }
}

void CZQSerialLineScanner::Update(CZQDeviceInfo& device) {
    UpdateByScan(*this, device, ZQ_HERE(m_names.updateMethod));
}

bool CZQSerialLineScanner::IsCameraOn(const CZQString& line) {
    try {
        const std::unique_ptr<CZQComBase> channel = OpenLine(line);
        channel->Flush();
        channel->Send(kQuestion.data(), kQuestion.size());
        return ReadAnswer(*channel).Contains(kMaker);
    } catch (const CZQException& exception) {
        // Nobody is there: the usual case, worth a word to whoever watches and nothing more.
        DebugOutput("ZQSDK: %s: no camera on '%s' (%d)", m_names.scanner, line.c_str(),
                    exception.GetErrorNumber());
        return false;
    }
}

// What came until the line feed, or as much as a camera would ever say.
CZQString CZQSerialLineScanner::ReadAnswer(CZQComBase& channel) const {
    std::string answer;
    while (answer.size() < kMaxAnswerLength && !answer.ends_with('\n')) {
        char byte = 0;
        channel.Recv(&byte, 1, m_byteTimeoutMs, false);
        answer += byte;
    }
    return answer;
}

CZQDeviceInfo CZQSerialLineScanner::Identify(const CZQString& line, std::uint32_t index) const {
    CZQTextCommandCamera camera(m_names.commandModule, line);
    CZQDeviceInfo device;
    device.SetName(CZQString::Formatted("_%s.%u", m_names.scanner, index));
    camera.ReadIdentity(device);
    device.SetUsedScanner(m_names.scanner);
    device.SetUsedAddress(line);
    device.SetCCM(m_names.ccm);
    device.SetCCMAddress(line);
    ChooseIAM(device, line);
    camera.ReadFirmwareVersion(device);
    camera.Close();
    return device;
}

}  // namespace ZQAPI
