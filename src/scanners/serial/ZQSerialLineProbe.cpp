#include "scanners/serial/ZQSerialLineProbe.h"

#include <string>
#include <string_view>

#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQTextCommandCamera.h"
#include "scanners/serial/ZQSerialScanLines.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kQuestion = "SYST:ID?\n";
constexpr std::string_view kMaker = "Valdremonix";
constexpr std::size_t kMaxAnswerLength = 64;

// For what an accepted line still has to say; a command module waits no longer for a whole answer.
constexpr std::uint64_t kMaxRestMs = 1000;

// What came until the line feed, or as much of it as tells the maker.
std::string ReadAnswer(CZQComBase& channel, std::uint32_t byteTimeoutMs) {
    std::string answer;
    while (answer.size() < kMaxAnswerLength && !answer.ends_with('\n')) {
        char byte = 0;
        channel.Recv(&byte, 1, byteTimeoutMs, false);
        answer += byte;
    }
    return answer;
}

// Reads to the end of a line that was cut: what came later would be taken for the answer to the next command.
void SkipRest(CZQComBase& channel, std::uint32_t byteTimeoutMs) {
    const CZQStopWatch watch(true);
    char byte = 0;
    try {
        while (byte != '\n' && watch.GetElapsed() <= kMaxRestMs) {
            channel.Recv(&byte, 1, byteTimeoutMs, false);
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

bool IsCameraOn(const SSerialLineKind& kind, const CZQString& line) {
    std::unique_ptr<CZQComBase> channel;
    std::string answer;
    try {
        channel = kind.openLine(line);
        channel->Flush();
        channel->Send(kQuestion.data(), kQuestion.size());
        answer = ReadAnswer(*channel, kind.byteTimeoutMs);
    } catch (const CZQException& exception) {
        // Nobody is there: the usual case.
        DebugOutput("%s", FormatSilentLine({kind.names.scanner, line, exception.GetErrorNumber()}).c_str());
        return false;
    }
    if (answer.find(kMaker) == std::string::npos) {
        return false;
    }
    if (!answer.ends_with('\n')) {
        SkipRest(*channel, kind.byteTimeoutMs);
    }
    return true;
}

CZQDeviceInfo Identify(const SSerialLineKind& kind, const CZQString& line, std::uint32_t index) {
    CZQTextCommandCamera camera(kind.kit.GetCcmPath() + kind.commandModule, line);
    CZQDeviceInfo device;
    camera.ReadRecord(device, line, [&] { kind.chooseIAM(device, line); });
    SetFinder(device, kind.names, std::to_string(index));
    return device;
}

}  // namespace

std::optional<CZQDeviceInfo> ProbeSerialLine(const SSerialLineKind& kind, const CZQString& line,
                                             std::uint32_t index) {
    try {
        return IsCameraOn(kind, line) ? std::optional(Identify(kind, line, index)) : std::nullopt;
    } catch (CZQException& exception) {
        exception.SetExtraText("Address=%s; %s", line.c_str(), exception.GetExtraText().c_str());
        ReportRecovered(exception, ZQ_HERE(kind.names.scanMethod));
        return std::nullopt;
    }
}

}  // namespace ZQAPI
