#include "ZQCommandSocket.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <optional>
#include <thread>
#include <utility>

#include "communication/ZQComWs2DllInit.h"
#include "foundation/ZQException.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"
#include "platform/ModuleThread.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

constexpr std::chrono::seconds kLongestUnderWay{3};
// Thousands of silent cameras are asked within that time.
constexpr std::size_t kMaxSockets = 16;

constexpr std::size_t kMaxIdleSockets = 32;

CZQIdleSockets::CameraKey KeyOf(const CZQUdpCameraAddress& camera) {
    CZQIdleSockets::CameraKey key{};
    if (camera.IsBroadcast()) {
        camera.hardwareAddress.copy(key.data(), key.size());
    } else {
        std::memcpy(key.data(), &camera.addressBe, sizeof camera.addressBe);
    }
    return key;
}

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

struct SharedIdleSockets {
    std::mutex mutex;
    std::weak_ptr<CZQIdleSockets> sockets;
};

SharedIdleSockets& GetSharedIdleSockets() {
    static CZQNoDestructor<SharedIdleSockets> shared;
    return shared.Get();
}

}  // namespace

std::shared_ptr<CZQIdleSockets> CZQIdleSockets::Shared() {
    SharedIdleSockets& shared = GetSharedIdleSockets();
    const std::lock_guard lock(shared.mutex);
    auto sockets = shared.sockets.lock();
    if (!sockets) {
        sockets = std::make_shared<CZQIdleSockets>();
        shared.sockets = sockets;
    }
    return sockets;
}

// Nothing of it stays behind when the module is unloaded.
CZQIdleSockets::~CZQIdleSockets() {
    SharedIdleSockets& shared = GetSharedIdleSockets();
    const std::lock_guard lock(shared.mutex);
    if (shared.sockets.expired()) {
        shared.sockets.reset();
    }
}

bool CZQIdleSockets::Socket::CanCarry(const CZQUdpCameraAddress& camera,
                                      const CameraKey& key) const noexcept {
    const auto end = cameras.begin() + nofCameras;
    return localBe == camera.localBe && nofCameras < cameras.size() &&
           std::find(cameras.begin(), end, key) == end;
}

CZQIdleSockets::OneSocket CZQIdleSockets::Take(const CZQUdpCameraAddress& camera) {
    const CameraKey key = KeyOf(camera);
    OneSocket taken;
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_sockets.begin(), m_sockets.end(),
                                    [&](const Socket& socket) { return socket.CanCarry(camera, key); });
    if (found != m_sockets.end()) {
        taken.splice(taken.end(), m_sockets, found);
    }
    return taken;
}

CZQIdleSockets::OneSocket CZQIdleSockets::TakeOrOpen(const CZQUdpCameraAddress& camera) {
    OneSocket taken = Take(camera);
    // Whoever was asked through it knows its port, and may have answered for the next camera already.
    while (!taken.empty() && taken.front().udp.NextDatagramSize()) {
        PutAside(std::move(taken.front().udp));
        taken = Take(camera);
    }
    return taken.empty() ? Open(camera) : std::move(taken);
}

CZQIdleSockets::OneSocket CZQIdleSockets::Open(const CZQUdpCameraAddress& camera) {
    OneSocket opened(1);
    Socket& socket = opened.front();
    socket.localBe = camera.localBe;
    socket.room = std::make_unique_for_overwrite<std::byte[]>(Socket::kRoomSize);
    platform::SystemErrorCode error{};
    platform::Ipv4SocketAddress local;
    local.addressBe = camera.localBe;
    if (!socket.udp.Open(error) || (camera.IsBroadcast() && !socket.udp.Bind(local, error))) {
        ZQ_THROW("CZQIdleSockets::Open", ZQ_ERR_SOCKET_CREATE, "%s", FormatSystemError(error).c_str());
    }
    if (camera.IsBroadcast() && !socket.udp.EnableBroadcast(error)) {
        ZQ_THROW("CZQIdleSockets::Open", ZQ_ERR_SOCKET_OPTION, "%s", FormatSystemError(error).c_str());
    }
    return opened;
}

void CZQIdleSockets::Add(OneSocket socket) noexcept {
    OneSocket closed;  // once the lock is released
    const std::lock_guard lock(m_mutex);
    const bool isWornOut = socket.front().nofCameras == socket.front().cameras.size();
    OneSocket& to = isWornOut ? closed : m_sockets;
    to.splice(to.end(), socket);
    if (m_sockets.size() > kMaxIdleSockets) {
        closed.splice(closed.end(), m_sockets, m_sockets.begin());
    }
}

CZQCommandSocket::CZQCommandSocket(CZQIdleSockets& idle, const CZQUdpCameraAddress& camera)
    : m_idle(idle), m_socket(idle.TakeOrOpen(camera)) {
    CZQIdleSockets::Socket& socket = m_socket.front();
    socket.cameras[socket.nofCameras++] = KeyOf(camera);
}

CZQCommandSocket::~CZQCommandSocket() {
    if (m_isAnswered) {
        m_idle.Add(std::move(m_socket));
        return;
    }
    try {
        PutAside(std::move(m_socket.front().udp));
    } catch (...) {
        platform::WriteDebugOutput("ZQSDK: !! a socket of the UDP command module could not be put aside");
    }
}

}  // namespace ZQAPI
