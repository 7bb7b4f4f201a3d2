#include "scan/ScanWishes.h"

#include <algorithm>

#include "Text.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "kit/ConfigFiles.h"
#include "kit/ScanSettings.h"
#include "platform/Process.h"
#include "scanners/ZQScannerTable.h"
#include "scanners/udp/ZQNetworkCards.h"

namespace ZQAPI::zqdev {

namespace {

constexpr char kSeparator = ';';  // in a setting

struct Wish {
    const char* option;
    const char* key;
    std::string value;  // empty: none
};

// "a;b;c" of the words, and of their parts between commas where they have any.
std::string Joined(const std::vector<std::string>& words, bool hasCommas) {
    std::string joined;
    for (std::string word : words) {
        if (hasCommas) {
            std::replace(word.begin(), word.end(), ',', kSeparator);
        }
        joined += (joined.empty() ? "" : std::string(1, kSeparator)) + word;
    }
    return joined;
}

std::vector<Wish> Given(const ScanWishes& wishes) {
    std::vector<Wish> given = {{"--time", "ZQ_UDP.ScanTimeMs", wishes.time},
                               {"--cycles", "ZQ_UDP.NofScanCycles", wishes.cycles},
                               {"--card", "ZQ_UDP.NetworkCards", Joined(wishes.cards, false)},
                               {"--host", "ZQ_UDP.ScanHosts", Joined(wishes.hosts, true)}};
    std::erase_if(given, [](const Wish& wish) { return wish.value.empty(); });
    return given;
}

// Whether ZQAPI.ini has the network scanner among the active ones; where it can't be read the scan will tell.
bool IsNetworkScannerActive(Session& session) {
    const std::string file = session.GetKit().ApiIni();
    if (!ReadingObstacle(file).empty()) {
        return true;
    }
    const std::string active =
        ReadScanSetting(file, FindSetting(session.GetKit(), kActiveScanners)).InUse().value_or("");
    CZQStringArray names;
    names.Split(active, kSeparator, true);
    return active.empty() || names.Contains(ZQDEV_SCANNER_NAME_ZQ_UDP);
}

void RequireNetworkScanner(Session& session, const char* option, std::optional<device::Scanner> scanner) {
    const std::string network = ZQDEV_SCANNER_NAME_ZQ_UDP;
    if (scanner && *scanner != device::Scanner::kZqUdp) {
        throw Failure(std::string(option) + " is about " + network + " alone, and " +
                          std::string(device::ScannerName(*scanner)) + " has no such setting; leave it out",
                      ExitStatus::kWrongUsage);
    }
    if (!scanner && !IsNetworkScannerActive(session)) {
        throw Failure(std::string(option) + " is about " + network +
                          ", which is not among the ActiveScanners; give --scanner ZQ_UDP",
                      ExitStatus::kWrongUsage);
    }
}

void Apply(const Wish& wish, const SettingPlace& place) {
    const std::string variable = WishOfEnvironment(place.section, place.row).variable.str();
    platform::SystemErrorCode error = 0;
    if (!platform::SetEnvironmentText(variable.c_str(), wish.value, error)) {
        throw Failure(std::string(wish.option) + " can't be handed to the library (" +
                      FormatSystemError(error).str() + "); change " + wish.key + " in ZQAPI.ini instead");
    }
    const SSettingWish heard = WishOfEnvironment(place.section, place.row);
    if (!heard.Counts()) {
        throw Failure(
            std::string(wish.option) + " " + wish.value + " can't be used: " + heard.whyIgnored.str(),
            ExitStatus::kWrongUsage);
    }
}

// Before the time of a scan is spent. What can't be listed here the scan can't use either, and tells.
void RequireCards(const ScanWishes& wishes) {
    for (const std::string& card : wishes.cards) {
        CZQString complaint;
        try {
            complaint = NetworkCardComplaint(card, wishes.hosts.empty());
        } catch (const CZQException&) {
            return;
        }
        if (!complaint.IsEmpty()) {
            throw Failure("--card: " + complaint.str(), ExitStatus::kWrongUsage);
        }
    }
}

std::string RequireText(const std::string& text) {
    return text.empty() ? "a value is needed" : "";
}

}  // namespace

void DeclareScanWishes(Command& command, ScanWishes& wishes) {
    command.BeginGroup("Network cameras, for this scan alone");
    command.AddOption("--time", wishes.time, "Listen for so long, instead of ScanTimeMs")
        .Check(RequireText)
        .ValueName("MS");
    command.AddOption("--cycles", wishes.cycles, "Send the request so often, instead of NofScanCycles")
        .Check(RequireText)
        .ValueName("N");
    command
        .AddOption(
            "--card", wishes.cards,
            "Look behind this network card alone (or these: once for each), as \"interfaces\" shows it")
        .Check(RequireText)
        .ValueName("NAME|ADDRESS");
    command
        .AddOption("--host", wishes.hosts,
                   "Ask these addresses one by one, also behind a router, instead of everybody by broadcast")
        .Check(RequireText)
        .ValueName("ADDRESS[,ADDRESS...]");
}

void ApplyScanWishes(Session& session, const ScanWishes& wishes, std::optional<device::Scanner> scanner) {
    const std::vector<Wish> given = Given(wishes);
    for (const Wish& wish : given) {
        RequireNetworkScanner(session, wish.option, scanner);
        Apply(wish, FindSetting(session.GetKit(), wish.key));
    }
    RequireCards(wishes);
}

}  // namespace ZQAPI::zqdev
