#include "scan/ScanReport.h"

#include <ZQAPI/ZQErrorText.h>

#include <algorithm>
#include <sstream>

#include "Records.h"
#include "Text.h"
#include "kit/ScanSettings.h"
#include "scan/HeardCameras.h"
#include "scan/ScanAdvice.h"

namespace ZQAPI::zqdev {

namespace {

std::string NameOf(const SAskedCard& card) {
    return card.card.IsEmpty() ? "the network card that the system chose" : card.card.str();
}

// Those of the hosts that were asked by their addresses, from which no camera answered.
std::vector<std::string> SilentHosts(const Kit& kit, const ScanNews& news) {
    std::vector<std::string> silent;
    if (news.cards.empty()) {  // nobody was
        return silent;
    }
    std::istringstream hosts(
        ReadScanSetting(kit.ApiIni(), FindSetting(kit, "ZQ_UDP.ScanHosts")).InUse().value_or(""));
    for (std::string host; std::getline(hosts, host, ';');) {
        const CZQString address = CZQString(host).Trim();
        const bool isHeard =
            std::any_of(news.cameras.begin(), news.cameras.end(),
                        [&](const SHeardCamera& camera) { return camera.ipAddress == address; });
        if (!isHeard) {
            silent.push_back(address.str());
        }
    }
    return silent;
}

// One that could not be used from the start is no news while cameras are found on others.
std::vector<Remark> CardRemarks(const std::vector<SAskedCard>& cards,
                                const std::vector<std::string>& silentHosts, bool isAnythingFound) {
    std::vector<Remark> remarks;
    std::vector<std::string> silent = silentHosts;
    for (const SAskedCard& card : cards) {
        const bool isFailure = ReasonIn(card.whyNot).number != 0;
        if (!card.isSent && (isFailure || !isAnythingFound)) {
            remarks.push_back({"The request was not sent on " + NameOf(card) + ": " + card.whyNot.str()});
        } else if (card.isSent && isFailure) {
            remarks.push_back({"On " + NameOf(card) + " the search ended early: " + card.whyNot.str()});
        }
        if (card.isSent && card.nofAnswers == 0 && silentHosts.empty()) {
            silent.push_back(NameOf(card));
        }
    }
    if (!silent.empty()) {
        remarks.push_back(
            {"Nothing answered " + std::string(silentHosts.empty() ? "on " : "from ") + Enumerate(silent)});
    }
    return remarks;
}

Json ErrorJson(const CZQString& failure) {
    if (failure.IsEmpty()) {
        return {};
    }
    const Reason reason = ReasonIn(failure);
    if (reason.number == 0) {
        return {{"number", {}}, {"name", {}}, {"text", ToJson(reason.text)}};
    }
    return {{"number", reason.number},
            {"name", ZQ_ErrorName(reason.number)},
            {"text", ToJson(reason.text.empty() ? ZQ_ErrorText(reason.number) : reason.text)}};
}

Json ScannersJson(const std::vector<SScannerOutcome>& scanners) {
    Json json = Json::Array();
    for (const SScannerOutcome& scanner : scanners) {
        json.Add({{"name", ToJson(scanner.scanner.view())},
                  {"found", scanner.nofFound},
                  {"error", ErrorJson(scanner.failure)},
                  {"milliseconds", scanner.elapsedMs}});
    }
    return json;
}

Json CardsJson(const std::vector<SAskedCard>& cards) {
    const auto orNull = [](const CZQString& text) { return text.IsEmpty() ? Json() : ToJson(text.view()); };
    Json json = Json::Array();
    for (const SAskedCard& card : cards) {
        json.Add({{"card", orNull(card.card)},
                  {"sent", card.isSent},
                  {"whyNot", orNull(card.whyNot)},
                  {"answers", card.nofAnswers},
                  {"ignored", card.nofIgnored}});
    }
    return json;
}

}  // namespace

ScanReport MakeScanReport(const Kit& kit, const ScanNews& news, bool isAnythingFound,
                          const std::vector<ZQDEVICEINFO>& listed, std::size_t width) {
    std::vector<SAskedCard> cards = news.cards;  // in the order in which their searches ended
    std::sort(cards.begin(), cards.end(), [](const SAskedCard& left, const SAskedCard& right) {
        return left.card.view() < right.card.view();
    });
    const HeardCameras cameras = ExplainCameras(kit, news, listed);
    const std::vector<Remark> nextSteps = isAnythingFound ? std::vector<Remark>() : NextSteps(kit, news);
    std::vector<Remark> all = cameras.leftOut;
    all.insert(all.end(), cameras.addresses.begin(), cameras.addresses.end());
    all.insert(all.end(), nextSteps.begin(), nextSteps.end());
    return {ToText("Left out", cameras.leftOut, width) + ToText("Addresses", cameras.addresses, width) +
                ToText("Network cards", CardRemarks(cards, SilentHosts(kit, news), isAnythingFound), width) +
                ToText("What to do next", nextSteps, width),
            ScannersJson(news.scanners), cameras.json, CardsJson(cards), ToJson(all)};
}

Failure NothingFound(const ScanNews& news, bool wasToBeSaved) {
    std::vector<std::string> failed;
    for (const SScannerOutcome& scanner : news.scanners) {
        if (!scanner.failure.IsEmpty()) {
            failed.push_back(scanner.scanner.str());
        }
    }
    const bool isFailed = !failed.empty() && failed.size() == news.scanners.size();
    const std::string saving =
        wasToBeSaved
            ? ", and nothing was saved: an empty list can't be loaded again; the saved list is as it was"
            : "";
    return Failure((isFailed         ? "the scan failed, every scanner did"
                    : failed.empty() ? "nothing was found"
                                     : "nothing was found, and " + Enumerate(failed) + " failed") +
                       saving,
                   isFailed ? ExitStatus::kFailed : ExitStatus::kNothingFound);
}

}  // namespace ZQAPI::zqdev
