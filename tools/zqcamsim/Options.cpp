#include "Options.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "ZQSimIpv4.h"

namespace ZQAPI::sim {

namespace {

const std::map<std::string, EAnswerForm> kForms = {
    {"proper", EAnswerForm::kProper},
    {"no-colon", EAnswerForm::kNoColon},
    {"too-short", EAnswerForm::kTooShort},
    {"too-long", EAnswerForm::kTooLong},
    {"empty", EAnswerForm::kEmpty},
    {"wrong-address", EAnswerForm::kWrongAddress},
    {"control-characters", EAnswerForm::kControlCharacters},
    {"no-line-feed", EAnswerForm::kNoLineFeed},
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
    app.add_option("--count", options.count, "How many network cameras")
        ->check(CLI::Range(0, 4096))
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
    app.add_option(
           "--mask", options.mask,
           "The subnet mask that the cameras report; of their first subnets they take new addresses, with "
           "0.0.0.0 any")
        ->check(kIpv4Address)
        ->capture_default_str();
    app.add_option("--type", options.deviceType,
                   "Device type of all network cameras. Without it they are, in turn:" + types);
    app.add_option(
        "--interface", options.settings.interfaceName,
        "Add the cameras' addresses to this network interface with the command `ip`, and take them off "
        "again. Without it the addresses must be this machine's already");
    app.add_option("--discovery-port", options.settings.discoveryPort, "UDP port of discovery")
        ->capture_default_str();
    app.add_option("--command-port", options.settings.commandPort, "UDP port of commands")
        ->capture_default_str();
}

void AddSerialOptions(CLI::App& app, Options& options) {
    app.add_option("--serial", options.nofSerial,
                   "How many cameras on serial ports, each on a pseudo-terminal of its own; they come after "
                   "the network cameras")
        ->check(CLI::Range(0, 256));
    app.add_option("--com-ports", options.portFolder,
                   "Folder in which their ports are linked as COM1, COM2, ... while the tool runs")
        ->check(CLI::ExistingDirectory);
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
    app.add_option("--byte-latency", options.byteDelay,
                   "Milliseconds between two bytes of an answer on a serial port")
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
    app.add_option("--long-bytes", discovery.longAnswerBytes,
                   "Size in bytes of an answer that is too-long or has no-line-feed")
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

void CompleteFaults(Options& options) {
    CZQSimFaults& faults = options.faults;
    faults.discovery.delay = DelayOf(options.discoveryDelay);
    faults.command.delay =
        options.late ? CZQSimDelay{kLateAnswerDelay, kLateAnswerDelay} : DelayOf(options.commandDelay);
    faults.command.byteDelay = DelayOf({options.byteDelay}).minimum;
    faults.command.longAnswerBytes = faults.discovery.longAnswerBytes;
    faults.command.properFollows = faults.discovery.properFollows;
    for (CZQSimPortFaults* port : {&faults.discovery, &faults.command}) {
        port->requestLoss = options.requestLoss > 0 ? options.requestLoss : options.loss;
        port->answerLoss = options.answerLoss > 0 ? options.answerLoss : options.loss;
        port->duplicates = options.duplicates;
    }
}

}  // namespace

void AddOptions(CLI::App& app, Options& options) {
    AddCameraOptions(app, options);
    AddSerialOptions(app, options);
    AddRunOptions(app, options);
    AddFaultOptions(app, options);
}

std::string CompleteOptions(Options& options) {
    CompleteFaults(options);
    const std::size_t nofCameras = options.count + options.nofSerial;
    for (const std::size_t number : options.onlyCameras) {
        if (number > nofCameras) {
            return "there is no camera " + std::to_string(number);
        }
    }
    return {};
}

}  // namespace ZQAPI::sim
