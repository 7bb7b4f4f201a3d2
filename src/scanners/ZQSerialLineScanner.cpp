#include "scanners/ZQSerialLineScanner.h"

#include <string_view>

#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQTextCommandCamera.h"
#include "scanners/ZQUpdateByScan.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kQuestion = "SYST:ID?\n";
constexpr std::string_view kMaker = "Valdremonix";
constexpr std::size_t kMaxAnswerLength = 64;

// For what an accepted line still has to say; a command module waits no longer for a whole answer.
constexpr std::uint64_t kMaxRestMs = 1000;

}  // namespace

void CZQSerialLineScanner::Scan(CZQDeviceList& found) {
    const CZQStringArray lines = ListLines();
    for (std::uint32_t i = 0; i < lines.GetSize(); ++i) {
        const CZQString& line = lines.GetAt(i);
        try {
            if (IsCameraOn(line)) {
                found.AddDevice(Identify(line, i), false);
            }
        } catch (CZQException& exception) {
            exception.SetExtraText("Address=%s; %s", line.c_str(), exception.GetExtraText().c_str());
            ReportRecovered(exception, ZQ_HERE(m_names.scanMethod));
        }
    }
}

void CZQSerialLineScanner::Update(CZQDeviceInfo& device) {
    UpdateByScan(*this, device, ZQ_HERE(m_names.updateMethod));
    if (!device.GetIAM().IsEmpty() && device.GetIAM() == m_names.iam) {
        device.SetIAMAddress(device.GetUsedAddress());
    }
}

bool CZQSerialLineScanner::IsCameraOn(const CZQString& line) {
    std::unique_ptr<CZQComBase> channel;
    std::string answer;
    try {
        channel = OpenLine(line);
        channel->Flush();
        channel->Send(kQuestion.data(), kQuestion.size());
        answer = ReadAnswer(*channel);
    } catch (const CZQException& exception) {
        // Nobody is there: the usual case, worth a word to whoever watches and nothing more.
        DebugOutput("ZQSDK: %s: no camera on '%s' (%d)", m_names.scanner, line.c_str(),
                    exception.GetErrorNumber());
        return false;
    }
    if (answer.find(kMaker) == std::string::npos) {
        return false;
    }
    if (!answer.ends_with('\n')) {
        SkipRest(*channel);
    }
    return true;
}

// What came until the line feed, or as much of it as tells the maker.
std::string CZQSerialLineScanner::ReadAnswer(CZQComBase& channel) const {
    std::string answer;
    while (answer.size() < kMaxAnswerLength && !answer.ends_with('\n')) {
        char byte = 0;
        channel.Recv(&byte, 1, m_byteTimeoutMs, false);
        answer += byte;
    }
    return answer;
}

// Reads to the end of a line that was cut: what came later would be taken for the answer to the next command.
void CZQSerialLineScanner::SkipRest(CZQComBase& channel) const {
    const CZQStopWatch watch(true);
    char byte = 0;
    try {
        while (byte != '\n' && watch.GetElapsed() <= kMaxRestMs) {
            channel.Recv(&byte, 1, m_byteTimeoutMs, false);
        }
    } catch (const CZQException& exception) {
        if (exception.GetErrorNumber() != ZQ_ERR_COM_TIMEOUT) {
            throw;
        }
        return;  // quiet without a line feed: nothing more will come
    }
    if (byte != '\n') {
        ZQ_THROW("CZQSerialLineScanner::SkipRest", ZQ_ERR_COM_TIMEOUT, "The answer does not end");
    }
}

CZQDeviceInfo CZQSerialLineScanner::Identify(const CZQString& line, std::uint32_t index) const {
    CZQTextCommandCamera camera(m_commandModule, line);
    CZQDeviceInfo device;
    camera.ReadRecord(device, line, [&] { ChooseIAM(device, line); });
    SetFinder(device, m_names, std::to_string(index));
    return device;
}

}  // namespace ZQAPI
