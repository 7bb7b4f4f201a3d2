// A kit of the logger alone, and what it has logged there.
#pragma once

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/ZQAPILogger.h"
#include "support/LocalKit.h"

namespace ZQAPI::test {

class LogFolder {
public:
    LogFolder() {
        const std::filesystem::path library = ZQ_TEST_LOGGER;
        std::filesystem::copy_file(library, Kit() / library.filename());
    }

    // Without a separator at its end.
    std::filesystem::path Kit() const {
        return std::filesystem::path(kit.Paths().GetBinPath().str()).parent_path();
    }
    std::filesystem::path Path() const { return Kit() / "AppData" / "log"; }
    // Of a program's current log; of this one's.
    std::filesystem::path Log(const std::string& program = "test_logger") const {
        return Path() / (program + ".log");
    }

    void Configure(const std::string& lines) const { WriteBytes(kit.ApiIni(), "[Logger]\r\n" + lines); }

    static std::vector<std::string> LinesOf(const std::filesystem::path& file) {
        std::istringstream content(ReadBytes(file).value_or(""));
        std::vector<std::string> lines;
        for (std::string line; std::getline(content, line);) {
            lines.push_back(line.substr(0, line.find('\r')));
        }
        return lines;
    }

    LocalKit kit;
};

inline void LogNumber(CZQAPILogger& logger, int number) {
    logger.Log(kLogLevel, CZQException(ZQ_HERE("Test::Log"), ZQ_ERR_BAD_VALUE, "Number=%d;", number));
}

}  // namespace ZQAPI::test
