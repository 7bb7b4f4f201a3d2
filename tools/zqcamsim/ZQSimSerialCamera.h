#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "ZQSimCamera.h"
#include "ZQSimFaults.h"

namespace ZQAPI::sim {

// A camera at the end of a serial line: bytes in, bytes out at their time. It knows nothing of what carries
// them. Guarded by its owner.
class CZQSimSerialCamera {
public:
    using Clock = std::chrono::steady_clock;

    // All chance comes from the seed.
    explicit CZQSimSerialCamera(CZQSimCamera camera, std::uint32_t seed = 1)
        : m_camera(std::move(camera)), m_random(seed) {}

    const CZQSimCamera& GetCamera() const noexcept { return m_camera; }
    void SetFaults(const CZQSimPortFaults& faults) { m_faults = faults; }
    std::uint64_t GetNofCommands() const noexcept { return m_nofCommands; }

    // Bytes arrive; each line feed ends a command.
    void Hear(std::string_view bytes, Clock::time_point now);
    // The bytes that are due by now, as many as asked for at most.
    std::string Say(Clock::time_point now, std::size_t maxBytes);
    // When the next byte is due.
    std::optional<Clock::time_point> NextDue() const;

private:
    struct DueByte {
        Clock::time_point due;
        char byte = 0;
    };

    std::string Execute(std::string_view command);
    void Answer(std::string_view command, Clock::time_point now);
    bool Happens(double share);

    CZQSimCamera m_camera;
    CZQSimPortFaults m_faults;
    std::mt19937 m_random;
    std::string m_heard;
    std::deque<DueByte> m_answers;
    std::uint64_t m_nofCommands = 0;
};

}  // namespace ZQAPI::sim
