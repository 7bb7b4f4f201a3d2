// zqdev as a user runs it: a process with arguments, two outputs and an exit status, on a copy of the staged
// kit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <thread>

#include "ZQSimUdpServer.h"
#include "commands/LogReader.h"
#include "devices/ZQDeviceList.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "support/FileBytes.h"
#include "support/KitCopy.h"
#include "support/Program.h"
#include "support/SampleDevices.h"
#include "tools/platform/FileLock.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::test {
namespace {

using Arguments = std::vector<std::string>;

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class Zqdev : public ::testing::Test {
protected:
    // May be called by several threads.
    Outcome Run(const Arguments& arguments, const std::string& program = {}) {
        const std::string number = std::to_string(++m_runs);
        const std::string out = m_outputs.File("out" + number);
        const std::string err = m_outputs.File("err" + number);
        const int status = RunProgram(program.empty() ? m_kit.File("zqdev") : program, arguments, out, err);
        return {status, TextOf(out), TextOf(err)};
    }

    // Expects one line on standard error with all these parts in it.
    void ExpectFailure(const Arguments& arguments, int status, const std::vector<std::string>& parts) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_EQ(outcome.err.rfind("zqdev: ", 0), 0U) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        for (const std::string& part : parts) {
            EXPECT_THAT(outcome.err, testing::HasSubstr(part));
        }
    }

    void ExpectDone(const Arguments& arguments) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }

    nlohmann::json RunJson(Arguments arguments, int status = 0) {
        arguments.emplace_back("--json");
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        return nlohmann::json::parse(outcome.out);
    }

    // "Camera1=ID;Camera2=ID;..." as a further process reads it.
    std::string ListedDevices() {
        std::string text;
        const nlohmann::json list = RunJson({"list"});
        for (const auto& device : list["devices"]) {
            text += device["Name"].get<std::string>() + "=" + device["DeviceID"].get<std::string>() + ";";
        }
        return text;
    }

    Arguments AddArguments(const std::string& id) const {
        return {"add",     "--id",      id,         "--type",     "ZQNetCam-2M", "--desc",
                "Made up", "--address", "10.0.0.7", "--firmware", "1.0"};
    }

    KitCopy m_kit;

private:
    static std::string TextOf(const std::string& file) {
        std::string text = ContentOf(file);
        text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
        return text;
    }

    TempFolder m_outputs;
    std::atomic<int> m_runs{0};
};

TEST_F(Zqdev, LogIsThatOfAllProgramsByTime) {
    EXPECT_EQ(Run({"log"}).status, 3);
    const auto folder = m_kit.Path() / "AppData" / "log";
    std::filesystem::create_directories(folder);
    WriteBytes(folder / "a.log.1", "2026-01-01 10:00:00.000 +00:00 [1:1] first\n    beneath it\x1B[2J\n");
    WriteBytes(folder / "a.log", "2026-01-01 12:00:00.000 +00:00 [1:1] third\n");
    WriteBytes(folder / "b.log", "2026-01-01 12:30:00.000 +01:00 [2:2] second\r\nno time: belongs to it\r\n");
    WriteBytes(folder / "notes.txt", "2026-01-01 12:00:00.000 +00:00 no log\n");
    const std::string second = "2026-01-01 12:30:00.000 +01:00 [2:2] second\nno time: belongs to it\n";
    const std::string third = "2026-01-01 12:00:00.000 +00:00 [1:1] third\n";
    EXPECT_EQ(Run({"log"}).out,
              "2026-01-01 10:00:00.000 +00:00 [1:1] first\n    beneath it\\x1B[2J\n" + second + third);
    EXPECT_EQ(Run({"log", "--since", "2026-01-01 11:00Z"}).out, second + third);
    EXPECT_EQ(Run({"log", "--since", "2026-01-01T12:00:00.000+00:00"}).out, third);
    EXPECT_EQ(Run({"log", "--since", "1h"}).status, 3);
    ExpectFailure({"log", "--since", "soon"}, 2, {"neither a time"});
    EXPECT_EQ(RunJson({"log"})["entries"].size(), 3U);
    if (!platform::HasDriveLetters()) {
        const Outcome followed = Run(
            {"--foreground", "--preserve-status", "-s", "INT", "4", m_kit.File("zqdev"), "log", "--follow"},
            "/usr/bin/timeout");  // else it would interrupt twice
        EXPECT_EQ(followed.status, 0);
        EXPECT_THAT(followed.out, testing::EndsWith(third));
    }
}

