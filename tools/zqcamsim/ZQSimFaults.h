// What can be wrong with a simulated camera's answers.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ZQAPI::sim {

// Each answer is held back for a time drawn from this range.
struct CZQSimDelay {
    std::chrono::microseconds minimum{0};
    std::chrono::microseconds maximum{0};
};

// What an answer looks like on the wire: in a datagram, "<hardware address>:<answer>\n" when it is proper,
// and on a serial line, "<answer>\n".
enum class EAnswerForm {
    kProper,
    kNoColon,            // a space in the colon's place; on a line, proper
    kTooShort,           // ends within the hardware address; on a line, within the answer
    kTooLong,            // proper, but filled up to longAnswerBytes
    kEmpty,              // a datagram of 0 bytes; a line of none
    kWrongAddress,       // proper, with another camera's hardware address; on a line, of another maker
    kControlCharacters,  // proper, with a bell and an escape in the answer
    kNoLineFeed,         // filled up to longAnswerBytes, and nothing at the end
};

// Faults of one of a camera's ports, network or serial. Shares are 0 (never) to 1 (always).
struct CZQSimPortFaults {
    CZQSimDelay delay;
    std::chrono::microseconds byteDelay{0};  // on a line: each byte comes so long after the one before
    double requestLoss = 0;                  // share of the requests that the camera does not hear
    double answerLoss = 0;                   // share of the answers that get lost
    double duplicates = 0;                   // share of the answers that are sent twice
    EAnswerForm form = EAnswerForm::kProper;
    bool properFollows = false;        // a proper answer comes right behind one of another form
    std::size_t longAnswerBytes = 64;  // size of an answer of the forms kTooLong and kNoLineFeed
    bool silent = false;               // hears everything, answers nothing and does nothing
    // On a line: commands and what is answered to them in the place of the camera's own answer, once each.
    std::vector<std::pair<std::string, std::string>> instead;
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

// The bytes that carry an answer over a serial line.
std::string FormLine(EAnswerForm form, std::string_view answer, std::size_t longAnswerBytes);

}  // namespace ZQAPI::sim
