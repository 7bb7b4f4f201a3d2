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
    int result = ZQ_OK;                      // of every function but those below
    unsigned int devices = 0;                // in the list
    std::function<int(unsigned int)> onGet;  // before the device at this index is handed out
    std::vector<std::string> modules;
    std::string last;  // the function that was called last
} g_library;

ZQDEVICEINFO NamedDevice(const std::string& name) {
    ZQDEVICEINFO device = {};
    ZQAPI::device::SetText(device.Name, name);
    return device;
}

int Called(const char* function) {
    g_library.last = function;
    return g_library.result;
}

int CopyText(const std::string& text, char* buffer, unsigned int size) {
    if (text.size() > size) {
        return ZQ_ERR_TEXT_TOO_LONG;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return ZQ_OK;
}

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
int ZQDEV_GetNofDevices(unsigned int* count) {
    *count = g_library.devices;
    return g_library.result;
}
int ZQDEV_GetDevice(unsigned int index, ZQDEVICEINFO* device) {
    const int result = g_library.onGet ? g_library.onGet(index) : ZQ_OK;
    if (result != ZQ_OK || index >= g_library.devices) {
        return result != ZQ_OK ? result : ZQ_ERR_BAD_INDEX;
    }
    *device = NamedDevice("Camera" + std::to_string(index + 1));
    return ZQ_OK;
}
int ZQDEV_SaveDeviceConfig() {
    return Called("ZQDEV_SaveDeviceConfig");
}
int ZQDEV_GetDefaultCCM(const char* /*type*/, char* buffer, unsigned int size) {
    return CopyText(g_library.modules.front(), buffer, size);
}
int ZQDEV_GetDefaultIAM(const char* /*type*/, char* /*buffer*/, unsigned int /*size*/) {
    return Called("ZQDEV_GetDefaultIAM");
}
int ZQDEV_GetNofSupportedCCMs(const char* /*type*/, unsigned int* count) {
    *count = static_cast<unsigned int>(g_library.modules.size());
    return ZQ_OK;
}
int ZQDEV_GetSupportedCCM(const char* /*type*/, unsigned int index, char* buffer, unsigned int size) {
    return index == 2 ? g_library.result : CopyText(g_library.modules[index], buffer, size);
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

TEST_F(DeviceHpp, FailedInitialisationCountsNothing) {
    g_library.result = ZQ_ERR_SEAL_READ;
    std::error_code error;
    EXPECT_FALSE(Library(error));
    EXPECT_TRUE(error == ZQ_ERR_SEAL_READ);
    EXPECT_THROW(Library(), std::system_error);
    EXPECT_EQ(g_library.count, 0);
}

TEST_F(DeviceHpp, ThrowingFormsNameTheFunctionAndTheCondition) {
    Library library;
    g_library.result = ZQ_ERR_DEVICE_NOT_FOUND;
    const std::function<void()> calls[] = {
        [&] { library.Save(); },
        [&] { static_cast<void>(library.DefaultIAM("type")); },
    };
    for (const auto& call : calls) {
        try {
            call();
            ADD_FAILURE() << g_library.last;
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), ZQ_ERR_DEVICE_NOT_FOUND);
            EXPECT_EQ(error.what(), g_library.last + ": " + Condition(ZQ_ERR_DEVICE_NOT_FOUND));
        }
    }
    std::error_code error = ZQ_ERR_BAD_VALUE;
    g_library.result = ZQ_OK;
    library.Save(error);
    EXPECT_FALSE(error) << "success clears what was there";
}

TEST_F(DeviceHpp, ListThatShrinksWhileItIsReadIsWhatIsLeft) {
    Library library;
    g_library.devices = 5;
    g_library.onGet = [](unsigned int index) {
        g_library.devices = index == 3 ? 2 : g_library.devices;
        return int{ZQ_OK};
    };
    const auto devices = library.Devices();
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(Text(devices[2].Name), "Camera3");
}

TEST_F(DeviceHpp, ListIsReadIntoTheRoomThatIsThere) {
    Library library;
    std::vector<ZQDEVICEINFO> devices;
    devices.reserve(10);
    const ZQDEVICEINFO* const room = devices.data();
    g_library.devices = 10;
    std::error_code error;
    library.GetDevices(devices, error);
    EXPECT_FALSE(error);
    EXPECT_EQ(devices.data(), room);
    g_library.onGet = [](unsigned int index) { return index == 4 ? int{ZQ_ERR_OUT_OF_MEMORY} : int{ZQ_OK}; };
    library.GetDevices(devices, error);
    EXPECT_TRUE(error == ZQ_ERR_OUT_OF_MEMORY);
    EXPECT_TRUE(devices.empty());
}

TEST_F(DeviceHpp, ModuleNamesOfAnyLengthComeWhole) {
    Library library;
    g_library.modules = {std::string(4094, 'x'), "CCM_B", "CCM_C"};
    g_library.result = ZQ_ERR_BAD_INDEX;
    std::error_code error;
    EXPECT_EQ(library.DefaultCCM("type").size(), 4094U);
    EXPECT_TRUE(library.SupportedCCMs("type", error).empty()) << "not half of them";
    EXPECT_TRUE(error == ZQ_ERR_BAD_INDEX);
    g_library.modules.pop_back();
    EXPECT_EQ(library.SupportedCCMs("type").at(1), "CCM_B");
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
    EXPECT_EQ(ScannerName(static_cast<Scanner>(14)), "");
    EXPECT_EQ(ScannerFromName("SCANNER_"), std::nullopt);
}

}  // namespace
}  // namespace ZQAPI::device