TEST(LogReader, IsBoundedWhoeverPutsFilesThere) {
    const TempFolder folder;
    const std::string entry = "2026-01-01 12:00:00.000 +00:00 " + std::string(std::size_t{1} << 20U, 'x');
    std::string content;
    for (int i = 0; i < 50; ++i) {
        content.append(entry).append("\n");
    }
    WriteBytes(folder.Path() / "a.log", content);
    WriteBytes(folder.Path() / "c.log", "2026-01-01 12:00:01.000 +00:00 last\n");
    zqdev::LogReader reader(folder.Path().string());
    EXPECT_EQ(reader.ReadNew().size(), 32U) << "of each log its share";
    EXPECT_TRUE(reader.IsCut());
    for (int i = 1; i < 10; ++i) {
        std::filesystem::create_hard_link(folder.Path() / "a.log",
                                          folder.Path() / ("b.log." + std::to_string(i)));
    }
    zqdev::LogReader other(folder.Path().string());
    const auto entries = other.ReadNew();
    EXPECT_LT(entries.size(), 64U);
    EXPECT_TRUE(entries.back().text.ends_with("last\n"));
}

// Lines, keys and headers as short as can be take not more than a few times the file.
TEST_F(Zqdev, FilesMadeToCostMemoryDoNot) {
    if (platform::HasDriveLetters()) {
        GTEST_SKIP() << "a limit is the shell's";
    }
    constexpr std::size_t kSize = 12 << 20;
    const auto limited = [&](const std::string& command) {
        return Run({"-c", "ulimit -v 180000; \"$0\" " + command, m_kit.File("zqdev")}, "/bin/sh");
    };
    if (limited("version").status != 0) {
        GTEST_SKIP() << "a sanitizer takes more than the limit for itself";
    }
    for (const char* const line : {"x\n", "x=\n", "[\n"}) {
        std::string filler = "\r\n[x]\r\n";
        for (filler.reserve(kSize); filler.size() < kSize;) {
            filler += line;
        }
        for (const auto& [name, command] :
             {std::pair("Devices.ini", "list"), std::pair("ZQAPI.ini", "config check")}) {
            const std::string file = m_kit.File("AppData/config/") + name;
            const std::string before = ContentOf(file);
            WriteSealed(file, before.substr(0, before.rfind("\r\n<#CRC")) + filler);
            const Outcome outcome = limited(command);
            EXPECT_EQ(outcome.status, 0) << command << " " << line << outcome.err;
            WriteBytes(file, before);
        }
    }
}

TEST_F(Zqdev, OfKeysThatNothingReadsTheFirstAreNamedWhateverTextsAreWrong) {
    const std::string file = m_kit.File("AppData/config/ZQAPI.ini");
    std::string content = ContentOf(file);
    std::string keys;
    std::string sections;
    for (int i = 0; i < 100; ++i) {
        keys += "k" + std::to_string(i) + "=1\r\n";
        sections += "[DeviceScanner.s" + std::to_string(i) + "]\r\n";
    }
    content.insert(content.find("IPPort="), keys);
    content.insert(content.find("[DeviceScanner]"), sections);
    WriteSealed(file, content.substr(0, content.rfind("\r\n<#CRC")));
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(platform::SetEnvironmentText("ZQSDK_Logger_Level", "\xFF\xFE", error));  // no UTF-8
    const auto warnings = RunJson({"config", "show"})["warnings"];
    ASSERT_TRUE(platform::SetEnvironmentText("ZQSDK_Logger_Level", "", error));
    EXPECT_EQ(warnings.size(), 2 * (64 + 1) + 1);
    EXPECT_THAT(warnings.dump(),
                testing::HasSubstr("ZQSDK_Logger_Level in the environment is ignored: '\u00FF"));
    EXPECT_THAT(warnings.dump(), testing::HasSubstr("nothing reads 36 more of its keys"));
    EXPECT_THAT(warnings.dump(), testing::HasSubstr("no scanner reads 36 more sections"));
}

TEST(LogReader, GoesOnWhereAFileIsPutAside) {
    const TempFolder folder;
    const auto log = folder.Path() / "a.log";
    const auto line = [](int number) {
        return "2026-01-01 12:00:00.000 +00:00 " + std::to_string(number) + "\n";
    };
    zqdev::LogReader reader(folder.Path().string());
    const auto read = [&] {
        std::string text;
        for (const auto& entry : reader.ReadNew()) {
            text += entry.text.substr(31, 1);
        }
        return text;
    };
    WriteBytes(log, line(1) + line(2) + "2026-01-01 12:00");
    EXPECT_EQ(read(), "12");
    EXPECT_EQ(read(), "");
    WriteBytes(log, line(1) + line(2) + line(3));
    std::filesystem::rename(log, log.string() + ".1");
    WriteBytes(log, line(4));
    EXPECT_EQ(read(), "34");
    std::filesystem::rename(log.string() + ".1", log.string() + ".2");
    std::filesystem::rename(log, log.string() + ".1");
    EXPECT_EQ(read(), "");
    WriteBytes(log, line(5));
    EXPECT_EQ(read(), "5");
    std::filesystem::remove_all(folder.Path());
    EXPECT_EQ(read(), "");
}

