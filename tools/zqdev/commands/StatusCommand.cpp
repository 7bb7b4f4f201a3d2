#include <algorithm>
#include <map>

#include "Progress.h"
#include "Text.h"
#include "commands/Commands.h"
#include "scan/ScanNews.h"

namespace ZQAPI::zqdev {

namespace {

struct State {
    const char* name = "";
    std::string address;  // now
    int error = 0;
};
constexpr const char* kOnline = "online";
constexpr const char* kMoved = "moved";
constexpr const char* kGone = "gone";
constexpr const char* kUnknown = "unknown";        // asking failed
constexpr const char* kUnchecked = "not checked";  // no scanner finds it

State StateOf(const ZQDEVICEINFO& saved, const ZQDEVICEINFO& now) {
    const std::string address(device::Text(now.UsedAddress));
    return {address == device::Text(saved.UsedAddress) ? kOnline : kMoved, address};
}

// Of a camera that was not found, where this went wrong on the way; 0: nothing did.
State GoneUnless(int error) {
    return error == 0 ? State{kGone, {}, ZQ_ERR_DEVICE_NOT_FOUND} : State{kUnknown, {}, error};
}

// The library re-checks one device at a time, whoever asks: that takes no longer than the camera's answer where there
// is one, and a scanner's whole time where there is none. A scan asks all cameras of its scanner side by side. So from
// the first one on that is gone, a scan tells of the others of its scanner.
class Check {
public:
    Check(Session& session, const std::vector<ZQDEVICEINFO>& devices)
        : m_session(session), m_devices(devices), m_states(devices.size()) {}

    std::vector<State> Run() {
        std::map<std::string, std::vector<std::size_t>> byScanner;
        for (std::size_t i = 0; i < m_devices.size(); ++i) {
            byScanner[std::string(device::Text(m_devices[i].UsedScanner))].push_back(i);
        }
        for (const auto& [scanner, indices] : byScanner) {
            if (scanner == ZQDEV_SCANNER_NAME_MANUAL) {
                for (const std::size_t i : indices) {
                    m_states[i] = {kUnchecked, {}};
                }
            } else {
                CheckAll(scanner, indices);
            }
        }
        return m_states;
    }

private:
    void CheckAll(const std::string& scannerName, const std::vector<std::size_t>& indices) {
        const auto scanner = device::ScannerFromName(scannerName);
        for (auto i = indices.begin(); i != indices.end(); ++i) {
            Recheck(*i);
            const std::vector<std::size_t> others(i + 1, indices.end());
            if (m_states[*i].name == kGone && !others.empty() && scanner && Scan(*scanner, others)) {
                return;
            }
        }
    }

    void Recheck(std::size_t index) {
        ZQDEVICEINFO now = m_devices[index];
        std::error_code error;
        ScanNews news;
        m_session.ListenDuring([&](std::string_view message) { news.Add(message); },
                               [&] {
                                   WithProgress(m_session.GetConsole(),
                                                "Asking for " + Printable(device::Text(now.DeviceID)) + ", " +
                                                    std::to_string(++m_nofAsked) + " of " +
                                                    std::to_string(m_devices.size()),
                                                [&] { m_session.GetLibrary().Rescan(now, error); });
                               });
        m_states[index] = !error ? StateOf(m_devices[index], now)
                          : error == ZQ_ERR_DEVICE_NOT_FOUND
                              ? GoneUnless(news.WhatWentWrong(device::Text(now.UsedAddress)))
                              : State{kUnknown, {}, error.value()};
    }

