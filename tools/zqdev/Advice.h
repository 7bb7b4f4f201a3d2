// What to do about a failure.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/Kit.h"

namespace ZQAPI::zqdev {

// What the library was asked for when it failed: the same number means different things.
enum class Subject {
    kLoading,     // reading the device list file
    kSaving,      // writing it
    kScan,        // a scan with the scanners in ZQAPI.ini
    kOneScanner,  // a scan with a given one
    kRescan,      // asking for one device
    kAddress,     // changing a camera's network address
    kCommand,     // a text command to a camera; the file is the command module
    kRecord,      // adding or changing a device
    kModules,     // a device type's camera configuration file
    kFile,        // checking any file's seal
    kSeal,        // sealing it
    kSettings,    // a setting in ZQAPI.ini
};

using Words = std::vector<std::pair<std::string_view, std::string>>;

// A text with its {words} replaced by these, and a {zqdev ...} by that call of the tool for this kit, with the words
// FILE and ID in it. docs/troubleshooting.md has every text that is given here as a literal.
std::string Filled(std::string_view text, const Kit& kit, const Words& words = {});

// The step that mends it. `file` is the file that the subject is about.
std::string Advice(Subject subject, int number, const Kit& kit, const std::string& file);

}  // namespace ZQAPI::zqdev