TEST_F(Zqdev, FailuresAreOneLineWithTheirStatusAndLeaveTheListAlone) {
    const std::string before = ContentOf(m_kit.DevicesIni());
    const std::string pastLast = std::to_string(ZQDEV_NOF_SCANNERS);
    const struct {
        Arguments arguments;
        int status;
        std::vector<std::string> parts;
    } cases[] = {
        {{}, 2, {"--help"}},
        {{"frobnicate"}, 2, {"there is no command 'frobnicate'"}},
        {{"list", "surplus"}, 2, {"surplus"}},
        {{"show"}, 2, {"ID"}},
        {{"config"}, 2, {"--help"}},
        {{"help", "frobnicate"}, 2, {"there is no command 'frobnicate'"}},
        {{"list", "--wait", "3601"}, 2, {"'3601' is no number from 0 to 3600"}},
        {{"scan", "--scanner", pastLast}, 2, {"there is no scanner '" + pastLast + "'"}},
        {{"scan", "--allow-empty"}, 2, {"--save"}},
        {{"scan", "--scanner", "MV", "--time", "5"}, 2, {"--time is about", "SCANNER_MV has no such"}},
        {{"scan", "--cycles", "5x"}, 2, {"--cycles 5x", "a number from 0"}},
        {{"scan", "--card", "none such"}, 2, {"no network card 'none such'; there are: "}},
        {{"scan", "--host", "10.0.0.7,10.0.7"}, 2, {"'10.0.7' is no complete IPv4"}},
        {{"scan", "--host", ""}, 2, {"--host", "a value is needed"}},
        {{"add", "--id", "x"}, 2, {"--type"}},
        {{"add", "--id", "x", "--type", "NoSuchType"}, 2, {"--desc", "--ccm", "--iam-address", "--firmware"}},
        {{"modify", "VirtualCamera:1"}, 2, {"nothing to change"}},
        {{"config", "get", "ZQ_UDP.IPort"}, 2, {"the nearest is ZQ_UDP.IPPort"}},
        {{"config", "get", "frobnicate"}, 2, {"ActiveScanners, ZQ_UDP.IPPort", "Logger.Level"}},
        {{"config", "set", "Logger.NofFiles", "1"}, 2, {"a number from 2 to 20 is meant, 2 is used"}},
        {{"config", "set", "IPPort", "65536"}, 2, {"ZQ_UDP.IPPort=65536: a number from 0 to 65535"}},
        {{"config", "set", "BindToNetworkCard", "maybe"}, 2, {"true or false"}},
        {{"config", "set", "CameraFile", " x"}, 2, {"read back"}},
        {{"config", "set", "ActiveScanners", ""}, 2, {"can't be empty"}},
        {{"show", "nobody"}, 1, {"'nobody'", "zqdev list"}},
        {{"remove", "nobody"}, 1, {"'nobody'"}},
        {{"rescan", "nobody"}, 1, {"'nobody'"}},
        {{"modify", "nobody", "--desc", "x"}, 1, {"'nobody'"}},
        {{"modify", "VirtualCamera:1", "--desc", ""}, 1, {"--desc", "--allow-empty"}},
        {{"modify", "VirtualCamera:1", "--desc", std::string(65, 'x')}, 1, {"-100014", "--desc"}},
        {{"modify", "VirtualCamera:1", "--name", "a;b"}, 1, {"-100006"}},
        {{"remove", "VirtualCamera:1"}, 1, {"last device"}},
        {{"modules", "NoSuchType"}, 1, {"-220002", "NoSuchType.ccf", "does not exist"}},
        {{"modules", "../config"}, 1, {"-100006"}},
        {{"--kit", "no-such-folder", "list"}, 1, {"-130000", "no-such-folder", "--kit"}},
        {{"scan", "--scanner", "manual", "--save"}, 3, {"nothing was saved"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.empty() ? "no arguments" : c.arguments.front() + " " + c.arguments.back());
        ExpectFailure(c.arguments, c.status, c.parts);
    }
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), before);
}

