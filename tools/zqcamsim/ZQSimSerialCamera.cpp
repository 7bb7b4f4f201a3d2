#include "ZQSimSerialCamera.h"

#include <algorithm>
#include <utility>

namespace ZQAPI::sim {

void CZQSimSerialCamera::Hear(std::string_view bytes, Clock::time_point now) {
    for (const char byte : bytes) {
        if (byte != '\n') {
            m_heard += byte;
            continue;
        }
        ++m_nofCommands;
        Answer(m_heard, now);
        m_heard.clear();
    }
}

void CZQSimSerialCamera::Answer(std::string_view command, Clock::time_point now) {
    if (m_faults.silent || Happens(m_faults.requestLoss)) {
        return;
    }
    const std::string answer = Execute(command);
    if (Happens(m_faults.answerLoss)) {
        return;
    }
    std::string line = FormLine(m_faults.form, answer, m_faults.longAnswerBytes);
    if (m_faults.properFollows && m_faults.form != EAnswerForm::kProper) {
        line += FormLine(EAnswerForm::kProper, answer, 0);
    }
    if (Happens(m_faults.duplicates)) {
        line += line;
    }
    std::uniform_int_distribution<std::int64_t> delay(
        m_faults.delay.minimum.count(), std::max(m_faults.delay.minimum, m_faults.delay.maximum).count());
    Clock::time_point due = now + std::chrono::microseconds(delay(m_random));
    if (!m_answers.empty()) {
        due = std::max(due, m_answers.back().due);
    }
    for (const char byte : line) {
        due += m_faults.byteDelay;
        m_answers.push_back({due, byte});
    }
}

std::string CZQSimSerialCamera::Execute(std::string_view command) {
    const auto instead = std::find_if(m_faults.instead.begin(), m_faults.instead.end(),
                                      [command](const auto& pair) { return pair.first == command; });
    if (instead == m_faults.instead.end()) {
        return m_camera.Execute(command);
    }
    std::string answer = std::move(instead->second);
    m_faults.instead.erase(instead);
    return answer;
}

std::string CZQSimSerialCamera::Say(Clock::time_point now, std::size_t maxBytes) {
    std::string bytes;
    while (!m_answers.empty() && m_answers.front().due <= now && bytes.size() < maxBytes) {
        bytes += m_answers.front().byte;
        m_answers.pop_front();
    }
    return bytes;
}

std::optional<CZQSimSerialCamera::Clock::time_point> CZQSimSerialCamera::NextDue() const {
    return m_answers.empty() ? std::nullopt : std::optional(m_answers.front().due);
}

bool CZQSimSerialCamera::Happens(double share) {
    return share > 0 && std::bernoulli_distribution(share)(m_random);
}

}  // namespace ZQAPI::sim
