// PATH, which is given back as it was.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/Process.h"

namespace ZQAPI::test {

class SearchPath {
public:
    SearchPath() : m_before(Get()) {}
    SearchPath(const SearchPath&) = delete;
    SearchPath& operator=(const SearchPath&) = delete;
    ~SearchPath() { Set(m_before); }

    static void Set(const std::string& path) {
        platform::SystemErrorCode error = 0;
        EXPECT_TRUE(platform::SetEnvironmentText("PATH", path, error)) << error;
    }
    static std::string Get() {
        std::string path;
        platform::GetEnvironmentText("PATH", path);
        return path;
    }

private:
    const std::string m_before;
};

}  // namespace ZQAPI::test