// Scanners without their libraries, and a port without a camera: told apart from a search that found nothing.
TEST_F(Zqdev, ScanTellsWhatCameOfEachScannerAndWhatToDoNext) {
    const auto activate = [&](const std::string& scanners, const std::string& more) {
        WriteSealed(m_kit.ApiIni(), "[DeviceScanner]\r\nActiveScanners=" + scanners + "\r\n" + more);
    };
    const std::string ports =
        "[DeviceScanner.SCANNER_ZQ_RS232]\r\nCOMPort=1\r\nBaudrate=9600\r\nDatabits=8\r\nStopBits=1\r\n"
        "Parity=NO\r\nHandshake=NO\r\nScanCOMPorts=";
    const std::string ownName = platform::HasDriveLetters() ? "" : "libueye_api.so";
    activate("SCANNER_TAVI;SCANNER_IDS_UEYE;SCANNER_MANUAL", "");
    const Outcome outcome = Run({"scan"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT("\n" + outcome.err,  // the scanners in any order
                testing::AllOf(testing::HasSubstr("\nSCANNER_IDS_UEYE: 0 found, error -130000 DLLName="),
                               testing::HasSubstr("\nSCANNER_TAVI: 0 found, error -130000 DLLName="),
                               testing::HasSubstr("\nzqdev: the scan failed")));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 3) << outcome.err;
    EXPECT_THAT(outcome.out,
                testing::AllOf(testing::HasSubstr("What to do next:"), testing::HasSubstr(ownName)));
    nlohmann::json json = RunJson({"scan"}, 1);
    ASSERT_EQ(json["scanners"].size(), 2U);
    EXPECT_EQ(json["scanners"][0]["error"]["name"], "ZQ_ERR_LIBRARY_NOT_LOADED");
    EXPECT_THAT(json["scanners"][0]["error"]["text"], testing::StartsWith("DLLName="));

    activate("SCANNER_TAVI;SCANNER_ZQ_RS232", ports + "\r\n");
    json = RunJson({"scan"}, 3);
    EXPECT_THAT(json["advice"].dump(), testing::HasSubstr("config set ScanCOMPorts"));
    activate("SCANNER_ZQ_RS232", ports + "254\r\n");
    EXPECT_THAT(RunJson({"scan"}, 3)["advice"].dump(), testing::HasSubstr("There is no COM254"));
    activate("SCANNER_MANUAL", "");
    EXPECT_THAT(RunJson({"scan"}, 3)["advice"].dump(), testing::HasSubstr("config set ActiveScanners"));
}

TEST_F(Zqdev, EditsAreSavedAtOnce) {
    ExpectDone(AddArguments("first"));
    ExpectDone(AddArguments("second"));
    EXPECT_EQ(ListedDevices(), "Camera1=VirtualCamera:1;Camera2=first;Camera3=second;");
    ExpectFailure(AddArguments("second"), 1, {"'second'", "modify"});

    // A name given by place would now be a second Camera3, and the two would share their values in the file.
    ExpectDone({"remove", "VirtualCamera:1"});
    ExpectDone(AddArguments("third"));
    EXPECT_EQ(ListedDevices(), "Camera2=first;Camera3=second;Camera1=third;");
    ExpectFailure({"modify", "third", "--name", "Camera2"}, 1, {"'Camera2'"});

    ExpectDone({"modify", "third", "--name", "Front door", "--scanner", "1", "--ccm", "CCM_ZQ_UDP"});
    const auto device = RunJson({"show", "third"});
    EXPECT_EQ(device["Name"], "Front door");
    EXPECT_EQ(device["UsedScanner"], ZQDEV_SCANNER_NAME_ZQ_UDP);
    EXPECT_EQ(device["CCM"], ZQDEV_CCM_ZQ_UDP);
    EXPECT_EQ(device["IAM"], ZQDEV_IAM_ZQ_UDP) << "the type's default";
    EXPECT_EQ(device["IAMAddress"], "10.0.0.7");

    // A name will do as well; an identifier of the same text comes first.
    EXPECT_EQ(RunJson({"show", "Front door"})["DeviceID"], "third");
    ExpectDone(AddArguments("Front door"));
    EXPECT_EQ(RunJson({"show", "Front door"})["Name"], "Camera4");
    ExpectDone({"remove", "Camera4"});

    ExpectDone({"rescan", "second", "--save"});
    ExpectDone({"modify", "second", "--desc", "", "--allow-empty"});
    ExpectFailure({"list"}, 1, {"-200013", "lacks a value"});
}

// Addresses as they are scanned and saved; then one has moved and one is gone.
TEST_F(Zqdev, SavedDevicesAreAskedForAndTalkedTo) {
    if (platform::HasDriveLetters()) {
        GTEST_SKIP() << "several cameras on one machine: Linux alone";
    }
    WriteSealed(m_kit.ApiIni(),
                "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_UDP\r\n"
                "[DeviceScanner.SCANNER_ZQ_UDP]\r\nNofScanCycles=1\r\nScanTimeMs=300\r\n");
    const sim::CZQSimUdpServer cameras(sim::MakeCameras(3, 0x7F00000B, 0), {});
    ASSERT_EQ(RunJson({"scan", "--save"})["devices"].size(), 3U);
    ExpectDone({"status"});

    for (const char* const id : {"gone", "gone as well", "by hand"}) {
        Arguments add = AddArguments(id);
        add.insert(add.end(), {"--scanner", id[0] == 'g' ? "ZQ_UDP" : "MANUAL"});
        ExpectDone(add);
    }
    ExpectDone({"modify", "by hand", "--name", "Spare"});
    // Camera2 comes into the list after the one by hand; and keeps its name.
    ExpectDone({"modify", "Camera3", "--name", "Front door"});
    ExpectDone({"remove", "Camera2"});
    EXPECT_EQ(RunJson({"scan", "--merge"})["saved"], true);
    const std::string number = "=ZQNetCam-";
    EXPECT_EQ(ListedDevices(), "Camera1" + number + "2M:VX00000001;Front door" + number +
                                   "FG:VX00000003;Camera4=gone;Camera5=gone as well;Spare=by hand;Camera6" +
                                   number + "5M:VX00000002;");
    ExpectDone({"modify", "Camera1", "--address", "127.0.0.99"});
    std::string states;
    const nlohmann::json asked = RunJson({"status"}, 1);
    for (const auto& device : asked["devices"]) {
        states += device["state"].get<std::string>() + ";";
    }
    EXPECT_EQ(states, "moved;online;gone;gone;not checked;online;");
    const Outcome status = Run({"status"});
    EXPECT_THAT(status.err, testing::AllOf(testing::HasSubstr("has moved to 127.0.0.11"),
                                           testing::HasSubstr("'gone as well' is gone")));

    EXPECT_EQ(Run({"send", "Camera6", "SYST:SERN?"}).out, "VX00000002\n");
    ExpectFailure({"send", "gone", "SYST:SERN?", "--time-out", "1"}, 3, {"'gone'", "10.0.0.7", "--time-out"});
    ExpectDone({"modify", "gone", "--ccm", "CCM_TAVI"});
    ExpectFailure({"send", "gone", "SYST:SERN?"}, 1, {"'gone'", "CCM_TAVI"});
    ExpectFailure({"send", "Camera6", ""}, 2, {"nothing was sent"});

    const Outcome replaced = Run({"scan", "--save"});
    EXPECT_THAT(replaced.err, testing::AllOf(testing::HasSubstr("'Front door' of ZQNetCam-FG"),
                                             testing::HasSubstr("'Spare' of by hand; --merge keeps")));
    EXPECT_THAT(ListedDevices(), testing::HasSubstr("Camera3" + number + "FG"));
    std::filesystem::remove(m_kit.File("AppData/config/zqdev.lock"));
    std::filesystem::create_directory(m_kit.File("AppData/config/zqdev.lock"));
    const Outcome unsaved = Run({"scan", "--save"});
    EXPECT_EQ(unsaved.status, 1);
    EXPECT_THAT(unsaved.out, testing::HasSubstr("3 devices found"));
    EXPECT_THAT(unsaved.err, testing::HasSubstr("zqdev.lock"));
}

TEST_F(Zqdev, FilesThatDoNotServeAreExplained) {
    const std::string devices = m_kit.DevicesIni();
    const std::string api = m_kit.ApiIni();
    const std::string shipped = ContentOf(devices);
    std::string edited = shipped;
    edited.replace(edited.find("Virtual camera"), 14, "Edited camera.");
    CZQDeviceList().SaveToFile(devices);
    const std::string empty = ContentOf(devices);
    const std::string init = "zqdev config init\"";
    const auto scanners = [&](const std::string& names) {
        WriteSealed(api, "[DeviceScanner]\r\nActiveScanners=" + names + "\r\n");
        return ContentOf(api);
    };
    const std::string kMissing;  // no content: no file
    const struct {
        const std::string& file;
        std::string content;
        Arguments arguments;
        std::vector<std::string> parts;
    } cases[] = {
        {devices, kMissing, {"list"}, {"-220002", "does not exist", init}},
        {devices, empty, {"list"}, {"-200013", "empty list", init}},
        {devices, "cut", {"list"}, {"-220002", "cut off", "config init --force"}},
        {devices, edited, {"list"}, {"-220004", "edited by hand", "config seal", "restore"}},
        {devices, edited, {"config", "check"}, {"-220004"}},
        {api, scanners(""), {"scan"}, {"-200013", "ActiveScanners"}},
        {api, scanners("SCANNER_NONE"), {"scan"}, {"-100006", "ActiveScanners"}},
        {api, kMissing, {"scan"}, {"-220002", "ZQAPI.ini does not exist", "config init"}},
        {devices, "[General]\r\nDevice=", {"list"}, {"-200013", "no device list", "config init --force"}},
        {devices, shipped, {"config", "seal", "none.ini"}, {"none.ini", "no such file"}},
        {devices,
         "no INI text, but long",
         {"config", "seal", devices},
         {"not sealed", "no section has a key"}},
        {api, "[a]\r\nb=\x01 and longer", {"config", "seal", api}, {"not sealed", "control characters"}},
        {api, "cut", {"config", "set", "IPPort", "1"}, {"-220002", "cut off", "nothing was changed"}},
    };
    for (const auto& c : cases) {
        WriteBytes(devices, shipped);
        scanners("SCANNER_MANUAL");
        if (c.content == kMissing) {
            std::filesystem::remove(c.file);
        } else {
            WriteBytes(c.file, c.content);
        }
        SCOPED_TRACE(c.parts.front() + " " + c.arguments.back());
        ExpectFailure(c.arguments, 1, c.parts);
    }
}

// What is no file to be read and written, on any system and for any user: a folder.
TEST_F(Zqdev, WhatTheSystemRefusesIsNeverToldAsDamageOrAbsence) {
    std::filesystem::remove(m_kit.DevicesIni());
    std::filesystem::create_directory(m_kit.DevicesIni());
    ExpectFailure({"list"}, 1, {"-220002", "does not let", "Devices.ini", "("});
    ExpectFailure({"config", "seal", m_kit.DevicesIni()}, 1, {"does not let", "Devices.ini"});
    EXPECT_EQ(RunJson({"config", "show"})["devicesIni"]["state"], "unreadable");
    std::filesystem::remove(m_kit.ApiIni());
    std::filesystem::create_directory(m_kit.ApiIni());
    EXPECT_EQ(RunJson({"config", "show"}, 1)["apiIni"]["state"], "unreadable");
}

TEST_F(Zqdev, FilesAreMadeMendedAndSealedOnlyWhenAsked) {
    const std::string shipped = ContentOf(m_kit.DevicesIni());
    std::filesystem::remove_all(m_kit.Path() / "AppData");
    ExpectDone({"config", "init"});
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), shipped);
    CZQDeviceList().SaveToFile(m_kit.DevicesIni());
    const std::string empty = ContentOf(m_kit.DevicesIni());
    ExpectDone({"config", "init"});
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), shipped);
    EXPECT_EQ(ContentOf(m_kit.DevicesIni() + ".bak"), empty);

    const std::string unsealed = "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_UDP\r\n";
    WriteBytes(m_kit.ApiIni(), unsealed);
    WriteBytes(m_kit.DevicesIni(), "[General]\r\nDev=Camera1;Camera2\r\n");
    EXPECT_EQ(RunJson({"config", "init"})[1]["result"], "left as it is, although it is no device list");
    WriteBytes(m_kit.DevicesIni(), "cut");
    ExpectDone({"config", "init"});
    ExpectDone({"config", "show"});
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), "cut");
    EXPECT_EQ(ContentOf(m_kit.ApiIni()), unsealed);
    ExpectDone({"config", "init", "--force"});
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), shipped);
    EXPECT_EQ(ContentOf(m_kit.DevicesIni() + ".bak"), "cut");

    WriteBytes(m_kit.ApiIni(), unsealed);
    ExpectFailure({"config", "check"}, 1, {"-220003"});
    ExpectDone({"config", "seal", m_kit.ApiIni()});
    ExpectDone({"config", "check"});

    const std::string odd = unsealed + "[DeviceScanner.SCANNER_ZQ_UDP]\r\nIPPort=99999\r\n";
    WriteSealed(m_kit.ApiIni(), odd);
    ExpectFailure({"config", "check"}, 1, {"IPPort=99999: a number from 0 to 65535", "config seal"});
    WriteSealed(m_kit.ApiIni(), odd + "IPort=1\r\n[DeviceScanner.SCANNER_UDP]\r\n");
    EXPECT_EQ(RunJson({"config", "show"})["warnings"].size(), 3U);

    WriteBytes(m_kit.File("USE_LOCAL_SDK_CONFIG"), "[Paths]\r\nAppDataPath=elsewhere\r\n");
    EXPECT_THAT(Run({"config", "check"}).err, testing::HasSubstr("is relative"));
}

