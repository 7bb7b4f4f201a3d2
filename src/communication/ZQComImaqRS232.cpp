#include "communication/ZQComImaqRS232.h"

#include <algorithm>
#include <utility>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kWriteTimeoutMs = 1000;

// An abort is noticed within this time.
constexpr std::chrono::milliseconds kMaxReadWait{100};

}  // namespace

CZQComImaqRS232::~CZQComImaqRS232() {
    CZQComImaqRS232::CloseLine();
}

void CZQComImaqRS232::SetConfig(const CZQComConfigBase& config, const SSourceLocation& here) {
    m_config = CastConfig<CZQComImaqRS232Config>(config, here);
}

void CZQComImaqRS232::OpenLine() {
    m_library.emplace(m_kitFolder);
    CZQImaqLibrary::Status status = m_library->OpenInterface(m_config.GetInterfaceName(), m_interface);
    if (status == 0) {
        status = m_library->OpenSession(m_interface, m_session);
    }
    if (status != 0) {
        ZQ_THROW("CZQComImaqRS232::Open", ZQ_ERR_RS232_OPEN, "%s: %s", m_config.GetInterfaceName().c_str(),
                 m_library->FormatStatus(status).c_str());
    }
}

void CZQComImaqRS232::CloseLine() noexcept {
    for (CZQImaqLibrary::Id* const id : {&m_session, &m_interface}) {
        if (*id != 0 && m_library->CloseId(std::exchange(*id, 0)) != 0) {
            DebugOutput("ZQSDK: !! (IMAQ RS232) %s could not be closed", m_config.GetInterfaceName().c_str());
        }
    }
    m_library.reset();
}

bool CZQComImaqRS232::Discard(CZQString& reason) {
    return IsDone(m_library->Flush(m_session), reason);
}

bool CZQComImaqRS232::Write(std::span<const std::byte> data, CZQString& reason) {
    std::uint32_t written = 0;
    const CZQImaqLibrary::Status status = m_library->Write(
        m_session, {reinterpret_cast<const char*>(data.data()), data.size()}, written, kWriteTimeoutMs);
    reason = m_library->FormatStatus(status);
    return status == 0 && written == data.size();
}

std::optional<std::size_t> CZQComImaqRS232::Read(std::span<std::byte> room, std::chrono::milliseconds maxWait,
                                                 CZQString& reason) {
    const auto wait = static_cast<std::uint32_t>(std::min(maxWait, kMaxReadWait).count());
    const CZQImaqLibrary::Status status =
        m_library->ReadByte(m_session, reinterpret_cast<char&>(room.front()), wait);
    if (CZQImaqLibrary::IsReadTimeout(status)) {
        return 0;
    }
    return IsDone(status, reason) ? std::optional<std::size_t>(1) : std::nullopt;
}

bool CZQComImaqRS232::IsDone(CZQImaqLibrary::Status status, CZQString& reason) const {
    if (status != 0) {
        reason = m_library->FormatStatus(status);
    }
    return status == 0;
}

}  // namespace ZQAPI
