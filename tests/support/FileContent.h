// Whole files, byte for byte.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "foundation/Io/ZQConfigFile.h"
#include "platform/Files.h"

namespace ZQAPI::test {

inline std::string ContentOf(const CZQString& path) {
    std::string content;
    platform::SystemErrorCode error = 0;
    EXPECT_TRUE(platform::ReadWholeFile(path.str(), content, error)) << path.c_str() << ": " << error;
    return content;
}

inline void WriteContent(const CZQString& path, const std::string& content) {
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(platform::WriteWholeFile(path.str(), content, error)) << path.c_str() << ": " << error;
}

// Writes the content and seals it.
inline void WriteSealed(const CZQString& path, const std::string& content) {
    WriteContent(path, content);
    CZQConfigFile(path, CZQConfigFile::Mode::kRead, false).CreateFileChecksum();
}

}  // namespace ZQAPI::test
