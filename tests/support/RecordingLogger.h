// A logger that keeps what it is given, for tests to look at.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "foundation/ZQLogger.h"

namespace ZQAPI::test {

class LogRecord {
public:
    void Add(const CZQException& exception) {
        const std::lock_guard lock(m_mutex);
        m_entries.push_back(exception);
    }
    // What was logged since the last call.
    std::vector<CZQException> Take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_entries, {});
    }

private:
    std::mutex m_mutex;
    std::vector<CZQException> m_entries;
};

// What the recording logger was given; one per test program.
inline LogRecord& Logged() {
    static LogRecord record;
    return record;
}

class RecordingLogger : public CZQILogger {
public:
    void Log(std::uint32_t /*level*/, const CZQException& exception) override { Logged().Add(exception); }
    CZQString FormatError(std::int32_t /*errorNumber*/) override { return {}; }
};

inline void InstallRecordingLogger() {
    SetGlobalLogger(std::make_unique<RecordingLogger>());
}

}  // namespace ZQAPI::test