TEST_F(Zqdev, ASettingIsChangedWithoutTouchingAnyOther) {
    const std::string before =
        "; first\r\n[DeviceScanner]\r\nActiveScanners=SCANNER_MANUAL\r\n\r\n"
        "[devicescanner.scanner_zq_udp]\r\nIPPort=1 \r\n; odd\nsurplus\r\n";
    WriteSealed(m_kit.ApiIni(), before);
    const auto set = RunJson({"config", "set", "zq_udp.ipport", "2"});
    EXPECT_EQ(set["former"], "1");
    EXPECT_EQ(set["from"], "file");
    std::string after = before;
    after.replace(after.find("IPPort=1 "), 9, "IPPort=2");
    WriteSealed(m_kit.File("expected.ini"), after);
    EXPECT_EQ(ContentOf(m_kit.ApiIni()), ContentOf(m_kit.File("expected.ini")));

    ExpectDone({"config", "set", "DeviceScanner.SCANNER_ZQ_RS232.ScanCOMPorts", "1;2"});
    EXPECT_EQ(Run({"config", "get", "ScanCOMPorts"}).out, "1;2\n");
    ExpectDone({"config", "set", "ScanCOMPorts", ""});
    EXPECT_EQ(RunJson({"config", "get", "SCANNER_ZQ_RS232.ScanCOMPorts"})["from"], "default");
    EXPECT_EQ(RunJson({"config", "get", "ZQ_UDP.NofScanCycles"})["value"], "5");
    ExpectFailure({"config", "get", "Baudrate"}, 1, {"no default", "config set"});
    EXPECT_EQ(RunJson({"config", "show"})["scanSettingsFrom"]["DeviceScanner"]["ActiveScanners"], "file");
    ExpectFailure({"scan", "--time", "5"}, 2, {"not among the ActiveScanners"});
}

