#include "devices/ZQDeviceList.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

class DeviceListFile : public ::testing::Test {
protected:
    // The one file in the folder is the list: nothing is left beside it.
    void ExpectNoLitter() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
            EXPECT_EQ(entry.path().filename(), "Devices.ini");
        }
    }

    TempFolder folder;
    CZQString path = folder.File("Devices.ini");
};

TEST(DeviceInfo, FieldsAreReadBoundedAndTake64Characters) {
    ZQDEVICEINFO record;
    std::memset(&record, 'x', sizeof record);
    CZQDeviceInfo device(record);
    EXPECT_EQ(device.GetFirmwareVersion().GetLength(), std::size_t{ZQDEV_FIELD_SIZE});
    EXPECT_ZQ_ERROR(device.CheckTerminated(), ZQ_ERR_TEXT_TOO_LONG);
    const std::string longest(64, 'a');
    device.SetDeviceID(longest);
    EXPECT_ZQ_ERROR(device.SetDeviceID(longest + "b"), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_EQ(device.GetDeviceID(), CZQString(longest));
    // A shorter text leaves nothing of the longer one behind.
    device.SetDeviceID("c");
    EXPECT_EQ(std::string(device.GetRecord().DeviceID, ZQDEV_FIELD_SIZE), "c" + std::string(64, '\0'));
}

TEST_F(DeviceListFile, NamesThatTheFileCouldNotGiveBackAreRefused) {
    CZQDeviceInfo device = SampleDevice("id");
    for (const char* const name : {"a;b", "a]b", " a", "a ", "\"a\"", "E", "EmpTySTRINg", ""}) {
        device.SetName(name);
        EXPECT_ZQ_ERROR(device.CheckName(), ZQ_ERR_BAD_VALUE) << name;
    }
    device.SetName(std::string(64, 'n'));
    EXPECT_ZQ_ERROR(device.CheckName(), ZQ_ERR_BAD_VALUE);
    for (const std::string& name : {std::string("a b.c[x"), std::string(63, 'n'), std::string("EmpTyX")}) {
        device.SetName(name);
        device.CheckName();
        CZQDeviceList list;
        list.AddDevice(device, false);
        list.SaveToFile(path);
        CZQDeviceList loaded;
        loaded.LoadFromFile(path);
        EXPECT_EQ(NamesAndIds(loaded), name + "=id;");
    }
}

TEST(DeviceList, NamesAreGivenByPlaceAndMayRepeatAfterARemoval) {
    CZQDeviceList list = SampleList(3);
    list.RemoveDevice("ZQNetCam-2M:1000");
    list.RemoveDevice("no such device");
    list.AddDevice(SampleDevice("new"), true);
    EXPECT_EQ(NamesAndIds(list), "Camera2=ZQNetCam-2M:1001;Camera3=ZQNetCam-2M:1002;Camera3=new;");
}

TEST(DeviceList, IdentifiersAreComparedExactlyAndTheFirstCounts) {
    CZQDeviceList list;
    for (const char* const id : {"id", "ID", "id"}) {
        list.AddDevice(SampleDevice(id), true);
    }
    EXPECT_EQ(list.FindDeviceByID("ID"), 1);
    EXPECT_EQ(list.FindDeviceByID("Id"), -1);

    CZQDeviceInfo changed = SampleDevice("id");
    changed.SetName("Changed");
    list.ModifyDevice(changed);
    list.RemoveDevice("ID");
    EXPECT_EQ(NamesAndIds(list), "Changed=id;Camera3=id;");
    EXPECT_ZQ_ERROR(list.GetDevice(2), ZQ_ERR_BAD_INDEX);
}

TEST_F(DeviceListFile, HasThisVeryContent) {
    SampleList(2).SaveToFile(path);
    std::string expected = "[General]\r\nDevices=Camera1;Camera2\r\n";
    for (int i = 0; i < 2; ++i) {
        const std::string section = "[Camera" + std::to_string(i + 1);
        expected += section + "]\r\nDeviceTypeByName=ZQNetCam-2M\r\nDeviceID=ZQNetCam-2M:100" +
                    std::to_string(i) + "\r\nDeviceDesc=Example camera\r\nFirmwareVersion=1.2.3\r\n" +
                    section + ".Scanner]\r\nUsedScanner=SCANNER_ZQ_UDP\r\nUsedAddress=192.168.1.20\r\n" +
                    section + ".Connections]\r\nCCM=CCM_ZQ_TCPIP\r\nCCMAddress=192.168.1.20\r\n" +
                    "IAM=IAM_ZQ_UDP\r\nIAMAddress=192.168.1.20\r\n";
    }
    EXPECT_EQ(ContentOf(path), CZQConfigFile::Sealed(expected));
    ExpectNoLitter();
}

TEST_F(DeviceListFile, GivesBackWhatWasSaved) {
    // More names than an ordinary value may have characters.
    for (const std::size_t count : {std::size_t{1}, std::size_t{700}}) {
        CZQDeviceList list = SampleList(count);
        list.SaveToFile(path);
        CZQDeviceList loaded;
        loaded.LoadFromFile(path);
        ASSERT_EQ(loaded.GetCount(), count);
        for (std::uint32_t i = 0; i < count; ++i) {
            const ZQDEVICEINFO was = list.GetDevice(i).GetRecord();
            const ZQDEVICEINFO is = loaded.GetDevice(i).GetRecord();
            ASSERT_EQ(std::memcmp(&was, &is, sizeof was), 0) << i;
        }
    }
}

TEST_F(DeviceListFile, WhatCannotBeReadBackFailsTheLoadAndIsKeptOnDisk) {
    const std::string whole =
        "[General]\r\nDevices=A\r\n[A]\r\nDeviceTypeByName=t\r\nDeviceID=i\r\nDeviceDesc="
        "d\r\nFirmwareVersion=f\r\n"
        "[A.Scanner]\r\nUsedScanner=s\r\nUsedAddress=a\r\n"
        "[A.Connections]\r\nCCM=c\r\nCCMAddress=a\r\nIAM=i\r\nIAMAddress=a\r\n";
    const auto with = [&whole](const std::string& part, const std::string& other) {
        std::string text = whole;
        return text.replace(text.find(part), part.size(), other);
    };
    std::string names;
    while (names.size() < 10'000) {
        names += "A;";
    }
    const struct {
        const char* what;
        std::string content;
        std::int32_t error;
        std::uint32_t count;
    } cases[] = {
        {"a name twice", with("Devices=A", "Devices=A;A"), 0, 2},
        {"a name so often that the records would take the memory of a much larger file",
         with("Devices=A", "Devices=" + names), ZQ_ERR_INI_VALUE_TOO_LONG, 0},
        {"empty list", "[General]\r\nDevices=\r\n", ZQ_ERR_INI_KEY_MISSING, 0},
        {"unknown section", with("Devices=A", "Devices=A;B"), ZQ_ERR_INI_KEY_MISSING, 1},
        {"empty value", with("DeviceDesc=d", "DeviceDesc="), ZQ_ERR_INI_KEY_MISSING, 0},
        {"value of 64", with("DeviceDesc=d", "DeviceDesc=" + std::string(64, 'v')), 0, 1},
        {"value of 65", with("DeviceDesc=d", "DeviceDesc=" + std::string(65, 'v')), ZQ_ERR_TEXT_TOO_LONG, 0},
        {"name of 64", with("Devices=A", "Devices=" + std::string(64, 'n')), ZQ_ERR_TEXT_TOO_LONG, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        WriteSealed(path, test.content);
        const std::string before = ContentOf(path);
        CZQDeviceList list = SampleList(3);
        EXPECT_ZQ_ERROR(list.LoadFromFile(path), test.error);
        EXPECT_EQ(list.GetCount(), test.count);
        EXPECT_EQ(ContentOf(path), before);
    }
}

TEST_F(DeviceListFile, FailedSaveLeavesNoLitter) {
    Logged().Take();
    const CZQDeviceList list = SampleList(2);
    // A folder can't be replaced by a file.
    std::filesystem::create_directory(path.str());
    EXPECT_ZQ_ERROR(list.SaveToFile(path), ZQ_ERR_FILE_MOVE);
    ExpectNoLitter();
    EXPECT_ZQ_ERROR(list.SaveToFile(folder.File("missing/Devices.ini")), ZQ_ERR_INI_WRITE);
    EXPECT_TRUE(Logged().Take().empty());
}

TEST_F(DeviceListFile, LoadsBesideSavesGiveWholeLists) {
    const CZQDeviceList lists[] = {SampleList(3), SampleList(40)};
    lists[0].SaveToFile(path);
    std::atomic<bool> isSaving = true;
    int refused = 0;
    std::jthread saver([&] {
        for (std::size_t i = 0; i < 100; ++i) {
            const int error = ErrorOf([&] { lists[i % 2].SaveToFile(path); });
            refused += error == ZQ_ERR_FILE_MOVE ? 1 : 0;
            EXPECT_TRUE(error == 0 || error == ZQ_ERR_FILE_MOVE) << error;
        }
        isSaving = false;
    });
    while (isSaving) {
        CZQDeviceList loaded;
        EXPECT_ZQ_ERROR(loaded.LoadFromFile(path), 0);
        EXPECT_TRUE(loaded.GetCount() == 3 || loaded.GetCount() == 40) << loaded.GetCount();
    }
    saver.join();
    // Where an open file can't be replaced, a reader that hardly ever closes it may win; not often.
    EXPECT_LE(refused, platform::HasDriveLetters() ? 10 : 0);
    ExpectNoLitter();
}

// An editor, say, that lets nobody delete what it has open.
TEST_F(DeviceListFile, SaveWaitsForWhoeverHasTheFileOpen) {
    SampleList(1).SaveToFile(path);
    const std::string before = ContentOf(path);
    std::ifstream reader(path.str());
    const int error = ErrorOf([&] { SampleList(2).SaveToFile(path); });
    EXPECT_TRUE(error == 0 || (error == ZQ_ERR_FILE_MOVE && ContentOf(path) == before)) << error;
    ExpectNoLitter();

    std::atomic<bool> isSaved = false;
    std::jthread holder([&] {
        const auto sees = [&] {
            return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
        };
        while (!isSaved && sees() < 2) {
            std::this_thread::yield();
        }
        reader.close();  // the new file is there and waits
    });
    EXPECT_ZQ_ERROR(SampleList(3).SaveToFile(path), 0);
    isSaved = true;
    CZQDeviceList list;
    list.LoadFromFile(path);
    EXPECT_EQ(list.GetCount(), 3U);
}

}  // namespace
}  // namespace ZQAPI::test
