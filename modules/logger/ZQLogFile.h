#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/AppendedFile.h"

namespace ZQAPI {

struct SLogLimits {
    std::uint64_t fileSize = 0;  // bytes at which a file is put aside
    std::uint32_t nofFiles = 2;  // with the current one
};

// The log of a program: the current file, and beside it those that were put aside, NAME.1 (the youngest), NAME.2 and so
// on. Any number of processes write to it. Bound to one thread.
class CZQLogFile {
public:
    explicit CZQLogFile(std::string path) : m_path(std::move(path)) {}

    // Adds the entry, one or more whole lines: it is in one piece and lost to nobody, whoever else writes. The folder is
    // made if need be. Waits for other processes for a fraction of a second at most. False: nothing was written, `reason`
    // says why.
    bool Append(const std::string& entry, const SLogLimits& limits, std::string& reason);

    const std::string& Path() const noexcept { return m_path; }

private:
    using Clock = std::chrono::steady_clock;

    bool Open(platform::AppendedFile& file, platform::SystemErrorCode& error) const;
    bool Lock(platform::AppendedFile& file);
    bool PutAside(std::uint32_t nofFiles, platform::SystemErrorCode& error) const;
    std::string Former(std::uint32_t number) const { return m_path + "." + std::to_string(number); }

    const std::string m_path;
    Clock::time_point m_impatientUntil{};
};

}  // namespace ZQAPI
