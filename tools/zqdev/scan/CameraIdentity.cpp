#include "scan/CameraIdentity.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Advice.h"
#include "Progress.h"
#include "Text.h"
#include "communication/ZQComUDP.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "scanners/udp/ZQNetworkCards.h"

namespace ZQAPI::zqdev {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// As the command module has it, but with one more second in which others may contradict.
constexpr milliseconds kLongestWait{4000};
constexpr milliseconds kTimeToContradict{1000};
constexpr milliseconds kBetweenTries{250};
constexpr std::uint32_t kMaxWaitMs = 5;
constexpr std::size_t kMaxAnswers = 16;

// One question, on a socket of its own: an answer does not say what it answers.
class Question {
public:
    Question(const Sighting& sighting, std::string_view command)
        : m_address(device::Text(sighting.camera.UsedAddress)),
          m_isBroadcast(!sighting.card.empty()),
          m_start(sighting.hardwareAddress + ":"),
          m_request((m_isBroadcast ? m_start : "FFFFFFFFFFFF:") + std::string(command)) {
        CZQComUDPConfig config;
        config.SetHostName(m_isBroadcast ? CZQString("255.255.255.255") : m_address);
        if (m_isBroadcast) {
            const CZQStringArray card{sighting.card.substr(0, sighting.card.find('/'))};
            const std::vector<CZQComNetInterface> cards = FindNetworkCards(card);
            config.SetBoundInterface(cards.empty() ? nullptr : &cards.front());
        }
        m_channel.Open(config);
        if (!m_isBroadcast) {
            m_channel.SendToAll({m_address});
        }
    }

    void Ask() { m_channel.Send(m_request.data(), static_cast<std::uint32_t>(m_request.size())); }

    void Listen() {
        m_channel.WaitForDatagram(kMaxWaitMs);
        for (std::uint32_t i = 0; i < CZQComUDP::kMaxBurst; ++i) {
            const auto text = m_channel.TakeDatagram(m_room);
            if (!text) {
                break;
            }
            const bool isFromIt = m_isBroadcast ? text->starts_with(m_start) : IsFromAddress();
            if (isFromIt && text->ends_with('\n') && m_answers.size() < kMaxAnswers) {
                m_answers.emplace(text->substr(0, kLongestKept));
            }
        }
    }

    bool IsAnswered() const { return !m_answers.empty(); }

    // What all that answered say; empty when they do not agree, or it is another camera.
    std::string GetAnswer() const {
        const CZQString answer = *m_answers.begin();
        return m_answers.size() == 1 && answer.view().starts_with(m_start)
                   ? CZQString(answer.view().substr(m_start.size())).TrimRight("\n").Trim(" ").str()
                   : std::string();
    }

private:
    static constexpr std::size_t kLongestKept = 256;

    bool IsFromAddress() const {
        return m_address == FormatIpv4(platform::SwapAddress(m_channel.GetSender().addressBe)).c_str();
    }

    const CZQString m_address;
    const bool m_isBroadcast;
    const std::string m_start;  // of the camera's answers
    const std::string m_request;
    CZQComUDP m_channel;
    std::vector<char> m_room = std::vector<char>(std::size_t{1} << 16);
    std::set<std::string, std::less<>> m_answers;
};

// False when it does not answer. No identifier that any camera has where the answers do not agree.
bool AskIdentity(const Sighting& sighting, std::string& id) {
    std::array<Question, 2> questions{Question{sighting, "SERV:ID?\n"}, Question{sighting, "SYST:SERN?\n"}};
    const auto start = Clock::now();
    auto nextTry = start;
    auto end = start + kLongestWait;
    bool isAnswered = false;
    for (auto now = start; now < end; now = Clock::now()) {
        const bool isDue = now >= nextTry;
        nextTry += isDue ? kBetweenTries : milliseconds(0);
        for (Question& question : questions) {
            if (isDue) {
                question.Ask();
            }
            question.Listen();
        }
        if (!isAnswered && questions[0].IsAnswered() && questions[1].IsAnswered()) {
            isAnswered = true;
            end = Clock::now() + kTimeToContradict;
        }
    }
    if (isAnswered) {
        id = questions[0].GetAnswer() + ":" + questions[1].GetAnswer();
    }
    return isAnswered;
}

}  // namespace

void RequireIdentity(Session& session, const Sighting& sighting) {
    if (sighting.hardwareAddress.empty()) {
        return;
    }
    const std::string id(device::Text(sighting.camera.DeviceID));
    std::string heard;
    bool isAnswered = false;
    WithProgress(session.GetConsole(), "Asking " + Printable(id) + " who it is", [&] {
        try {
            isAnswered = AskIdentity(sighting, heard);
        } catch (const CZQException& exception) {
            throw Failure(FailureLine("nothing was changed: can't ask '" + id + "' who it is",
                                      exception.GetErrorNumber(), exception.ToReason().str()));
        }
    });
    const Words words = {{"id", id},
                         {"hardware-address", sighting.hardwareAddress},
                         {"address", std::string(device::Text(sighting.camera.UsedAddress))}};
    if (!isAnswered) {
        throw Failure(
            Filled("nothing was changed: {hardware-address} at {address} does not say whether it is '{id}'",
                   session.GetKit(), words),
            ExitStatus::kNothingFound);
    }
    if (heard != id) {
        throw Failure(
            Filled("nothing was changed: somebody else than '{id}' answers for {hardware-address} at "
                   "{address}; disconnect whichever is not the camera and try again",
                   session.GetKit(), words));
    }
}

}  // namespace ZQAPI::zqdev
