// A key of this user's registry for one test, removed with it. Windows only.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Registry.h"

namespace ZQAPI::test {

class TestRegistryKey {
public:
    TestRegistryKey();
    TestRegistryKey(const TestRegistryKey&) = delete;
    TestRegistryKey& operator=(const TestRegistryKey&) = delete;
    ~TestRegistryKey();

    // `size` bytes of the text, with or without its NUL.
    void SetText(const char* name, const char* text, std::uint32_t size) const;
    void SetNumber(const char* name, std::uint32_t number) const;

    // This user's root, open for whoever takes it over, and the path of the key below it.
    static platform::RegistryKey OpenRoot();
    const std::string& Path() const noexcept { return m_path; }

private:
    std::string m_path;
    platform::RegistryKey m_key = nullptr;
};

}  // namespace ZQAPI::test