TEST_F(Zqdev, WhatTheEnvironmentSaysIsToldAndNotKept) {
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(platform::SetEnvironmentText("ZQSDK_ZQ_UDP_NofScanCycles", "7", error));
    EXPECT_THAT(Run({"config", "show"}).out,
                testing::HasSubstr("\nNofScanCycles=7    (environment ZQSDK_ZQ_UDP_NofScanCycles)\n"));
    const Outcome changed = Run({"config", "set", "NofScanCycles", "8"});
    EXPECT_THAT(changed.out, testing::HasSubstr("NofScanCycles=8 (file, until now 5)"));
    EXPECT_THAT(changed.err, testing::HasSubstr("NofScanCycles=7 in the environment comes before it"));
    ASSERT_TRUE(platform::SetEnvironmentText("ZQSDK_ZQ_UDP_NofScanCycles", "", error));
}

TEST_F(Zqdev, EditsAtOnceAreAllKept) {
    constexpr int kEdits = 20;
    {
        std::vector<std::jthread> edits;
        for (int i = 0; i < kEdits; ++i) {
            edits.emplace_back([this, i] { ExpectDone(AddArguments("device " + std::to_string(i))); });
        }
    }
    EXPECT_EQ(RunJson({"list"})["devices"].size(), 1U + kEdits);
}

