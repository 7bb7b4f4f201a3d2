#include "scan/ScanNews.h"

#include <algorithm>

#include "foundation/ZQDebugLine.h"

namespace ZQAPI::zqdev {

void ScanNews::Add(std::string_view message) {
    if (auto camera = ParseHeard(message)) {
        // One that commands can't reach is told of at each of its answers.
        const bool isRepeated = camera->reason == EWhyLeftOut::kNotReachable &&
                                std::find(cameras.begin(), cameras.end(), *camera) != cameras.end();
        if (!isRepeated) {
            cameras.push_back(std::move(*camera));
        }
    } else if (auto conflict = ParseConflict(message)) {
        conflicts.push_back(std::move(*conflict));
    } else if (auto card = ParseAsked(message)) {
        cards.push_back(std::move(*card));
    } else if (auto scanner = ParseScannerOutcome(message)) {
        scanners.push_back(std::move(*scanner));
    } else if (auto line = ParseSilentLine(message)) {
        silentLines.push_back(std::move(*line));
    }
}

int ScanNews::WhatWentWrong(std::string_view address) const {
    int number = 0;
    const auto note = [&](const CZQString& reason) {
        number = number != 0 ? number : ReasonIn(reason).number;
    };
    for (const SScannerOutcome& scanner : scanners) {
        note(scanner.failure);
    }
    for (const SAskedCard& card : cards) {
        note(card.whyNot);
    }
    for (const SHeardCamera& camera : cameras) {
        if (camera.reason == EWhyLeftOut::kFailed && camera.ipAddress.view() == address) {
            note(camera.detail);
        }
    }
    return number;
}

Reason ReasonIn(const CZQString& text) {
    auto rest = RestBehind("error -", text.view());
    const auto number = rest ? ParseCount(TakeUntil(" ", *rest)) : std::nullopt;
    return number ? Reason{-static_cast<int>(*number), *rest} : Reason{0, text.view()};
}

}  // namespace ZQAPI::zqdev
