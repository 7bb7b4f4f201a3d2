// The interface list has room for 32 addresses. How many this machine has comes from the environment: see
// with-addresses. And it needs a descriptor; how many there are is the caller's matter.
#include <gmock/gmock.h>

#include "communication/ZQComNetInterface.h"
#include "platform/Files.h"
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
    if (!interfaces.empty()) {
        EXPECT_FALSE(interfaces[0].IsSuitableForBroadcast());
        // With and without a label; Wine names none that has one.
        const std::string& name = interfaces[0].GetName();
        EXPECT_THAT(interfaces.back().GetName(),
                    testing::AnyOf(name, platform::HasDriveLetters() ? "" : name));
        EXPECT_THAT(interfaces[0].ToString().str(),
                    testing::MatchesRegex("IPAddr: 127.0.0.1 BroadcastAddr: .* NetMask: 255.0.0.0 IsUp: 1 "
                                          "IsLoopback: 1 SupportsBroadcast: ."));
    }
}

TEST(NetInterface, NeedsADescriptor) {
    constexpr std::size_t kMoreThanThereAre = 100;
    std::vector<platform::UdpSocket> sockets(kMoreThanThereAre);
    platform::SystemErrorCode error = 0;
    std::size_t opened = 0;
    while (opened < sockets.size() && sockets[opened].Open(error)) {
        ++opened;
    }
    ASSERT_LT(opened, sockets.size());
    std::vector<CZQComNetInterface> interfaces;
    const std::int32_t failure = ErrorOf([&] { CZQComNetInterface::SearchForInterfaces(interfaces); });
    sockets.clear();
    EXPECT_EQ(failure, ZQ_ERR_SOCKET_CREATE);
}

}  // namespace
}  // namespace ZQAPI::test