TEST_F(Zqdev, WhoHoldsTheLockIsNamedAndWhatIsNoFileIsNoLock) {
    const std::string file = m_kit.File("AppData/config/zqdev.lock");
    const Arguments edit = {"modify", "VirtualCamera:1", "--desc", "x", "--wait", "0"};
    WriteBytes(file, "left behind by somebody");
    {
        platform::FileLock lock;
        std::string told;
        ASSERT_EQ(lock.TryToTake(file, told), platform::FileLock::Outcome::kTaken) << told;
        ExpectFailure(edit, 1, {"process " + std::to_string(platform::ProcessId()), "zqdev.lock", "--wait"});
        ExpectDone({"list"});
    }
    ExpectDone(edit);
    if (!platform::HasDriveLetters()) {
        for (const char* const what : {"of a file that was there", "of a new one"}) {
            EXPECT_EQ(std::filesystem::status(file).permissions() & std::filesystem::perms::others_all,
                      std::filesystem::perms::none)
                << "whoever may not save keeps nobody from it: " << what;
            std::filesystem::remove(file);
            ExpectDone(edit);
        }
    }

    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    ExpectFailure(edit, 1, {"nothing was saved", "zqdev.lock"});
    if (platform::HasDriveLetters()) {
        GTEST_SKIP() << "links and pipes: Linux alone";
    }
    const std::string target = m_kit.File("somewhere else");
    for (const std::string& command : {"ln -s '" + target + "' '" + file + "'", "mkfifo '" + file + "'"}) {
        std::filesystem::remove(file);
        ASSERT_EQ(std::system(command.c_str()), 0);  // NOLINT: own arguments
        ExpectFailure(edit, 1, {"nothing was saved", "no ordinary file"});
    }
    EXPECT_FALSE(std::filesystem::exists(target));
}

// Its folder's name has another length, and other bytes, in each encoding.
TEST_F(Zqdev, AKitInAFolderOfAnyNameWorksWhole) {
    const std::string name =
        "k\xC3\xBC"
        "che x";  // UTF-8
    const std::filesystem::path folder = m_kit.Path().parent_path() / u8"k\u00FCche x";
    std::filesystem::copy(m_kit.Path(), folder, std::filesystem::copy_options::recursive);
    std::filesystem::remove_all(folder / "AppData");
    const auto config = folder / "AppData" / "config";
    const std::string text = platform::FromPath(folder);
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const std::string own = std::string(".") + platform::PathSeparator() + "zqdev";
    for (const Arguments& arguments : {Arguments{"config", "init"},
                                       {"config", "check"},
                                       {"config", "seal", platform::FromPath(config / "ZQAPI.ini")},
                                       AddArguments("added"),
                                       {"list"},
                                       {"modules", "ZQNetCam-2M"}}) {
        const Outcome outcome = Run(arguments, own);
        EXPECT_EQ(outcome.status, 0) << arguments.front() << " " << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }
    EXPECT_TRUE(std::filesystem::exists(config / "Devices.ini"));
    EXPECT_THAT(Run({"config", "show"}, own).out, testing::HasSubstr(name));
    EXPECT_EQ(Run({"scan", "--scanner", "manual"}, own).status, 3);
    std::filesystem::current_path(former);

    const auto shown = RunJson({"config", "show", "--kit", text});
    EXPECT_THAT(shown["devicesIni"]["file"].get<std::string>(), testing::HasSubstr(name));
    ExpectFailure({"--kit", text, "show", "nobody"}, 1, {name});
}

