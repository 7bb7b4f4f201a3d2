// The mark by which programs keep others from a terminal's file, which root is let past.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/SerialPort.h"
#include "support/ComPorts.h"

namespace ZQAPI::test {
namespace {

TEST(ExclusivePort, TheMarkOfAnotherProgramStays) {
    constexpr std::uint32_t kNumber = 99;
    platform::PseudoTerminal line;
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(line.Open(error)) << error;
    ComPortFolder::Link(kNumber, line.PortPath());
    const int other = ::open(line.PortPath().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(other, 0);
    const auto isMarked = [other] {
        int mark = 0;
        EXPECT_EQ(::ioctl(other, TIOCGEXCL, &mark), 0);
        return mark != 0;
    };
    platform::SerialPort port;
    ASSERT_EQ(::ioctl(other, TIOCEXCL), 0);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    EXPECT_FALSE(port.Open("COM99", error));
    EXPECT_TRUE(isMarked());
    ASSERT_EQ(::flock(other, LOCK_UN), 0);
    port.Open("COM99", error);  // root's succeeds
    port.Close();
    EXPECT_TRUE(isMarked());

    ASSERT_EQ(::ioctl(other, TIOCNXCL), 0);
    ASSERT_TRUE(port.Open("COM99", error)) << error;
    EXPECT_TRUE(isMarked());
    port.Close();
    EXPECT_FALSE(isMarked());
    ::close(other);
}

}  // namespace
}  // namespace ZQAPI::test
