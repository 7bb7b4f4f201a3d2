// The interface list has room for 32 addresses. How many this machine has comes from the environment: see
// with-addresses.
#include <gtest/gtest.h>

#include "communication/ZQComNetInterface.h"
#include "platform/Process.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {
namespace {

TEST(NetInterface, ListsUpTo32Addresses) {
    std::string text;
    ASSERT_TRUE(platform::GetEnvironmentText("ZQ_TEST_ADDRESSES", text));
    const std::size_t count = std::stoul(text);
    std::vector<CZQComNetInterface> interfaces;
    const std::int32_t error = ErrorOf([&] { CZQComNetInterface::SearchForInterfaces(interfaces); });
    EXPECT_EQ(error, count <= 32 ? 0 : ZQ_ERR_SOCKET_OPTION);
    EXPECT_EQ(interfaces.size(), count <= 32 ? count : 0);
}

}  // namespace
}  // namespace ZQAPI::test
