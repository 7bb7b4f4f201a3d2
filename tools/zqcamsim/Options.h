// The tool's command line.
#pragma once

#include <string>
#include <vector>

#include "CommandLine.h"
#include "ZQSimUdpServer.h"

namespace ZQAPI::sim {

struct Options {
    std::size_t count = 3;  // network cameras
    std::string firstAddress = "127.0.0.11";
    std::string mask = "255.255.255.0";
    std::string deviceType;
    std::string firstHardwareAddress;
    CZQSimUdpSettings settings;

    std::size_t nofSerial = 0;  // cameras on serial ports
    std::string portFolder;     // gets links COM1, COM2, ... to their ports; empty: none

    CZQSimFaults faults;
    std::vector<double> commandDelay;    // ms: fixed, or from and to
    std::vector<double> discoveryDelay;  // ms
    double byteDelay = 0;                // ms
    double requestLoss = 0;
    double answerLoss = 0;
    double loss = 0;
    double duplicates = 0;
    bool late = false;
    std::vector<std::size_t> onlyCameras;  // counted from 1; empty: all

    double runForSeconds = 0;
    bool untilEof = false;
};

void AddOptions(tools::CommandLine& line, Options& options);

// What is left to do once the command line is read: what was given for both ports, or in milliseconds, is put
// where the cameras take it from. What is wrong with the options together, or nothing.
std::string CompleteOptions(Options& options);

}  // namespace ZQAPI::sim
