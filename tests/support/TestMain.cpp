// The main of every test program: nothing under test may open an error box, so a logger that records is
// installed; and whoever runs it keeps his configuration.
#include <gtest/gtest.h>

#include "platform/Process.h"
#include "support/RecordingLogger.h"

int main(int argc, char** argv) {
    ZQAPI::platform::SystemErrorCode error = 0;
    ZQAPI::platform::SetEnvironmentText("ZQSDK_CONFIG_DIR", "", error);
    ::testing::InitGoogleTest(&argc, argv);
    ZQAPI::test::InstallRecordingLogger();
    return RUN_ALL_TESTS();
}
