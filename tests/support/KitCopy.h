// A copy of the staged kit that a test may change, and its library loaded from there: its configuration is
// the copy's own.
#pragma once

#include <ZQAPI/ZQDeviceAPI.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>

#include "foundation/ZQDynamicDLL.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

class KitCopy {
public:
    KitCopy() {
        std::filesystem::copy(ZQ_TEST_KIT, Path(), std::filesystem::copy_options::recursive);
        Load();
    }

    std::filesystem::path Path() const { return m_folder.Path() / "kit"; }
    std::string File(const std::string& name) const { return (Path() / name).make_preferred().string(); }
    std::string DevicesIni() const { return File("AppData/config/Devices.ini"); }
    std::string ApiIni() const { return File("AppData/config/ZQAPI.ini"); }

    // Calls an exported function: Call(&ZQDEV_GetNofDevices, "ZQDEV_GetNofDevices", &count). See ZQ_CALL.
    template <class... Parameters, class... Arguments>
    int Call(int (*)(Parameters...), const char* name, Arguments... arguments) {
        return m_library.Find<int(Parameters...)>(name)(arguments...);
    }

    void Load() { m_library.OpenLibrary(File(ZQ_TEST_LIBRARY)); }
    // Unloads the library, as an application does at its end.
    void Unload() { m_library.CloseLibrary(); }

private:
    TempFolder m_folder;
    CZQDynamicDLL m_library;
};

}  // namespace ZQAPI::test

// ZQ_CALL(kit, ZQDEV_GetNofDevices, &count): the function of the kit's library, with the public header's
// types.
#define ZQ_CALL(kit, function, ...) \
    (kit).Call(static_cast<decltype(&function)>(nullptr), #function __VA_OPT__(, ) __VA_ARGS__)
