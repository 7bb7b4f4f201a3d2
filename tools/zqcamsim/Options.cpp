#include "Options.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "communication/ZQIpv4.h"

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

std::string CheckIpv4Address(const std::string& text) {
    return ParseIpv4(text) ? std::string() : text + " is no IPv4 address";
}

std::string CheckHardwareAddress(const std::string& text) {
    const bool valid =
        text.size() == 12 && text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    return valid ? std::string() : text + " is no hardware address";
}

void AddCameraOptions(tools::CommandLine& line, Options& options) {
    std::string types;
    for (const std::string& type : KnownDeviceTypes()) {
        types += " " + type;
    }
    line.AddOption("--count", options.count, "How many network cameras").InRange(0, 4096).ShowDefault();
    line.AddOption("--first-address", options.firstAddress,
                   "The first camera's IP address; the others count up from it")
        .Check(CheckIpv4Address, "IPV4")
        .ShowDefault();
    line.AddOption(
            "--first-hardware-address", options.firstHardwareAddress,
            "Twelve hexadecimal digits, for the first camera; the others count up from it, and the serial "
            "numbers follow")
        .Check(CheckHardwareAddress, "DIGITS");
    line.AddOption(
            "--mask", options.mask,
            "The subnet mask that the cameras report; of their first subnets they take new addresses, with "
            "0.0.0.0 any")
        .Check(CheckIpv4Address, "IPV4")
        .ShowDefault();
    line.AddOption("--type", options.deviceType,
                   "Device type of all network cameras. Without it they are, in turn:" + types);
    line.AddOption(
            "--interface", options.settings.interfaceName,
            "Add the cameras' addresses to this network interface with the command `ip`, and take them off "
            "again. Without it the addresses must be this machine's already")
        .Check(CZQSimInterface::Complaint, "NAME");
    line.AddOption("--discovery-port", options.settings.discoveryPort, "UDP port of discovery")
        .InRange(1, 65535)
        .ShowDefault();
    line.AddOption("--command-port", options.settings.commandPort, "UDP port of commands")
        .InRange(1, 65535)
        .ShowDefault();
}

void AddSerialOptions(tools::CommandLine& line, Options& options) {
    line.AddOption("--serial", options.nofSerial,
                   "How many cameras on serial ports, each on a pseudo-terminal of its own; they come after "
                   "the network cameras")
        .InRange(0, 256);
    line.AddOption("--com-ports", options.portFolder,
                   "Folder in which their ports are linked as COM1, COM2, ... while the tool runs")
        .ExistingFolder();
}

void AddFaultOptions(tools::CommandLine& line, Options& options) {
    line.BeginGroup("Faults");
    CZQSimPortFaults& discovery = options.faults.discovery;
    CZQSimPortFaults& command = options.faults.command;
    line.AddOption("--latency", options.commandDelay,
                   "Milliseconds until a command is answered: MS, or FROM TO")
        .TakesValues(1, 2)
        .NotNegative();
    line.AddOption("--discovery-latency", options.discoveryDelay, "The same for discovery requests")
        .TakesValues(1, 2)
        .NotNegative();
    line.AddOption("--byte-latency", options.byteDelay,
                   "Milliseconds between two bytes of an answer on a serial port")
        .NotNegative();
    line.AddOption("--loss", options.loss, "Share of requests, and of answers, that get lost: 0 to 1")
        .InRange(0.0, 1.0);
    line.AddOption("--request-loss", options.requestLoss, "Share of requests alone").InRange(0.0, 1.0);
    line.AddOption("--answer-loss", options.answerLoss, "Share of answers alone").InRange(0.0, 1.0);
    line.AddOption("--duplicates", options.duplicates, "Share of answers that are sent twice")
        .InRange(0.0, 1.0);
    line.AddChoice("--discovery-answer", discovery.form, kForms, "What answers to discovery look like");
    line.AddChoice("--command-answer", command.form, kForms, "What answers to commands look like");
    line.AddOption("--long-bytes", discovery.longAnswerBytes,
                   "Size in bytes of an answer that is too-long or has no-line-feed")
        .InRange(64, 60000)
        .ShowDefault();
    line.AddFlag("--proper-follows", discovery.properFollows, "A proper answer comes right behind a bad one");
    line.AddFlag("--silent", command.silent, "Commands are not answered; discovery is");
    line.AddFlag("--late", options.late, "Commands are answered after the sender has given up");
    line.AddOption("--only", options.onlyCameras, "The faults are those of these cameras, counted from 1")
        .Positive();
    line.AddOption("--seed", options.settings.seed, "Same seed, same run").ShowDefault();
}

void AddRunOptions(tools::CommandLine& line, Options& options) {
    line.AddOption("--run-for", options.runForSeconds, "End after this many seconds").Positive();
    line.AddFlag("--until-eof", options.untilEof, "End when standard input ends");
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

void AddOptions(tools::CommandLine& line, Options& options) {
    AddCameraOptions(line, options);
    AddSerialOptions(line, options);
    AddRunOptions(line, options);
    AddFaultOptions(line, options);
}

std::string CompleteOptions(Options& options) {
    CompleteFaults(options);
    if (options.settings.discoveryPort == options.settings.commandPort) {
        return "discovery and commands need a port each: --discovery-port and --command-port are both " +
               std::to_string(options.settings.commandPort);
    }
    const std::size_t nofCameras = options.count + options.nofSerial;
    for (const std::size_t number : options.onlyCameras) {
        if (number > nofCameras) {
            return "there is no camera " + std::to_string(number);
        }
    }
    return {};
}

}  // namespace ZQAPI::sim
