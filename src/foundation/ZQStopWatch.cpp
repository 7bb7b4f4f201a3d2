#include "foundation/ZQStopWatch.h"

#include <cinttypes>

#include "foundation/ZQHighResolutionClock.h"

namespace ZQAPI {

CZQStopWatch::CZQStopWatch(bool start) {
    if (start) {
        Start();
    }
}

void CZQStopWatch::Start() {
    m_startMs = CZQHighResolutionClock::NowMs();
    m_stopMs = 0;
}

void CZQStopWatch::Stop() {
    m_stopMs = CZQHighResolutionClock::NowMs();
}

std::uint64_t CZQStopWatch::GetElapsed() const {
    return (m_stopMs != 0 ? m_stopMs : CZQHighResolutionClock::NowMs()) - m_startMs;
}

CZQString CZQStopWatch::ToString() const {
    if (m_stopMs == 0) {
        return "running";
    }
    return CZQString::Formatted("%" PRIu32, static_cast<std::uint32_t>(GetElapsed()));
}

}  // namespace ZQAPI
