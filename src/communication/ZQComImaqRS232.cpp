#include "communication/ZQComImaqRS232.h"

#include <algorithm>
#include <span>
#include <utility>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kWriteTimeoutMs = 1000;

// An abort is noticed within this time.
constexpr std::chrono::milliseconds kMaxWait{100};

// Finer than the library's own clock, so that no wait ends before its time.
using Clock = std::chrono::steady_clock;

}  // namespace

CZQComImaqRS232::~CZQComImaqRS232() {
    CZQComImaqRS232::Close();
}

void CZQComImaqRS232::Open(const CZQString& fileName, const CZQString& section) {
    CZQComImaqRS232Config config;
    config.LoadFromFile(fileName, section);
    Open(config);
}

void CZQComImaqRS232::Open(const CZQComConfigBase& config) {
    m_config = CastConfig<CZQComImaqRS232Config>(config, ZQ_HERE("CZQComImaqRS232::Open"));
    Close();
    try {
        OpenLine();
        Flush();
    } catch (...) {
        Close();
        throw;
    }
    m_abort.exchange(false);
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

void CZQComImaqRS232::Close() noexcept {
    for (CZQImaqLibrary::Id* const id : {&m_session, &m_interface}) {
        if (*id != 0 && m_library->CloseId(std::exchange(*id, 0)) != 0) {
            DebugOutput("ZQSDK: !! (IMAQ RS232) %s could not be closed", m_config.GetInterfaceName().c_str());
        }
    }
    m_library.reset();
}

void CZQComImaqRS232::CheckOpen(const SSourceLocation& here) const {
    if (!IsOpen()) {
        throw CZQException(here, ZQ_ERR_SERIAL_CLOSED);
    }
}

void CZQComImaqRS232::Flush() {
    CheckOpen(ZQ_HERE("CZQComImaqRS232::Flush"));
    const CZQImaqLibrary::Status status = m_library->Flush(m_session);
    if (status != 0) {
        ZQ_THROW("CZQComImaqRS232::Flush", ZQ_ERR_RS232_FLUSH, "%s", m_library->FormatStatus(status).c_str());
    }
}

std::uint32_t CZQComImaqRS232::Send(const void* buffer, std::uint32_t length) {
    CheckOpen(ZQ_HERE("CZQComImaqRS232::Send"));
    if (buffer == nullptr) {
        ZQ_THROW("CZQComImaqRS232::Send", ZQ_ERR_NULL_INPUT);
    }
    if (length == 0) {
        return 0;
    }
    std::uint32_t written = 0;
    const CZQImaqLibrary::Status status =
        m_library->Write(m_session, {static_cast<const char*>(buffer), length}, written, kWriteTimeoutMs);
    if (status != 0 || written < length) {
        ZQ_THROW("CZQComImaqRS232::Send", ZQ_ERR_COM_SEND, "%s", m_library->FormatStatus(status).c_str());
    }
    return length;
}

std::uint32_t CZQComImaqRS232::Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                                    bool returnOnFirstData) {
    if (returnOnFirstData) {
        ZQ_THROW("CZQComImaqRS232::Recv", ZQ_ERR_NOT_SUPPORTED);
    }
    CheckOpen(ZQ_HERE("CZQComImaqRS232::Recv"));
    if (buffer == nullptr) {
        ZQ_THROW("CZQComImaqRS232::Recv", ZQ_ERR_NULL_OUTPUT);
    }
    m_abort.exchange(false);
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    for (char& byte : std::span(static_cast<char*>(buffer), size)) {
        RecvByte(byte, deadline);
    }
    return size;
}

void CZQComImaqRS232::RecvByte(char& byte, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        const auto wait = std::clamp(left, std::chrono::milliseconds::zero(), kMaxWait);
        const CZQImaqLibrary::Status status =
            m_library->ReadByte(m_session, byte, static_cast<std::uint32_t>(wait.count()));
        if (status != 0 && !CZQImaqLibrary::IsReadTimeout(status)) {
            ZQ_THROW("CZQComImaqRS232::Recv", ZQ_ERR_COM_RECV, "%s", m_library->FormatStatus(status).c_str());
        }
        // Before completion is tested: a byte that comes too late doesn't count.
        if (Clock::now() > deadline) {
            ZQ_THROW("CZQComImaqRS232::Recv", ZQ_ERR_COM_TIMEOUT);
        }
        if (m_abort.load()) {
            ZQ_THROW("CZQComImaqRS232::Recv", ZQ_ERR_COM_ABORTED);
        }
        if (status == 0) {
            return;
        }
    }
}

}  // namespace ZQAPI
