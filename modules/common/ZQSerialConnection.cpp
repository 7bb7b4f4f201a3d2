#include "ZQSerialConnection.h"

#include <chrono>
#include <thread>

#include "foundation/ZQStopWatch.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kAnswerTimeMs = 1000;
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
    std::string answer = ReceiveLine(kAnswerTimeMs, [this](std::uint32_t leftMs) {
        char byte = 0;
        m_channel->Recv(&byte, 1, leftMs, false);
        return byte;
    });
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

}  // namespace ZQAPI
