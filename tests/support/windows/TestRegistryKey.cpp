#include "support/TestRegistryKey.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace ZQAPI::test {

TestRegistryKey::TestRegistryKey() : m_path("Software\\zqtest-" + std::to_string(GetCurrentProcessId())) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, m_path.c_str(), &key), ERROR_SUCCESS);
    m_key = key;
}

TestRegistryKey::~TestRegistryKey() {
    RegCloseKey(static_cast<HKEY>(m_key));
    RegDeleteKeyA(HKEY_CURRENT_USER, m_path.c_str());
}

void TestRegistryKey::SetText(const char* name, const char* text, std::uint32_t size) const {
    EXPECT_EQ(
        RegSetValueExA(static_cast<HKEY>(m_key), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size),
        ERROR_SUCCESS);
}

void TestRegistryKey::SetNumber(const char* name, std::uint32_t number) const {
    EXPECT_EQ(RegSetValueExA(static_cast<HKEY>(m_key), name, 0, REG_DWORD,
                             reinterpret_cast<const BYTE*>(&number), sizeof number),
              ERROR_SUCCESS);
}

platform::RegistryKey TestRegistryKey::OpenRoot() {
    HKEY root = nullptr;
    EXPECT_EQ(RegOpenCurrentUser(KEY_READ, &root), ERROR_SUCCESS);
    return root;
}

}  // namespace ZQAPI::test
