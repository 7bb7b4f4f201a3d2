// zqcamsim: simulated network cameras from the command line.
#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ZQSimIpv4.h"
#include "ZQSimUdpServer.h"
#include "foundation/ZQException.h"

namespace ZQAPI::sim {

namespace {

// Set by a signal, or by the end of standard input.
std::atomic<bool> g_stop{false};
static_assert(std::atomic<bool>::is_always_lock_free);

struct Options {
    std::size_t count = 3;
    std::string firstAddress = "127.0.0.11";
    std::string mask = "255.255.255.0";
    std::string deviceType;
    std::string firstHardwareAddress;
    CZQSimUdpSettings settings;

    CZQSimFaults faults;
    std::vector<double> commandDelay;    // ms: fixed, or from and to
    std::vector<double> discoveryDelay;  // ms
    double requestLoss = 0;
    double answerLoss = 0;
    double loss = 0;
    double duplicates = 0;
    bool late = false;
    std::vector<std::size_t> onlyCameras;  // counted from 1; empty: all

    double runForSeconds = 0;
    bool untilEof = false;
};

const std::map<std::string, EAnswerForm> kForms = {
    {"proper", EAnswerForm::kProper},
    {"no-colon", EAnswerForm::kNoColon},
    {"too-short", EAnswerForm::kTooShort},
    {"too-long", EAnswerForm::kTooLong},
    {"empty", EAnswerForm::kEmpty},
    {"wrong-address", EAnswerForm::kWrongAddress},
    {"control-characters", EAnswerForm::kControlCharacters},
};

const CLI::Validator kIpv4Address(
    [](std::string& text) { return ParseIpv4(text) ? std::string() : text + " is no IPv4 address"; }, "IPV4");

const CLI::Validator kHardwareAddress(
    [](std::string& text) {
        const bool valid =
            text.size() == 12 && text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
        return valid ? std::string() : text + " is no hardware address";
    },
    "DIGITS");

void AddCameraOptions(CLI::App& app, Options& options) {
    std::string types;
    for (const std::string& type : KnownDeviceTypes()) {
        types += " " + type;
    }
    app.add_option("--count", options.count, "How many cameras")
        ->check(CLI::Range(1, 4096))
        ->capture_default_str();
    app.add_option("--first-address", options.firstAddress,
                   "The first camera's IP address; the others count up from it")
        ->check(kIpv4Address)
        ->capture_default_str();
    app.add_option(
           "--first-hardware-address", options.firstHardwareAddress,
           "Twelve hexadecimal digits, for the first camera; the others count up from it, and the serial "
           "numbers follow")
        ->check(kHardwareAddress);
    app.add_option("--mask", options.mask, "The subnet mask that the cameras report")
        ->check(kIpv4Address)
        ->capture_default_str();
    app.add_option("--type", options.deviceType,
                   "Device type of all cameras. Without it they are, in turn:" + types);
    app.add_option(
        "--interface", options.settings.interfaceName,
        "Add the cameras' addresses to this network interface with the command `ip`, and take them off "
        "again. Without it the addresses must be this machine's already");
    app.add_option("--discovery-port", options.settings.discoveryPort, "UDP port of discovery")
        ->capture_default_str();
    app.add_option("--command-port", options.settings.commandPort, "UDP port of commands")
        ->capture_default_str();
}

std::string FormNames() {
    std::string names;
    for (const auto& [name, form] : kForms) {
        names += (names.empty() ? "" : "|") + name;
    }
    return names;
}

void AddFaultOptions(CLI::App& app, Options& options) {
    const std::string group = "Faults";
    const auto share = CLI::Range(0.0, 1.0);
    CZQSimPortFaults& discovery = options.faults.discovery;
    CZQSimPortFaults& command = options.faults.command;
    app.add_option("--latency", options.commandDelay,
                   "Milliseconds until a command is answered: MS, or FROM TO")
        ->expected(1, 2)
        ->check(CLI::NonNegativeNumber)
        ->group(group);
    app.add_option("--discovery-latency", options.discoveryDelay, "The same for discovery requests")
        ->expected(1, 2)
        ->check(CLI::NonNegativeNumber)
        ->group(group);
    app.add_option("--loss", options.loss, "Share of requests, and of answers, that get lost: 0 to 1")
        ->check(share)
        ->group(group);
    app.add_option("--request-loss", options.requestLoss, "Share of requests alone")
        ->check(share)
        ->group(group);
    app.add_option("--answer-loss", options.answerLoss, "Share of answers alone")->check(share)->group(group);
    app.add_option("--duplicates", options.duplicates, "Share of answers that are sent twice")
        ->check(share)
        ->group(group);
    app.add_option("--discovery-answer", discovery.form, "What answers to discovery look like")
        ->transform(CLI::CheckedTransformer(kForms))
        ->option_text(FormNames())
        ->group(group);
    app.add_option("--command-answer", command.form, "What answers to commands look like")
        ->transform(CLI::CheckedTransformer(kForms))
        ->option_text(FormNames())
        ->group(group);
    app.add_option("--long-bytes", discovery.longAnswerBytes, "Size in bytes of a too-long answer")
        ->check(CLI::Range(64, 60000))
        ->capture_default_str()
        ->group(group);
    app.add_flag("--proper-follows", discovery.properFollows, "A proper answer comes right behind a bad one")
        ->group(group);
    app.add_flag("--silent", command.silent, "Commands are not answered; discovery is")->group(group);
    app.add_flag("--late", options.late, "Commands are answered after the sender has given up")->group(group);
    app.add_option("--only", options.onlyCameras, "The faults are those of these cameras, counted from 1")
        ->check(CLI::PositiveNumber)
        ->group(group);
    app.add_option("--seed", options.settings.seed, "Same seed, same run")
        ->capture_default_str()
        ->group(group);
}

void AddRunOptions(CLI::App& app, Options& options) {
    app.add_option("--run-for", options.runForSeconds, "End after this many seconds")
        ->check(CLI::PositiveNumber);
    app.add_flag("--until-eof", options.untilEof, "End when standard input ends");
}

CZQSimDelay DelayOf(const std::vector<double>& milliseconds) {
    if (milliseconds.empty()) {
        return {};
    }
    const auto toTime = [](double ms) {
        return std::chrono::duration_cast<std::chrono::microseconds>(
            std::chrono::duration<double, std::milli>(ms));
    };
    return {toTime(milliseconds.front()), toTime(milliseconds.back())};
}

// Puts what was given for both ports, or in milliseconds, where the cameras take it from.
void CompleteFaults(Options& options) {
    CZQSimFaults& faults = options.faults;
    faults.discovery.delay = DelayOf(options.discoveryDelay);
    faults.command.delay =
        options.late ? CZQSimDelay{kLateAnswerDelay, kLateAnswerDelay} : DelayOf(options.commandDelay);
    faults.command.longAnswerBytes = faults.discovery.longAnswerBytes;
    faults.command.properFollows = faults.discovery.properFollows;
    for (CZQSimPortFaults* port : {&faults.discovery, &faults.command}) {
        port->requestLoss = options.requestLoss > 0 ? options.requestLoss : options.loss;
        port->answerLoss = options.answerLoss > 0 ? options.answerLoss : options.loss;
        port->duplicates = options.duplicates;
    }
}

void SetFaults(CZQSimUdpServer& server, const Options& options) {
    if (options.onlyCameras.empty()) {
        server.SetFaults(options.faults);
    }
    for (const std::size_t number : options.onlyCameras) {
        server.SetFaults(number - 1, options.faults);
    }
}

void PrintCameras(const std::vector<CZQSimCamera>& cameras) {
    for (const CZQSimCamera& camera : cameras) {
        const CZQSimIdentity& identity = camera.GetIdentity();
        std::printf("%s  %-15s  %-12s  %s  firmware %s\n", identity.hardwareAddress.c_str(),
                    FormatIpv4(camera.GetAddress()).c_str(), identity.deviceType.c_str(),
                    identity.serialNumber.c_str(), identity.firmwareVersion.c_str());
    }
    std::puts("ready");
    std::fflush(stdout);
}

void WaitForTheEnd(const Options& options) {
    if (options.untilEof) {
        std::thread([] {
            while (std::getchar() != EOF) {
            }
            g_stop = true;
        }).detach();
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(options.runForSeconds);
    while (!g_stop && (options.runForSeconds <= 0 || std::chrono::steady_clock::now() < end)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

int Simulate(Options& options) {
    for (const std::size_t number : options.onlyCameras) {
        if (number > options.count) {
            std::fprintf(stderr, "zqcamsim: there is no camera %zu\n", number);
            return 2;
        }
    }
    CompleteFaults(options);
    options.settings.onTrouble = [](const std::string& text) {
        std::fprintf(stderr, "zqcamsim: %s\n", text.c_str());
    };
    const std::uint64_t firstHardwareAddress = options.firstHardwareAddress.empty()
                                                   ? kFirstHardwareAddress
                                                   : std::stoull(options.firstHardwareAddress, nullptr, 16);
    const auto cameras =
        MakeCameras(options.count, ParseIpv4(options.firstAddress).value(), ParseIpv4(options.mask).value(),
                    options.deviceType, firstHardwareAddress);
    CZQSimUdpServer server(cameras, options.settings);
    SetFaults(server, options);
    PrintCameras(cameras);
    WaitForTheEnd(options);
    return 0;
}

int RunTool(int argc, char** argv) {
    CLI::App app{
        "Simulated network cameras. They answer discovery and commands over UDP, each from its own address,\n"
        "until SIGINT or SIGTERM. \"ready\" on standard output says that they do.\n\n"
        "  zqcamsim --count 3                                     three cameras on 127.0.0.11 and up\n"
        "  zqcamsim --count 64 --first-address 10.0.0.1 --interface dummy0\n"
        "  zqcamsim --count 8 --loss 0.05 --latency 1 20 --seed 7  a bad network, the same in each run",
        "zqcamsim"};
    Options options;
    AddCameraOptions(app, options);
    AddRunOptions(app, options);
    AddFaultOptions(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }

    std::signal(SIGINT, [](int) { g_stop = true; });
    std::signal(SIGTERM, [](int) { g_stop = true; });
    try {
        return Simulate(options);
    } catch (const CZQException& exception) {
        std::fprintf(stderr, "zqcamsim: %s\n", exception.GetExtraText().c_str());
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "zqcamsim: %s\n", exception.what());
    }
    return 1;
}

}  // namespace

}  // namespace ZQAPI::sim

int main(int argc, char** argv) {
    return ZQAPI::sim::RunTool(argc, argv);
}
