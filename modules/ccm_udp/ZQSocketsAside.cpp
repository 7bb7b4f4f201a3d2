#include "ZQSocketsAside.h"

#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "communication/ZQComWs2DllInit.h"
#include "platform/ModuleThread.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

constexpr std::chrono::seconds kLongestUnderWay{3};
// Thousands of silent cameras are asked within that time.
constexpr std::size_t kMaxSockets = 16;

class SocketsAside {
public:
    using Clock = std::chrono::steady_clock;

    // True when a thread is needed that runs CloseWhenDue.
    bool Add(platform::UdpSocket socket) {
        const std::lock_guard lock(m_mutex);
        if (m_sockets.size() == kMaxSockets) {
            m_sockets.pop_front();
        }
        m_sockets.push_back({Clock::now() + kLongestUnderWay, std::move(socket)});
        return !std::exchange(m_closing, true);
    }

    // Until no socket is left.
    void CloseWhenDue() {
        std::unique_lock lock(m_mutex);
        while (!m_sockets.empty()) {
            const auto due = m_sockets.front().due;
            lock.unlock();
            std::this_thread::sleep_until(due);
            lock.lock();
            while (!m_sockets.empty() && m_sockets.front().due <= Clock::now()) {
                m_sockets.pop_front();
            }
        }
        m_closing = false;
    }

    // The next Add asks for a thread again.
    void NoThread() {
        const std::lock_guard lock(m_mutex);
        m_closing = false;
    }

private:
    struct Entry {
        Clock::time_point due;
        platform::UdpSocket socket;
    };

    CZQComWs2DllInit m_socketLibrary;  // the connection that the sockets were made for may be gone
    std::mutex m_mutex;
    std::deque<Entry> m_sockets;  // in the order in which they are due
    bool m_closing = false;
};

void PutAside(platform::UdpSocket socket) {
    // Shared with the thread: at the end of the process it may outlive this function's static object.
    static const auto sockets = std::make_shared<SocketsAside>();
    if (!sockets->Add(std::move(socket))) {
        return;
    }
    platform::SystemErrorCode error{};
    if (!platform::StartModuleThread([kept = sockets] { kept->CloseWhenDue(); }, error)) {
        // They stay open until the next one that is put aside.
        sockets->NoThread();
        platform::WriteDebugOutput("ZQSDK: !! no thread to close the UDP command module's sockets");
    }
}

}  // namespace

CZQCommandSocket::~CZQCommandSocket() {
    if (!m_socket.IsOpen()) {
        return;
    }
    try {
        PutAside(std::move(m_socket));
    } catch (...) {
        platform::WriteDebugOutput("ZQSDK: !! a socket of the UDP command module could not be put aside");
    }
}

}  // namespace ZQAPI
