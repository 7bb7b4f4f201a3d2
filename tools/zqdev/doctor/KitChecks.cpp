// Whether the kit is whole and its files are as they should be.
#include <ZQAPI/ZQCommandModule.h>
#include <ZQAPI/ZQErrors.h>

#include <algorithm>

#include "Text.h"
#include "communication/ZQImaqLibrary.h"
#include "doctor/Finding.h"
#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "kit/ConfigFiles.h"
#include "platform/Files.h"
#include "scanners/ZQScannerTable.h"
#include "scanners/serial/ZQScanAdimecCL.h"
#include "scanners/vendor/ZQScanIFBoFX.h"
#include "scanners/vendor/ZQScanIFICImagingSource.h"
#include "scanners/vendor/ZQScanIFTavi.h"
#include "tools/platform/SystemSetup.h"
#include "tools/platform/SystemText.h"
#include "vendors/ZQFlyCapture2Adapter.h"
#include "vendors/ZQGigEAdapter.h"
#include "vendors/ZQMvDeviceManagerAdapter.h"
#include "vendors/ZQPleoraAdapter.h"
#include "vendors/ZQUEyeAdapter.h"
#include "vendors/ZQUsb2Adapter.h"

namespace ZQAPI::zqdev::doctor {

namespace {

class CommandModule : public CZQDynamicDLL {
    CZQEntryPoint<decltype(ZQCCM_OpenCCM)> m_open{*this, "ZQCCM_OpenCCM"};
    CZQEntryPoint<decltype(ZQCCM_CloseCCM)> m_close{*this, "ZQCCM_CloseCCM"};
    CZQEntryPoint<decltype(ZQCCM_SendCmd)> m_send{*this, "ZQCCM_SendCmd"};
};

Findings CheckModules(const Patient& patient) {
    Findings findings;
    for (const char* const file : {"ZQCCMUdpAPI.dll", "ZQCCMRs232API.dll", "ZQCCMImaqRs232API.dll"}) {
        const std::string path = platform::LibraryFileName(patient.kit.CommandModule(file));
        try {
            CommandModule module;
            module.OpenLibrary(path);
            module.KeepLibrary();  // as a scan does
        } catch (const CZQException& exception) {
            findings.push_back(
                {State::kBad, Printable(exception.GetExtraText().view()), Filled(Fix::kModule, patient.kit)});
        }
    }
    if (findings.empty()) {
        findings.push_back({State::kOk, "all three can be loaded", {}});
    }
    return findings;
}

// What a scanner that needs somebody's library looks for.
struct LibraryUser {
    const char* scanner;
    std::span<const char* const> files;
};

constexpr LibraryUser kLibraryUsers[] = {
    {ZQDEV_SCANNER_NAME_ZQ_IMAQ_RS232, {&CZQImaqLibrary::kFile, 1}},
    {ZQDEV_SCANNER_NAME_SISO_USB2, {&SUsb2Library::kNames.file, 1}},
    {ZQDEV_SCANNER_NAME_PLEORA_IPORT, {&SPleoraLibrary::kNames.file, 1}},
    {ZQDEV_SCANNER_NAME_BO_FX, {&SFxLibrary::kNames.file, 1}},
    {ZQDEV_SCANNER_NAME_PGR_FLY, CZQFlyCapture2::kFiles},
    {ZQDEV_SCANNER_NAME_TAVI, {&STaviLibrary::kNames.file, 1}},
    {ZQDEV_SCANNER_NAME_IDS_UEYE, CZQUEye::kFiles},
    {ZQDEV_SCANNER_NAME_ZQ_GIGE, CZQGigE::kFiles},
    {ZQDEV_SCANNER_NAME_ZQ_IC, {&SImagingSourceLibrary::kNames.file, 1}},
    {ZQDEV_SCANNER_NAME_ADIMEC_CL, {}},
    {ZQDEV_SCANNER_NAME_MV, CZQMvDeviceManager::kFiles},
};

// In the order in which the scanner tries them.
std::vector<CZQString> NamesOf(const LibraryUser& user, const Kit& kit) {
    const CZQString separator = PathSeparator();
    const CZQSdkPaths paths(CZQSdkPaths::MakeBinPath(kit.LibraryFile()));
    if (user.files.empty()) {
        return {SAdimecScanner::LibraryOf(paths)};
    }
    std::vector<CZQString> names;
    for (const char* const file : user.files) {
        names.push_back(paths.GetBinPath() + file);
        names.emplace_back(file);
        if (user.files.data() ==
            CZQFlyCapture2::kFiles) {  // that folder is in PATH once the kit's library is loaded
            names.push_back(paths.GetBinPath() + "3dParty" + separator + "PGR" + separator + "x64" +
                            separator + file);
        }
    }
    return names;
}

// Those that the library has on this system, without folders: a name that ends in ".dll" is another system's where others
// don't.
std::vector<std::string> FileNames(const LibraryUser& user, const Kit& kit) {
    constexpr std::string_view kWindows = ".dll";
    std::vector<std::string> names;
    if (user.files.empty()) {
        const CZQString path = NamesOf(user, kit).front();
        names.push_back(platform::FromPath(platform::ToPath(path.str()).filename()));
    }
    names.insert(names.end(), user.files.begin(), user.files.end());
    const bool isWindows = platform::LibraryFileName(std::string(kWindows)) == kWindows;
    const auto isOthers = [&](const std::string& name) { return name.ends_with(kWindows) != isWindows; };
    if (!std::all_of(names.begin(), names.end(), isOthers)) {
        std::erase_if(names, isOthers);
    }
    std::transform(names.begin(), names.end(), names.begin(), platform::LibraryFileName);
    return names;
}

// Nothing of the library but its loading code is run.
Findings CheckLibraries(const Patient& patient) {
    Findings findings;
    std::string absent;
    for (const LibraryUser& user : kLibraryUsers) {
        const bool isActive = patient.IsActive(user.scanner);
        const std::vector<CZQString> names = NamesOf(user, patient.kit);
        CZQDynamicDLL library;
        try {
            library.OpenFirstLibrary(names);
            findings.push_back({State::kOk,
                                std::string(user.scanner) + ": " +
                                    Printable(platform::LibraryFileName(library.GetLibraryName().str())),
                                {}});
        } catch (const CZQException& exception) {
            if (isActive) {
                findings.push_back({State::kBad,
                                    std::string(user.scanner) + " is active and has no library (" +
                                        Printable(Enumerate(FileNames(user, patient.kit))) +
                                        "): " + Printable(exception.GetExtraText().view()),
                                    Filled(Fix::kLibraryAbsent, patient.kit)});
            } else {
                absent += (absent.empty() ? "" : ", ") + Printable(FileNames(user, patient.kit).front());
            }
        }
    }
    if (!absent.empty()) {
        findings.push_back({State::kOk,
                            "not there, and no active scanner needs them: " + absent +
                                " (looked for in the kit's folder, the system's and those of PATH)",
                            {}});
    }
    return findings;
}

// Of a file or folder that others' hands should be off.
void AddRights(Findings& findings, const Patient& patient, const std::string& path, std::string& owners) {
    const auto rights = platform::GetFileRights(path);
    if (!rights) {
        return;
    }
    if (rights->anybodyMayWrite) {
        findings.push_back(
            {State::kBad,
             "anybody may write to " + Printable(path) + " (owner " + Printable(rights->owner) + ")",
             Filled(Fix::kAnybodyWrites, patient.kit, {{"file", Quoted(path, "FILE")}})});
    }
    if (const std::string owner = Printable(rights->owner); owners.find(owner) == std::string::npos) {
        owners += (owners.empty() ? ", owner " : ", ") + owner;
    }
}

Findings CheckFiles(const Patient& patient) {
    const Kit& kit = patient.kit;
    Findings findings;
    std::string owners;
    AddRights(findings, patient, kit.ConfigFolder(), owners);
    for (const std::string& file : {kit.ApiIni(), kit.DevicesIni()}) {
        if (IsMissing(file)) {
            findings.push_back(
                {State::kBad, Printable(file) + " is missing", Filled(Fix::kMissingFile, kit)});
            continue;
        }
        AddRights(findings, patient, file, owners);
        if (const std::string why = ReadingObstacle(file); !why.empty()) {
            findings.push_back({State::kBad, Printable(file) + " can't be read: " + Printable(why),
                                Filled(Fix::kUnreadable, kit)});
        } else if (const std::string obstacle = WritingObstacle(file); !obstacle.empty()) {
            findings.push_back({State::kWarn,
                                "this user can't save " + Printable(file) + ": " + Printable(obstacle),
                                Filled(Fix::kUnwritable, kit)});
        }
    }
    if (findings.empty()) {
        findings.push_back(
            {State::kOk, Printable(kit.ConfigFolder()) + " can be read and written" + owners, {}});
    }
    return findings;
}

Findings CheckSeals(const Patient& patient) {
    std::vector<std::string> files = patient.kit.CameraConfigFiles();
    files.insert(files.begin(), {patient.kit.ApiIni(), patient.kit.DevicesIni()});
    Findings findings;
    std::size_t sealed = 0;
    for (const std::string& file : files) {
        if (IsMissing(file) || !ReadingObstacle(file).empty()) {
            continue;  // told of the files
        }
        const int error = SealError(file);
        const std::string call = Quoted(file, "FILE");
        if (error == ZQ_ERR_SEAL_MISSING) {
            findings.push_back({State::kWarn, Printable(file) + " has none",
                                Filled(Fix::kNoSeal, patient.kit, {{"FILE", call}})});
        } else if (error != 0) {
            findings.push_back({State::kBad, Printable(file) + " was changed by hand or is damaged",
                                Filled(Fix::kBrokenSeal, patient.kit, {{"FILE", call}})});
        } else {
            ++sealed;
        }
    }
    if (findings.empty()) {
        findings.push_back({State::kOk, std::to_string(sealed) + " files have a right one", {}});
    }
    return findings;
}

Findings CheckSettings(const Patient& patient) {
    if (patient.settings.empty()) {
        return {{State::kWarn, "can't be read", {}}};
    }
    Findings findings;
    for (const std::string& warning : Warnings(patient.settings)) {
        findings.push_back({State::kBad, Printable(warning), Filled(Fix::kSetting, patient.kit)});
    }
    for (const ScanSection& section : patient.settings) {
        const std::size_t dot = section.name.find('.');
        const bool isUsed = dot == std::string::npos || patient.IsActive(section.name.substr(dot + 1));
        for (const ScanSetting& setting : section.settings) {
            if (isUsed && !setting.InUse()) {
                findings.push_back(
                    {State::kBad,
                     "[" + Printable(section.name) + "] " + setting.key + " is missing, and has no default",
                     Filled(Fix::kMissingSetting, patient.kit)});
            }
        }
    }
    if (findings.empty()) {
        findings.push_back({State::kOk, "all are known and in range", {}});
    }
    return findings;
}

}  // namespace

const std::vector<Check> kKitChecks = {
    {"modules", CheckModules},   {"files", CheckFiles},         {"seals", CheckSeals},
    {"settings", CheckSettings}, {"libraries", CheckLibraries},
};

}  // namespace ZQAPI::zqdev::doctor
