#pragma once

#include <cstdint>

#include "foundation/ZQRoot.h"

namespace ZQAPI {

// Milliseconds since a start, by the library's clock.
class CZQStopWatch : public CZQRoot {
public:
    // Not started, it counts from the clock's zero.
    explicit CZQStopWatch(bool start);

    void Start();
    void Stop();
    std::uint64_t GetElapsed() const;

    // "running", or the elapsed milliseconds.
    CZQString ToString() const override;

private:
    std::uint64_t m_startMs = 0;
    std::uint64_t m_stopMs = 0;  // 0: running
};

}  // namespace ZQAPI
