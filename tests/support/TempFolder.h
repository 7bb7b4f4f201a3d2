// A folder of its own for one test, removed with it.
#pragma once

#include <atomic>
#include <filesystem>
#include <string>

#include "platform/Process.h"

namespace ZQAPI::test {

class TempFolder {
public:
    TempFolder() {
        // A process id may come again, and with it a folder that could not be removed.
        static std::atomic<unsigned> count{0};
        do {
            m_path = std::filesystem::temp_directory_path() /
                     ("zqtest-" + std::to_string(platform::ProcessId()) + "-" + std::to_string(++count));
        } while (!std::filesystem::create_directory(m_path));
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& Path() const { return m_path; }
    std::string File(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

}  // namespace ZQAPI::test
