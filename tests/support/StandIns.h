// The stand-ins for vendors' libraries in a test program, and what they play.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/Process.h"
#include "support/FileBytes.h"
#include "support/SearchPath.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

// While it lives, the stand-ins play what the test writes; at first they have no cameras. One at a time.
// The test program is compiled with ZQ_TEST_STANDINS, the folder of the libraries.
class StandIns {
public:
    StandIns() {
        platform::SystemErrorCode error = 0;
        EXPECT_TRUE(platform::SetEnvironmentText("ZQ_STANDIN_FILE", m_folder.File("play.ini"), error));
    }
    StandIns(const StandIns&) = delete;
    StandIns& operator=(const StandIns&) = delete;
    ~StandIns() = default;

    // The file's new content: see docs/stand-ins.md.
    void Play(const std::string& content) const { WriteBytes(m_folder.Path() / "play.ini", content); }

    // For the key "TraceFile", and what was traced.
    std::string TraceFile() const { return m_folder.File("trace"); }
    std::string Traced() const { return ReadBytes(m_folder.Path() / "trace").value_or(""); }

    // The folder that the libraries lie in, ended by a separator, as a kit's bin path is.
    static std::string Folder() {
        return (std::filesystem::absolute(ZQ_TEST_STANDINS) / "").make_preferred().string();
    }
    // Puts libraries (file names) into a folder of a kit, which is made.
    static void Place(const std::vector<std::string>& files, const std::filesystem::path& folder) {
        std::filesystem::create_directories(folder);
        for (const std::string& file : files) {
            std::filesystem::copy_file(std::filesystem::path(ZQ_TEST_STANDINS) / file, folder / file,
                                       std::filesystem::copy_options::overwrite_existing);
        }
    }

private:
    TempFolder m_folder;
};

// While it lives, the stand-ins' folder is the first one in PATH, where their libraries are found by name.
class StandInPath : public SearchPath {
public:
    StandInPath() { Set(StandIns::Folder() + platform::SearchPathSeparator() + Get()); }
};

}  // namespace ZQAPI::test
