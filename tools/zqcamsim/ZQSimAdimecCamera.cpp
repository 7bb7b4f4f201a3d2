#include "ZQSimAdimecCamera.h"

#include <utility>

namespace ZQAPI::sim {

namespace {

constexpr char kStart = '@';
constexpr char kEnd = '\r';
constexpr char kAck = '\x06';
constexpr char kNak = '\x15';

constexpr std::int32_t kUnknownCommand = 1;

}  // namespace

CZQSimAdimecCamera::CZQSimAdimecCamera(CZQSimAdimecIdentity identity, CZQSimAdimecFaults faults)
    : m_identity(std::move(identity)), m_faults(std::move(faults)) {}

std::string CZQSimAdimecCamera::Receive(std::string_view bytes) {
    std::string sent;
    for (const char byte : bytes) {
        if (byte == kStart) {
            m_incoming.emplace();
        } else if (m_incoming && byte == kEnd) {
            sent += Answer(*std::exchange(m_incoming, std::nullopt));
        } else if (m_incoming) {
            *m_incoming += byte;
        }
    }
    return sent;
}

std::string CZQSimAdimecCamera::TakeLateAnswers() {
    return std::exchange(m_late, {});
}

std::string CZQSimAdimecCamera::Answer(const std::string& telegram) {
    m_telegrams.push_back(telegram);
    const std::size_t count = m_telegrams.size();
    if (count <= m_faults.silences) {
        return {};
    }
    std::string answer = m_faults.noise;
    if (count <= m_faults.refusals) {
        answer += kNak;
    } else {
        answer += kAck + Execute(telegram);
    }
    if (count <= m_faults.lateAnswers) {
        m_late += answer;
        return {};
    }
    return answer;
}

std::string CZQSimAdimecCamera::Execute(const std::string& command) {
    if (command == "ERR?") {
        return Data(std::to_string(std::exchange(m_errorStatus, 0)));
    }
    m_errorStatus = m_faults.errorStatus;
    if (command == "ID?") {
        return Data('"' + m_identity.id);
    }
    if (command == "SN?") {
        return Data('"' + m_identity.serialNumber);
    }
    if (command == "BS?") {
        return Data('"' + m_identity.buildState);
    }
    if (command != "FD") {
        // Accepted all the same: what is wrong with a command is told by its status alone.
        m_errorStatus = kUnknownCommand;
    }
    return {};
}

std::string CZQSimAdimecCamera::Data(std::string text) const {
    if (m_faults.controlCharacters) {
        text += "\a\x1B";
    }
    if (text.size() < m_faults.longAnswerBytes) {
        text.resize(m_faults.longAnswerBytes, 'x');
    }
    return m_faults.noise + kStart + text + kEnd;
}

}  // namespace ZQAPI::sim
