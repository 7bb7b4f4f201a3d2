// The main of every test program: nothing under test may open an error box, so a logger that records is
// installed.
#include <gtest/gtest.h>

#include "support/RecordingLogger.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ZQAPI::test::InstallRecordingLogger();
    return RUN_ALL_TESTS();
}
