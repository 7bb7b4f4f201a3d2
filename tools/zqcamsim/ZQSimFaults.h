// What can be wrong with a simulated camera's answers.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace ZQAPI::sim {

// Each answer is held back for a time drawn from this range.
struct CZQSimDelay {
    std::chrono::microseconds minimum{0};
    std::chrono::microseconds maximum{0};
};

// What an answer looks like on the wire.
enum class EAnswerForm {
    kProper,             // "<hardware address>:<answer>\n"
    kNoColon,            // a space in the colon's place
    kTooShort,           // ends within the hardware address
    kTooLong,            // proper, but filled up to longAnswerBytes
    kEmpty,              // a datagram of 0 bytes
    kWrongAddress,       // proper, with another camera's hardware address
    kControlCharacters,  // proper, with a bell and an escape in the answer
};

// Faults of one of a camera's ports. Shares are 0 (never) to 1 (always).
struct CZQSimPortFaults {
    CZQSimDelay delay;
    double requestLoss = 0;  // share of the requests that the camera does not hear
    double answerLoss = 0;   // share of the answers that get lost
    double duplicates = 0;   // share of the answers that are sent twice
    EAnswerForm form = EAnswerForm::kProper;
    bool properFollows = false;        // a proper answer comes right behind one of another form
    std::size_t longAnswerBytes = 64;  // size of a datagram of the form kTooLong
    bool silent = false;               // hears everything, answers nothing and does nothing
};

struct CZQSimFaults {
    CZQSimPortFaults discovery;
    CZQSimPortFaults command;
};

// Longer than a command module waits for all its tries together: every answer then comes after its command
// has been given up and may meet the next one.
inline constexpr std::chrono::milliseconds kLateAnswerDelay{3200};

// The datagram that carries an answer, in the form that the faults ask for.
std::string FormAnswer(EAnswerForm form, std::string_view hardwareAddress, std::string_view answer,
                       std::size_t longAnswerBytes);

}  // namespace ZQAPI::sim