    // False when the scan failed, which says nothing of any camera.
    bool Scan(device::Scanner scanner, const std::vector<std::size_t>& indices) {
        ScanNews news;
        std::error_code error;
        news.whyUnheard =
            m_session.ListenDuring([&](std::string_view message) { news.Add(message); },
                                   [&] {
                                       WithProgress(m_session.GetConsole(),
                                                    "Looking for " + CountText(indices.size()) + " of " +
                                                        std::string(device::ScannerName(scanner)),
                                                    [&] { m_session.GetLibrary().Scan(scanner, error); });
                                   });
        const bool hasFailed = std::any_of(news.scanners.begin(), news.scanners.end(),
                                           [](const auto& outcome) { return !outcome.failure.IsEmpty(); });
        if (error || hasFailed || !news.whyUnheard.empty()) {
            return false;
        }
        m_nofAsked += indices.size();
        const std::vector<ZQDEVICEINFO> found = m_session.GetLibrary().Devices();
        for (const std::size_t i : indices) {
            const ZQDEVICEINFO* const now = FindById(found, device::Text(m_devices[i].DeviceID));
            m_states[i] = now != nullptr
                              ? StateOf(m_devices[i], *now)
                              : GoneUnless(news.WhatWentWrong(device::Text(m_devices[i].UsedAddress)));
        }
        return true;
    }

    Session& m_session;
    const std::vector<ZQDEVICEINFO>& m_devices;
    std::vector<State> m_states;
    std::size_t m_nofAsked = 0;
};

std::string Summary(const std::vector<State>& states) {
    std::vector<std::string> parts;
    for (const char* const name : {kOnline, kMoved, kGone, kUnknown, kUnchecked}) {
        const auto count = std::count_if(states.begin(), states.end(),
                                         [&](const State& state) { return state.name == std::string(name); });
        if (count > 0) {
            parts.push_back(std::to_string(count) + " " + name);
        }
    }
    return Enumerate(parts);
}

ExitStatus Status(Session& session) {
    const std::vector<ZQDEVICEINFO> devices = session.GetLibrary().Devices();
    const auto start = std::chrono::steady_clock::now();
    const std::vector<State> states = Check(session, devices).Run();
    const auto time =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);

    Table table({{"NAME"}, {"ID", true}, {"STATE", true}, {"SAVED ADDRESS"}, {"ADDRESS NOW"}});
    Json json = Json::Array();
    std::vector<std::string> failures;
    bool isAllOnline = true;
    for (std::size_t i = 0; i < devices.size(); ++i) {
        const State& state = states[i];
        const std::string id(device::Text(devices[i].DeviceID));
        table.AddRow({Printable(device::Text(devices[i].Name)), Printable(id), state.name,
                      Printable(device::Text(devices[i].UsedAddress)), Printable(state.address)});
        Json row = ToJson(devices[i]);
        row.Set("state", state.name);
        row.Set("addressNow", state.address.empty() ? Json() : ToJson(state.address));
        row.Set("error", state.error);
        json.Add(row);
        isAllOnline = isAllOnline && (state.name == kOnline || state.name == kUnchecked);
        if (state.name == kUnknown) {
            failures.push_back(FailureLine(
                "can't re-check device '" + id + "'", state.error,
                Advice(Subject::kRescan, state.error, session.GetKit(), session.GetKit().ApiIni())));
        } else if (state.name == kMoved) {
            failures.push_back(
                Filled("'{id}' has moved to {address}; keep that with \"{zqdev rescan ID --save}\"",
                       session.GetKit(), {{"id", id}, {"address", state.address}, {"ID", Quoted(id, "ID")}}));
        } else if (state.name == kGone) {
            failures.push_back("'" + id +
                               "' is gone: " + Advice(Subject::kRescan, state.error, session.GetKit(), {}));
        }
    }
    session.Show({{"devices", json}, {"elapsedMs", time.count()}},
                 table.ToText(Console::ResultColumns(Table::kUsualWidth)) + Summary(states) + "; asked for " +
                     Seconds(time) + ".\n");
    for (const std::string& failure : failures) {
        session.GetConsole().PrintError(failure);
    }
    return isAllOnline ? ExitStatus::kDone : ExitStatus::kFailed;
}

}  // namespace

void AddStatusCommand(Command& app, Session& session) {
    AddCommand(
        app, session, "status",
        "Ask for every saved device: online, moved or gone; exit status 0 when all are online, else 1. "
        "Devices of SCANNER_MANUAL are listed and not asked for",
        Status);
}

}  // namespace ZQAPI::zqdev
