#include "scanners/udp/ZQUdpSearch.h"

#include <utility>

#include "platform/ModuleThread.h"

namespace ZQAPI {

CZQUdpSearch::Cameras CZQUdpSearch::Run(const CZQString& wantedId) {
    m_wantedId = wantedId;
    if (!m_round.BeginAdding()) {
        return {};
    }
    platform::SystemErrorCode error = 0;
    if (!platform::StartModuleThread([self = shared_from_this()] { self->Listen(); }, error)) {
        Listen();
    }
    m_round.WaitUntilAdded(m_deadline);
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
    Cameras cameras = InOrder();
    m_round.WaitUntilAsked(m_deadline);
    return cameras;
}

CZQUdpSearch::Cameras CZQUdpSearch::InOrder() {
    const std::lock_guard lock(m_mutex);
    Cameras cameras;
    for (SUdpDeviceConnInfo& answer : m_heard.Take()) {
        auto camera = m_cameras.at(answer.hardwareAddress.str());
        cameras.push_back({std::move(answer), std::move(camera)});
    }
    return cameras;
}

void CZQUdpSearch::Listen() noexcept {
    try {
        ListenForUdpDevices(
            m_settings, [this](std::size_t card, const SUdpDeviceConnInfo& answer) { Hear(card, answer); },
            [this] { return Clock::now() < m_deadline && !m_round.IsStopped(); });
    } catch (...) {
        m_failure = std::current_exception();
    }
    m_round.EndAdding();
}

void CZQUdpSearch::Hear(std::size_t card, const SUdpDeviceConnInfo& answer) {
    if (auto camera = Keep(card, answer)) {
        m_round.Add(std::move(camera));
    }
}

// The camera to be asked, if the answer makes one.
std::shared_ptr<CZQUdpCamera> CZQUdpSearch::Keep(std::size_t card, const SUdpDeviceConnInfo& answer) {
    const std::lock_guard lock(m_mutex);
    const auto heard = m_heard.Add(card, answer);
    if (heard != CZQUdpCameras::EHeard::kFirst && heard != CZQUdpCameras::EHeard::kOnEarlierCard) {
        return nullptr;
    }
    auto camera = std::make_shared<CZQUdpCamera>(answer, m_kitFiles, m_neighbours,
                                                 [search = weak_from_this()](const CZQDeviceInfo& device) {
                                                     if (const auto self = search.lock()) {
                                                         self->Check(device);
                                                     }
                                                 });
    const auto former = std::exchange(m_cameras[answer.hardwareAddress.str()], camera);
    if (former) {
        former->Abort(true);
    }
    return camera;
}

void CZQUdpSearch::Check(const CZQDeviceInfo& device) noexcept {
    if (!m_wantedId.IsEmpty() && device.DeviceIDView() == m_wantedId.view()) {
        Stop();
    }
}

}  // namespace ZQAPI
