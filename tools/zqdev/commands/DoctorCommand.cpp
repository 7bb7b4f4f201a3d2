#include <algorithm>

#include "Text.h"
#include "commands/Commands.h"
#include "doctor/Finding.h"
#include "foundation/ZQException.h"

namespace ZQAPI::zqdev {

namespace {

constexpr const char* kStates[] = {"ok", "warn", "bad"};

constexpr std::size_t kStateWidth = 6;
constexpr std::size_t kTextColumn = 22;

std::string Padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string FindingText(const doctor::Check& check, const doctor::Finding& finding) {
    const std::string title = Padded(kStates[static_cast<std::size_t>(finding.state)], kStateWidth) +
                              Padded(check.name, kTextColumn - kStateWidth);
    const std::string blank(kTextColumn, ' ');
    const std::size_t width = Console::ResultColumns();
    return Wrapped(finding.text, title, blank, width) +
           (finding.fix.empty() ? "" : Wrapped("Fix: " + finding.fix, blank, blank, width));
}

// A check that can't be made is a finding too.
doctor::Findings Run(const doctor::Check& check, const doctor::Patient& patient) {
    try {
        return check.run(patient);
    } catch (const CZQException& exception) {
        return {{doctor::State::kWarn,
                 "can't be checked: error " + std::to_string(exception.GetErrorNumber()) + ", " +
                     Printable(exception.GetExtraText().view()),
                 {}}};
    } catch (const std::exception& exception) {
        return {{doctor::State::kWarn, std::string("can't be checked: ") + Printable(exception.what()), {}}};
    }
}

ExitStatus Doctor(Session& session) {
    const doctor::Patient patient(session.GetKit());
    Json json = Json::Array();
    auto worst = doctor::State::kOk;
    for (const auto* const checks : {&doctor::kNetworkChecks, &doctor::kMachineChecks, &doctor::kKitChecks}) {
        for (const doctor::Check& check : *checks) {
            for (const doctor::Finding& finding : Run(check, patient)) {
                worst = std::max(worst, finding.state);
                json.Add({{"check", check.name},
                          {"state", kStates[static_cast<std::size_t>(finding.state)]},
                          {"text", ToJson(finding.text)},
                          {"fix", ToJson(finding.fix)}});
                // At once: the next check may take its time.
                session.ShowText(FindingText(check, finding));
            }
        }
    }
    session.Show(json, "");
    return worst == doctor::State::kBad ? ExitStatus::kFailed : ExitStatus::kDone;
}

}  // namespace

void AddDoctorCommand(Command& app, Session& session) {
    AddCommand(
        app, session, "doctor",
        "Look for what keeps cameras from being found or the list from being saved, and say what mends it; "
        "changes nothing",
        Doctor);
}

}  // namespace ZQAPI::zqdev
