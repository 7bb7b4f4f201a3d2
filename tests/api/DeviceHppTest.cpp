// The C++17 layer over a library of this test's own: the functions it calls are defined here, so that every
// result can be had.
#include <gtest/gtest.h>
#include <ZQAPI/ZQDevice.hpp>

#include <functional>
#include <string>
#include <type_traits>

namespace {

// What the functions do.
struct FakeLibrary {
    int count = 0;                           // of initialisations
    int result = ZQ_OK;                      // of initialising and saving
    unsigned int devices = 0;                // in the list
    std::function<int(unsigned int)> onGet;  // before the device at this index is handed out
    std::vector<std::string> modules;
} g_library;

}  // namespace

extern "C" {
int ZQDEV_InitLibrary() {
    g_library.count += g_library.result == ZQ_OK ? 1 : 0;
    return g_library.result;
}
int ZQDEV_DeInitLibrary() {
    --g_library.count;
    return ZQ_OK;
}
int ZQDEV_SaveDeviceConfig() {
    return g_library.result;
}
int ZQDEV_GetNofDevices(unsigned int* count) {
    *count = g_library.devices;
    return ZQ_OK;
}
int ZQDEV_GetDevice(unsigned int index, ZQDEVICEINFO* device) {
    const int result = g_library.onGet(index);
    if (result == ZQ_OK && index < g_library.devices) {
        ZQAPI::device::SetText(device->Name, "Camera" + std::to_string(index + 1));
        return ZQ_OK;
    }
    return result != ZQ_OK ? result : ZQ_ERR_BAD_INDEX;
}
int ZQDEV_GetNofSupportedCCMs(const char* /*type*/, unsigned int* count) {
    *count = static_cast<unsigned int>(g_library.modules.size());
    return ZQ_OK;
}
int ZQDEV_GetSupportedCCM(const char* /*type*/, unsigned int index, char* buffer, unsigned int size) {
    const std::string& name = g_library.modules[index];
    if (name.size() > size) {
        return ZQ_ERR_TEXT_TOO_LONG;
    }
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    return ZQ_OK;
}
}

namespace ZQAPI::device {
namespace {

static_assert(__cplusplus < 202000L, "the layer promises C++17");
static_assert(!std::is_copy_constructible_v<Library> && std::is_nothrow_move_assignable_v<Library>);

class DeviceHpp : public testing::Test {
protected:
    DeviceHpp() { g_library = {}; }
    void TearDown() override { EXPECT_EQ(g_library.count, 0); }
};

TEST_F(DeviceHpp, InitialisationsAreCountedDownOnceWhateverIsMoved) {
    Library first;
    Library second;
    EXPECT_EQ(g_library.count, 2);
    Library third(std::move(first));
    EXPECT_FALSE(first);  // NOLINT: that a moved-from object counts no more is what is tested
    second = std::move(third);
    EXPECT_EQ(g_library.count, 1);
    third = Library();
    EXPECT_EQ(g_library.count, 2);
}

TEST_F(DeviceHpp, FailuresAreNumbersOrExceptionsThatNameTheFunctionAndTheCondition) {
    Library library;
    g_library.result = ZQ_ERR_SEAL_READ;
    std::error_code error;
    EXPECT_FALSE(Library(error));
    EXPECT_TRUE(error == ZQ_ERR_SEAL_READ);
    EXPECT_THROW(Library(), std::system_error);
    EXPECT_EQ(g_library.count, 1);
    try {
        library.Save();
        ADD_FAILURE();
    } catch (const std::system_error& thrown) {
        EXPECT_EQ(thrown.code(), ZQ_ERR_SEAL_READ);
        EXPECT_EQ(thrown.what(), std::string("ZQDEV_SaveDeviceConfig: ") + Condition(ZQ_ERR_SEAL_READ));
    }
    g_library.result = ZQ_OK;
    library.Save(error);
    EXPECT_FALSE(error) << "success clears what was there";
}

TEST_F(DeviceHpp, ListIsReadIntoTheRoomThatIsThereAlsoWhileItShrinks) {
    Library library;
    std::vector<ZQDEVICEINFO> devices;
    devices.reserve(5);
    const ZQDEVICEINFO* const room = devices.data();
    g_library.devices = 5;
    g_library.onGet = [](unsigned int index) {
        g_library.devices = index == 3 ? 2 : 5;
        return int{ZQ_OK};
    };
    std::error_code error;
    library.GetDevices(devices, error);
    EXPECT_FALSE(error);
    EXPECT_EQ(devices.data(), room);
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(Text(devices[2].Name), "Camera3");
    g_library.onGet = [](unsigned int index) { return index == 1 ? int{ZQ_ERR_OUT_OF_MEMORY} : int{ZQ_OK}; };
    library.GetDevices(devices, error);
    EXPECT_TRUE(error == ZQ_ERR_OUT_OF_MEMORY);
    EXPECT_TRUE(devices.empty());
}

TEST_F(DeviceHpp, ModuleNamesOfAnyLengthComeWhole) {
    Library library;
    g_library.modules = {std::string(4094, 'x'), "CCM_B"};
    EXPECT_EQ(library.SupportedCCMs("type"), g_library.modules);
    g_library.modules.emplace_back(4096, 'x');
    std::error_code error;
    EXPECT_TRUE(library.SupportedCCMs("type", error).empty()) << "not half of them";
    EXPECT_TRUE(error == ZQ_ERR_TEXT_TOO_LONG);
}

TEST_F(DeviceHpp, FieldsAreNeitherReadPastNorCut) {
    struct {
        Field field;
        char behind[4];
    } record = {};
    std::memset(&record, 'x', sizeof record);
    EXPECT_EQ(Text(record.field).size(), sizeof(Field)) << "no NUL in it";

    SetText(record.field, std::string(64, 'y'));
    EXPECT_EQ(Text(record.field), std::string(64, 'y'));
    std::error_code error;
    SetText(record.field, std::string(65, 'z'), error);
    EXPECT_TRUE(error == ZQ_ERR_TEXT_TOO_LONG);
    SetText(record.field, std::string_view("a\0b", 3), error);
    EXPECT_TRUE(error == ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(Text(record.field), std::string(64, 'y'));

    SetText(record.field, Text(record.field).substr(60), error);
    EXPECT_FALSE(error);
    EXPECT_EQ(std::string_view(record.field, sizeof(Field)), "yyyy" + std::string(61, '\0'));
    EXPECT_EQ(record.behind[0], 'x');
}

TEST_F(DeviceHpp, ScannersAndTheirNamesAreTheSameBothWays) {
    for (int number = 0; number < ZQDEV_NOF_SCANNERS; ++number) {
        const auto scanner = static_cast<Scanner>(number);
        EXPECT_EQ(ScannerFromName(ScannerName(scanner)), scanner);
    }
    EXPECT_EQ(ScannerName(Scanner::kMv), "SCANNER_MV");
    EXPECT_EQ(ScannerName(static_cast<Scanner>(ZQDEV_NOF_SCANNERS)), "");
    EXPECT_EQ(ScannerFromName("SCANNER_"), std::nullopt);
}

}  // namespace
}  // namespace ZQAPI::device
