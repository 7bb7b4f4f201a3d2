#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "ZQSimSerialCamera.h"
#include "tools/platform/PseudoTerminal.h"

namespace ZQAPI::sim {

// Puts cameras on serial ports, each on a pseudo-terminal of its own. Runs from construction to destruction,
// on one thread of its own. Thread-safe.
class CZQSimSerialServer {
public:
    // Answers when it returns. ZQ_ERR_NOT_SUPPORTED when this system gives no (more) pseudo-terminals.
    explicit CZQSimSerialServer(std::vector<CZQSimCamera> cameras, std::uint32_t seed = 1);
    ~CZQSimSerialServer();
    CZQSimSerialServer(const CZQSimSerialServer&) = delete;
    CZQSimSerialServer& operator=(const CZQSimSerialServer&) = delete;

    std::size_t GetCount() const noexcept { return m_stations.size(); }
    // The file to open as the camera's port. Cameras are counted from 0.
    std::string GetPort(std::size_t camera) const;
    // From the next command on.
    void SetFaults(std::size_t camera, const CZQSimPortFaults& faults);
    std::uint64_t GetNofCommands(std::size_t camera) const;
    // The port is gone for good when it returns.
    void Unplug(std::size_t camera);

private:
    struct Station {  // a camera on its line
        Station(CZQSimCamera model, std::uint32_t seed) : camera(std::move(model), seed) {}
        CZQSimSerialCamera camera;
        platform::PseudoTerminal line;  // closed by the thread alone, which waits for it without the lock
        bool isUnplugged = false;
    };

    void Run();
    // Returns how long nothing is due.
    std::chrono::milliseconds ServeOnce();
    std::vector<const platform::PseudoTerminal*> OpenLines() const;

    mutable std::mutex m_mutex;
    std::vector<std::unique_ptr<Station>> m_stations;
    std::condition_variable m_unplugged;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

}  // namespace ZQAPI::sim
