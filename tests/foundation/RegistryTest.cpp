// Reading the registry, where there is one.
#include "foundation/ZQRegistry.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/ExpectError.h"
#include "support/ScarceResources.h"
#include "support/TestRegistryKey.h"

namespace ZQAPI::test {
namespace {

constexpr std::uint32_t kNumberType = 4;  // REG_DWORD

TEST(Registry, ReadsWhatIsThereAndNamesWhatIsNot) {
    const TestRegistryKey key;
    key.SetText("Text", "Valdremonix", 12);
    key.SetText("Cut", "Valdremonix", 6);
    key.SetNumber("Number", 0x01020304);
    CZQRegistry registry(TestRegistryKey::OpenRoot());
    registry.SetSubKey(key.Path());
    EXPECT_EQ(registry.ReadString("Text"), "Valdremonix");
    EXPECT_EQ(registry.ReadString("Cut"), "Valdre");
    std::vector<std::byte> data;
    registry.ReadKey("Number", kNumberType, &data);
    std::uint32_t number = 0;
    ASSERT_EQ(data.size(), sizeof number);
    std::memcpy(&number, data.data(), sizeof number);
    EXPECT_EQ(number, 0x01020304U);

    const struct {
        const char* name;
        std::uint32_t type;
        std::int32_t error;
        const char* text;
    } failures[] = {
        {"Number", platform::kRegistryText, ZQ_ERR_REGISTRY_TYPE,
         "ValueName=Number; dwRegKeyType=4; dwKeyType=1"},
        {"Text", kNumberType, ZQ_ERR_REGISTRY_TYPE, "ValueName=Text; dwRegKeyType=1; dwKeyType=4"},
        {"None", platform::kRegistryText, ZQ_ERR_REGISTRY_QUERY, "ValueName=None; "},
    };
    for (const auto& test : failures) {
        const auto thrown = ThrownBy([&] { registry.ReadKey(test.name, test.type, &data); });
        ASSERT_TRUE(thrown) << test.name;
        EXPECT_EQ(thrown->GetErrorNumber(), test.error);
        EXPECT_TRUE(thrown->GetExtraText().Contains(test.text)) << thrown->GetExtraText().str();
        EXPECT_TRUE(data.empty());
    }
}

TEST(Registry, WhatAnObjectOpenedGoesWithIt) {
    const TestRegistryKey key;
    key.SetNumber("Number", 1);
    const std::size_t before = OpenHandles();
    for (int i = 0; i < 100; ++i) {
        CZQRegistry registry(TestRegistryKey::OpenRoot());
        registry.SetSubKey(key.Path());
        std::vector<std::byte> data;
        registry.ReadKey("Number", kNumberType, &data);
        registry.ReadKey("Number", kNumberType, &data);
    }
    EXPECT_LT(OpenHandles(), before + 10);
}

}  // namespace
}  // namespace ZQAPI::test
