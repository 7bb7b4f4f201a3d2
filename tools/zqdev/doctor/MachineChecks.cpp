// What this user may do on this machine.
#include <algorithm>
#include <sstream>

#include "Text.h"
#include "communication/ZQComICMPPing.h"
#include "communication/ZQComUDP.h"
#include "communication/ZQSerialPortNumber.h"
#include "doctor/Finding.h"
#include "foundation/ZQException.h"
#include "platform/Process.h"
#include "platform/SerialPort.h"
#include "tools/platform/SerialAdapters.h"
#include "tools/platform/SystemSetup.h"

namespace ZQAPI::zqdev::doctor {

namespace {

std::string Number(std::uint64_t number) {
    return std::to_string(number);
}

// What a socket is really given counts; the machine's limit says how to get more.
Findings CheckReceiveBuffer(const Patient& patient) {
    constexpr std::uint32_t kWanted = CZQComUDP::kMaxBurst * CZQComUDP::kQueuedAnswerSize;
    constexpr std::uint32_t kManyCameras = 256;
    const CZQComWs2DllInit sockets;
    platform::UdpSocket socket;
    platform::SystemErrorCode error = 0;
    const std::uint32_t granted =
        socket.Open(error) ? socket.SetReceiveBuffer(kWanted, error).value_or(0) : 0;
    const std::uint32_t answers = granted / CZQComUDP::kQueuedAnswerSize;
    const auto limit = platform::ReceiveQueueLimit();
    const std::string text = "holds " + Number(std::min(answers, CZQComUDP::kMaxBurst)) +
                             " answers that come at once" +
                             (limit ? " (net.core.rmem_max is " + Number(*limit) + ")" : "");
    if (answers >= kManyCameras || !patient.usesNetwork) {
        return {{State::kOk, text, {}}};
    }
    // The system gives twice what it is asked for.
    return {{State::kWarn, text,
             limit ? Filled(Fix::kReceiveBuffer, patient.kit, {{"bytes", Number(kWanted / 2)}}) : ""}};
}

Findings CheckEchoRequests(const Patient& patient) {
    constexpr std::uint32_t kLimitMs = 1000;
    try {
        CZQComICMPPing().Ping("127.0.0.1", kLimitMs);
        return {{State::kOk, "this user may send them", {}}};
    } catch (const CZQException& exception) {
        return {{State::kWarn,
                 "this user may not send them (" + Printable(exception.GetExtraText().view()) +
                     "), so set-ip can't tell whether an address is free",
                 Filled(Fix::kEchoRequests, patient.kit)}};
    }
}

Finding DeniedPort(const Patient& patient, State state, const std::string& device,
                   const platform::DeviceAccess& access) {
    std::string user;
    const std::string group = Printable(access.group);
    return {
        state,
        "this user may not open " + Printable(device) + (group.empty() ? "" : " (group " + group + ")"),
        group.empty()
            ? Filled(Fix::kUnreadable, patient.kit)
            : Filled(Fix::kNoPermission, patient.kit,
                     {{"group", group},
                      {"user", platform::GetEnvironmentText("USER", user) ? Quoted(user, "USER") : "USER"}})};
}

// The ports that a scan is to try, and the others.
Findings CheckSerialPorts(const Patient& patient) {
    constexpr const char* kSection = "DeviceScanner." ZQDEV_SCANNER_NAME_ZQ_RS232;
    const bool isUsed = patient.IsActive(ZQDEV_SCANNER_NAME_ZQ_RS232);
    std::vector<std::uint32_t> wanted;
    std::istringstream list(patient.Setting(kSection, "ScanCOMPorts"));
    for (std::string text; std::getline(list, text, ';');) {
        if (const auto number = ParseSerialPortNumber(CZQString(text).Trim())) {
            wanted.push_back(*number);
        }
    }
    Findings findings;
    if (isUsed && wanted.empty()) {
        findings.push_back({State::kBad, "SCANNER_ZQ_RS232 is active and ScanCOMPorts names no port",
                            Filled(Fix::kNoPortsNamed, patient.kit)});
    }
    std::string names;
    for (const platform::SerialPortName& port : platform::ListSerialPorts()) {
        const bool isWanted = isUsed && std::erase(wanted, port.number) != 0;
        const platform::DeviceAccess access = platform::GetDeviceAccess(port.device);
        if (access.isAllowed) {
            names += (names.empty() ? "" : ", ") + ("COM" + Number(port.number));
        } else {
            findings.push_back(DeniedPort(patient, patient.TroubleFor(isWanted), port.device, access));
        }
    }
    for (const platform::SerialAdapter& adapter : platform::ListSerialAdapters()) {
        const platform::DeviceAccess access = platform::GetDeviceAccess(adapter.device);
        if (!access.isAllowed) {
            findings.push_back(DeniedPort(patient, State::kWarn, adapter.device, access));
        }
    }
    for (const std::uint32_t number : wanted) {
        if (isUsed) {
            findings.push_back({State::kBad,
                                "ScanCOMPorts names COM" + Number(number) + ", which is not there",
                                Filled(Fix::kNoSuchPort, patient.kit)});
        }
    }
    if (findings.empty() || !names.empty()) {
        findings.insert(findings.begin(), {State::kOk, names.empty() ? "there are none" : names, {}});
    }
    return findings;
}

}  // namespace

const std::vector<Check> kMachineChecks = {
    {"receive buffer", CheckReceiveBuffer},
    {"echo requests", CheckEchoRequests},
    {"serial ports", CheckSerialPorts},
};

}  // namespace ZQAPI::zqdev::doctor
