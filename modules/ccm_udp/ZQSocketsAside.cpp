#include "ZQSocketsAside.h"

#include <chrono>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "communication/ZQComWs2DllInit.h"
#include "foundation/ZQNoDestructor.h"
#include "platform/ModuleThread.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

constexpr std::chrono::seconds kLongestUnderWay{3};
// Thousands of silent cameras are asked within that time.
constexpr std::size_t kMaxSockets = 16;

// Thread-safe. Holds nothing while no socket is aside: there is then nothing to give back when the module is
// unloaded, which happens under the loader's lock, where the socket library must not be called.
class SocketsAside {
public:
    using Clock = std::chrono::steady_clock;

    // True when a thread is needed that runs CloseWhenDue.
    bool Add(platform::UdpSocket socket) {
        const std::lock_guard lock(m_mutex);
        if (!m_socketLibrary) {
            m_socketLibrary.emplace();
        }
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
        m_socketLibrary.reset();
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

    std::mutex m_mutex;
    // The connection that the sockets were made for may be gone.
    std::optional<CZQComWs2DllInit> m_socketLibrary;
    std::list<Entry> m_sockets;  // in the order in which they are due
    bool m_closing = false;
};

void PutAside(platform::UdpSocket socket) {
    static CZQNoDestructor<SocketsAside> aside;
    SocketsAside& sockets = aside.Get();
    if (!sockets.Add(std::move(socket))) {
        return;
    }
    platform::SystemErrorCode error{};
    if (!platform::StartModuleThread([&sockets] { sockets.CloseWhenDue(); }, error)) {
        // They stay open until the next one that is put aside.
        sockets.NoThread();
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
