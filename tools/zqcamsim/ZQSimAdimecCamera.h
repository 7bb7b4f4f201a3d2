#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ZQAPI::sim {

// What an Adimec camera says about itself.
struct CZQSimAdimecIdentity {
    std::string id;
    std::string serialNumber;
    std::string buildState;  // its firmware version
};

// What can be wrong with its answers. Counts are of telegrams, from the first one on.
struct CZQSimAdimecFaults {
    static constexpr std::uint32_t kAlways = std::numeric_limits<std::uint32_t>::max();

    std::uint32_t silences = 0;       // so many get no answer at all
    std::uint32_t refusals = 0;       // so many are refused
    std::uint32_t lateAnswers = 0;    // so many are answered when the host has given up
    std::string noise;                // sent before each acknowledgement and each data answer
    std::size_t longAnswerBytes = 0;  // texts are filled up to this length
    std::int32_t errorStatus = 0;     // the status after each known command
    bool controlCharacters = false;   // in every text
};

// The model of an Adimec camera: bytes of the host in, bytes of the camera out. It knows nothing of the line
// between them. Guarded by its owner.
class CZQSimAdimecCamera {
public:
    explicit CZQSimAdimecCamera(CZQSimAdimecIdentity identity, CZQSimAdimecFaults faults = {});

    // What the camera sends when it has heard these bytes, which may be any piece of a telegram.
    std::string Receive(std::string_view bytes);
    // What it sends when the host has given up waiting.
    std::string TakeLateAnswers();

    // The telegrams heard so far, without their frame.
    const std::vector<std::string>& GetTelegrams() const noexcept { return m_telegrams; }

private:
    std::string Answer(const std::string& telegram);
    std::string Execute(const std::string& command);
    std::string Data(std::string text) const;

    CZQSimAdimecIdentity m_identity;
    CZQSimAdimecFaults m_faults;
    std::optional<std::string> m_incoming;  // the telegram that is being heard
    std::vector<std::string> m_telegrams;
    std::string m_late;
    std::int32_t m_errorStatus = 0;
};

}  // namespace ZQAPI::sim
