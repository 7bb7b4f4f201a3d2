#include "communication/ZQComSerial.h"

#include <algorithm>

#include "foundation/ZQStopWatch.h"

namespace ZQAPI {

void CZQComSerial::Open(const CZQString& fileName, const CZQString& section) {
    const auto config = GetConfig().Clone();
    config->LoadFromFile(fileName, section);
    Open(*config);
}

void CZQComSerial::Open(const CZQComConfigBase& config) {
    SetConfig(config, ZQ_HERE(m_methods.open));
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

void CZQComSerial::CheckOpen(const SSourceLocation& here) const {
    if (!IsOpen()) {
        throw CZQException(here, ZQ_ERR_SERIAL_CLOSED);
    }
}

void CZQComSerial::Flush() {
    CheckOpen(ZQ_HERE(m_methods.flush));
    CZQString reason;
    if (!Discard(reason)) {
        ZQ_THROW(m_methods.flush, ZQ_ERR_RS232_FLUSH, "%s", reason.c_str());
    }
}

std::uint32_t CZQComSerial::Send(const void* buffer, std::uint32_t length) {
    CheckOpen(ZQ_HERE(m_methods.send));
    if (buffer == nullptr) {
        ZQ_THROW(m_methods.send, ZQ_ERR_NULL_INPUT);
    }
    CZQString reason;
    if (length > 0 && !Write({static_cast<const std::byte*>(buffer), length}, reason)) {
        ZQ_THROW(m_methods.send, ZQ_ERR_COM_SEND, "%s", reason.c_str());
    }
    return length;
}

std::uint32_t CZQComSerial::Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                                 bool returnOnFirstData) {
    if (returnOnFirstData) {
        ZQ_THROW(m_methods.recv, ZQ_ERR_NOT_SUPPORTED);
    }
    CheckOpen(ZQ_HERE(m_methods.recv));
    if (buffer == nullptr) {
        ZQ_THROW(m_methods.recv, ZQ_ERR_NULL_OUTPUT);
    }
    const CZQStopWatch watch(true);
    m_abort.exchange(false);
    const std::span<std::byte> room(static_cast<std::byte*>(buffer), size);
    for (std::size_t received = 0; received < size;) {
        // Up to the millisecond after the limit, as the library's clock shows it.
        const std::uint64_t left = timeoutMs + 1 - std::min<std::uint64_t>(watch.GetElapsed(), timeoutMs);
        CZQString reason;
        const auto count = Read(room.subspan(received), std::chrono::milliseconds(left), reason);
        if (!count) {
            ZQ_THROW(m_methods.recv, ZQ_ERR_COM_RECV, "%s", reason.c_str());
        }
        received += *count;
        // Before completion is tested: bytes that come too late don't count.
        if (watch.GetElapsed() > timeoutMs) {
            ZQ_THROW(m_methods.recv, ZQ_ERR_COM_TIMEOUT);
        }
        if (m_abort.load()) {
            ZQ_THROW(m_methods.recv, ZQ_ERR_COM_ABORTED);
        }
    }
    return size;
}

}  // namespace ZQAPI
