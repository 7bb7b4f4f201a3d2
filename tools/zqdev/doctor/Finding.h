// What "zqdev doctor" looks at, and what it finds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Advice.h"
#include "communication/ZQComNetInterface.h"
#include "doctor/Fixes.h"
#include "kit/Kit.h"
#include "kit/ScanSettings.h"

namespace ZQAPI::zqdev::doctor {

enum class State : std::uint8_t { kOk, kWarn, kBad };

struct Finding {
    State state = State::kOk;
    std::string text;
    std::string fix;  // what to do, where something is to be done
};
using Findings = std::vector<Finding>;

// The machine and the kit, as all checks see them.
struct Patient {
    explicit Patient(const Kit& itsKit);

    // What counts for whoever uses the scanner: trouble for an active one, of note for another.
    State TroubleFor(bool isUsed) const { return isUsed ? State::kBad : State::kWarn; }
    bool IsActive(const std::string& scanner) const;
    // The value in use; empty when there is none.
    std::string Setting(const std::string& section, const std::string& key) const;

    const Kit& kit;
    ScanSettings settings;  // none when the file can't be read
    std::vector<std::string> activeScanners;
    bool usesNetwork = false;
    bool bindsToCards = false;
    std::uint32_t discoveryPort = 0;
    // The addresses of all cards, also where there are more than a scan can do with.
    std::vector<CZQComNetInterface> cards;
};

inline std::string Filled(Fix fix, const Kit& kit, const Words& words = {}) {
    return zqdev::Filled(TextOf(fix), kit, words);
}

struct Check {
    const char* name;
    Findings (*run)(const Patient& patient);
};

// A file each.
extern const std::vector<Check> kNetworkChecks;
extern const std::vector<Check> kMachineChecks;
extern const std::vector<Check> kKitChecks;

}  // namespace ZQAPI::zqdev::doctor
