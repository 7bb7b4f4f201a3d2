#include "ZQSerialConnection.h"

#include <chrono>
#include <thread>

#include "foundation/ZQStopWatch.h"

namespace ZQAPI {

namespace {

constexpr std::uint64_t kAnswerTimeMs = 1000;
constexpr std::size_t kMaxAnswerLength = 1023;  // what the library takes at most

constexpr std::uint32_t kQuietTimeMs = 500;
constexpr std::uint64_t kMaxTimeUntilQuietMs = 3000;

}  // namespace

std::string CZQSerialConnection::SendCommand(std::string_view command) {
    const std::lock_guard lock(m_mutex);
    if (m_mayAnswerLate) {
        WaitUntilQuiet();
    }
    ThrowIfAborted();
    m_channel->Flush();
    m_mayAnswerLate = true;
    m_channel->Send(command.data(), static_cast<std::uint32_t>(command.size()));
    std::string answer = ReadLine();
    m_mayAnswerLate = false;
    return answer;
}

void CZQSerialConnection::WaitForSends() noexcept {
    std::unique_lock noCommand(m_mutex, std::try_to_lock);
    while (!noCommand) {
        // Each wait of the channel begins with its abort cleared: a single one could come too early.
        m_channel->Abort();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        noCommand.try_lock();
    }
}

void CZQSerialConnection::WaitUntilQuiet() {
    const CZQStopWatch watch(true);
    try {
        char discarded = 0;
        while (watch.GetElapsed() < kMaxTimeUntilQuietMs) {
            ThrowIfAborted();
            m_channel->Recv(&discarded, 1, kQuietTimeMs, false);
        }
    } catch (const CZQException& exception) {
        if (exception.GetErrorNumber() != ZQ_ERR_COM_TIMEOUT) {
            throw;
        }
    }
}

std::string CZQSerialConnection::ReadLine() {
    const CZQStopWatch watch(true);
    std::string answer;
    while (!answer.ends_with('\n')) {
        ThrowIfAborted();
        const std::uint64_t elapsed = watch.GetElapsed();
        if (elapsed > kAnswerTimeMs) {
            ZQ_THROW("CZQSerialConnection::ReadLine", ZQ_ERR_COM_TIMEOUT);
        }
        if (answer.size() == kMaxAnswerLength) {
            ZQ_THROW("CZQSerialConnection::ReadLine", ZQ_ERR_BUFFER_TOO_SMALL);
        }
        char byte = 0;
        m_channel->Recv(&byte, 1, static_cast<std::uint32_t>(kAnswerTimeMs - elapsed), false);
        // A NUL would end the answer early for whoever reads it as a text.
        if (byte == '\0') {
            ZQ_THROW("CZQSerialConnection::ReadLine", ZQ_ERR_BAD_VALUE, "The answer holds a NUL");
        }
        answer += byte;
    }
    return answer;
}

}  // namespace ZQAPI
