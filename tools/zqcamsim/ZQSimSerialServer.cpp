#include "ZQSimSerialServer.h"

#include <algorithm>
#include <array>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI::sim {

namespace {

// The longest the thread waits before it looks whether it is to end, or which lines there still are.
constexpr std::chrono::milliseconds kMaxWait{20};

}  // namespace

CZQSimSerialServer::CZQSimSerialServer(std::vector<CZQSimCamera> cameras, std::uint32_t seed) {
    for (CZQSimCamera& camera : cameras) {
        auto station = std::make_unique<Station>(std::move(camera), seed++);
        platform::SystemErrorCode error{};
        if (!station->line.Open(error)) {
            throw CZQException(ZQ_HERE("CZQSimSerialServer::CZQSimSerialServer"), ZQ_ERR_NOT_SUPPORTED,
                               "No pseudo-terminal for camera %zu: %s", m_stations.size() + 1,
                               FormatSystemError(error).c_str());
        }
        m_stations.push_back(std::move(station));
    }
    m_thread = std::thread([this] { Run(); });
}

CZQSimSerialServer::~CZQSimSerialServer() {
    m_stop = true;
    m_thread.join();
}

std::string CZQSimSerialServer::GetPort(std::size_t camera) const {
    const std::lock_guard lock(m_mutex);
    return m_stations.at(camera)->line.PortPath();
}

void CZQSimSerialServer::SetFaults(std::size_t camera, const CZQSimPortFaults& faults) {
    const std::lock_guard lock(m_mutex);
    m_stations.at(camera)->camera.SetFaults(faults);
}

std::uint64_t CZQSimSerialServer::GetNofCommands(std::size_t camera) const {
    const std::lock_guard lock(m_mutex);
    return m_stations.at(camera)->camera.GetNofCommands();
}

void CZQSimSerialServer::Unplug(std::size_t camera) {
    std::unique_lock lock(m_mutex);
    Station& station = *m_stations.at(camera);
    station.isUnplugged = true;
    m_unplugged.wait(lock, [&station] { return !station.line.IsOpen(); });
}

void CZQSimSerialServer::Run() {
    while (!m_stop) {
        const std::chrono::milliseconds wait = ServeOnce();
        platform::PseudoTerminal::WaitAny(OpenLines(), wait);
    }
}

std::vector<const platform::PseudoTerminal*> CZQSimSerialServer::OpenLines() const {
    const std::lock_guard lock(m_mutex);
    std::vector<const platform::PseudoTerminal*> lines;
    for (const auto& station : m_stations) {
        if (station->line.IsOpen()) {
            lines.push_back(&station->line);
        }
    }
    return lines;
}

std::chrono::milliseconds CZQSimSerialServer::ServeOnce() {
    const std::lock_guard lock(m_mutex);
    const auto now = CZQSimSerialCamera::Clock::now();
    std::chrono::milliseconds wait = kMaxWait;
    for (const auto& station : m_stations) {
        if (station->isUnplugged) {
            station->line.Close();
            m_unplugged.notify_all();
            continue;
        }
        std::array<char, 1024> buffer{};
        const std::size_t heard = station->line.Read(std::as_writable_bytes(std::span(buffer)));
        station->camera.Hear({buffer.data(), heard}, now);
        const std::string said = station->camera.Say(now, buffer.size());
        station->line.Write(std::as_bytes(std::span(said)));
        if (const auto due = station->camera.NextDue()) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - now);
            wait = std::clamp(left, std::chrono::milliseconds(0), wait);
        }
    }
    return wait;
}

}  // namespace ZQAPI::sim