TEST_F(Zqdev, AnotherKitIsUsedWholly) {
    KitCopy other;
    const std::string quote = platform::HasDriveLetters() ? "\"" : "'";
    const std::string own = ContentOf(m_kit.DevicesIni());
    ExpectDone({"--kit", other.Path().string(), "modify", "VirtualCamera:1", "--desc", "in the other kit"});
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), own);
    EXPECT_NE(ContentOf(other.DevicesIni()).find("in the other kit"), std::string::npos);

    std::filesystem::remove(other.DevicesIni());
    ExpectFailure({"list", "--kit", other.Path().string()}, 1,
                  {"zqdev --kit " + quote + other.Path().string() + quote + " config init"});
    ExpectDone({"--kit", other.Path().string(), "config", "init"});
    EXPECT_EQ(RunJson({"list", "--kit", other.Path().string()})["devices"].size(), 1U);
}

TEST_F(Zqdev, DebugOutputComesBesideTheResultsAndBeforeTheFailure) {
    const Outcome list = Run({"list", "--json", "-v"});
    EXPECT_EQ(nlohmann::json::parse(list.out)["devices"].size(), 1U);
    EXPECT_THAT(list.err, testing::HasSubstr("SDK: GetConfigFilesPath: Path="));
    const Outcome show = Run({"-v", "show", "nobody"});
    EXPECT_EQ(show.status, 1);
    EXPECT_LT(show.err.find("SDK: "), show.err.find("zqdev: there is no device")) << show.err;
    EXPECT_EQ(Run({"list"}).err, "");
}

TEST_F(Zqdev, AnyTextIsListedInJsonAndOnTheScreen) {
    CZQDeviceInfo device = SampleDevice("a \"quoted\" \\ id");
    device.SetName("Camera1");
    device.SetDeviceTypeByName(std::string(64, 'T'));
    device.SetDeviceDesc("Gr\xFC\xDF");  // Latin-1
    device.SetUsedAddress("\x1B[2J\xC2\x9B\xE2\x80\xAE");
    CZQDeviceList list;
    list.AddDevice(device, false);
    list.SaveToFile(m_kit.DevicesIni());

    const auto json = RunJson({"list"})["devices"][0];
    EXPECT_EQ(json["DeviceID"], "a \"quoted\" \\ id");
    EXPECT_EQ(json["DeviceDesc"], "Gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(json["UsedAddress"], "\x1B[2J\xC2\x9B\xE2\x80\xAE");
    for (const Arguments& arguments : {Arguments{"list", "--json"}, {"list"}}) {
        const std::string shown = Run(arguments).out;
        EXPECT_TRUE(std::all_of(shown.begin(), shown.end(), [](char c) { return c == '\n' || c >= ' '; }))
            << shown;
    }
}

TEST_F(Zqdev, SettingsAndModulesAreShownForPrograms) {
    const auto config = RunJson({"config", "show"});
    EXPECT_EQ(config["devicesIni"]["state"], "sealed");
    EXPECT_EQ(config["scanSettings"]["DeviceScanner"]["ActiveScanners"], ZQDEV_SCANNER_NAME_ZQ_UDP);
    EXPECT_EQ(config["scanSettings"]["DeviceScanner.SCANNER_ZQ_UDP"]["IPPort"], "19380");
    EXPECT_EQ(RunJson({"config", "init"}).size(), 2U);
    EXPECT_EQ(RunJson({"config", "check"})[1]["error"], 0);
    EXPECT_EQ(RunJson({"modules", "ZQNetCam-2M"})["IAMs"][0], ZQDEV_IAM_ZQ_UDP);
    const auto types = RunJson({"types"})["types"];
    EXPECT_TRUE(std::any_of(types.begin(), types.end(), [](const nlohmann::json& type) {
        return type["DeviceTypeByName"] == "VirtualCamera" && type["CCMs"][0] == ZQDEV_CCM_ZQ_VIRTUAL;
    })) << "the shipped device's";
    std::filesystem::remove(m_kit.File("CameraConfig/ZQTV-20.ccf"));
    WriteBytes(m_kit.File("CameraConfig/Edited.ccf"), "[Interfaces]\r\nCCMs=X\r\n<#CRC0000000000#>");
    EXPECT_EQ(RunJson({"types"}, 1)["types"].size(), types.size() - 1);
    EXPECT_THAT(Run({"types"}).err, testing::HasSubstr("device type 'Edited': error -220004"));
    EXPECT_EQ(RunJson({"scan", "--scanner", "0"}, 3)["devices"].size(), 0U);
    EXPECT_EQ(RunJson({"version"})["version"], "2.0.0");
    EXPECT_EQ(Run({"help", "config", "set"}).out, Run({"config", "set", "--help"}).out);
}

}  // namespace
}  // namespace ZQAPI::test
