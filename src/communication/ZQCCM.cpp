#include "communication/ZQCCM.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQCCM::~CZQCCM() {
    try {
        CloseCCM();
    } catch (...) {
        DebugOutput("ZQSDK: !! a command module failed to close");
    }
}

void CZQCCM::OpenCCM(const CZQString& moduleFile, const CZQString& parameter,
                     const CZQString& commandAddress) {
    CloseCCM();
    if (IsAborted()) {
        ZQ_THROW("CZQCCM::OpenCCM", ZQ_ERR_COM_ABORTED);
    }
    OpenLibrary(moduleFile);
    // Each loading and unloading of a module would cost the process a thread-local index.
    KeepLibrary();
    ZQCCM_HANDLE connection = 0;
    const std::int32_t result = m_open(parameter.c_str(), commandAddress.c_str(), &connection);
    if (result <= 0) {
        CloseLibrary();
        ZQ_THROW("CZQCCM::OpenCCM", result, "CommandAddress=%s", commandAddress.c_str());
    }
    KeepConnection(connection);
}

// It may have been aborted while the module was opening it.
void CZQCCM::KeepConnection(ZQCCM_HANDLE connection) {
    const std::lock_guard lock(m_mutex);
    if (m_aborted) {
        m_close(connection);
        ZQ_THROW("CZQCCM::OpenCCM", ZQ_ERR_COM_ABORTED);
    }
    m_connection = connection;
}

ZQCCM_HANDLE CZQCCM::ConnectionInUse() {
    const std::lock_guard lock(m_mutex);
    if (m_aborted) {
        ZQ_THROW("CZQCCM::SendCmd", ZQ_ERR_COM_ABORTED);
    }
    if (m_connection == 0) {
        ZQ_THROW("CZQCCM::SendCmd", ZQ_ERR_CONNECTION_NOT_OPEN);
    }
    return m_connection;
}

bool CZQCCM::IsAborted() {
    const std::lock_guard lock(m_mutex);
    return m_aborted;
}

CZQString CZQCCM::SendCmd(const CZQString& command) {
    if (!IsLibraryOpen()) {
        ZQ_THROW("CZQCCM::SendCmd", ZQ_ERR_MODULE_NOT_OPEN);
    }
    std::array<char, 1024> answer{};
    const std::int32_t result =
        m_send(ConnectionInUse(), command.c_str(), answer.data(), static_cast<std::uint32_t>(answer.size()));
    if (result <= 0) {
        ZQ_THROW("CZQCCM::SendCmd", IsAborted() ? ZQ_ERR_COM_ABORTED : result, "Command=%s",
                 CZQString(command).TrimRight("\n").c_str());
    }
    // The module may have filled the buffer to its last byte.
    return std::string(answer.begin(), std::find(answer.begin(), answer.end(), '\0'));
}

void CZQCCM::CloseCCM() {
    std::int32_t result = ZQ_OK;
    {
        const std::lock_guard lock(m_mutex);
        if (m_connection == 0 || !IsLibraryOpen()) {
            return;
        }
        result = m_close(std::exchange(m_connection, ZQCCM_HANDLE{0}));
    }
    CloseLibrary();
    if (result <= 0) {
        ZQ_THROW("CZQCCM::CloseCCM", result);
    }
}

void CZQCCM::Abort() noexcept {
    const std::lock_guard lock(m_mutex);
    m_aborted = true;
    if (m_connection != 0) {
        // What the module says to it matters to nobody any more.
        m_close(std::exchange(m_connection, ZQCCM_HANDLE{0}));
    }
}

}  // namespace ZQAPI
