#include "communication/ZQCCM.h"

#include <algorithm>
#include <utility>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

enum Function { kOpen, kClose, kSend };

constexpr const char* kNames[] = {"ZQCCM_OpenCCM", "ZQCCM_CloseCCM", "ZQCCM_SendCmd", ""};

}  // namespace

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
        throw CZQException(ZQ_HERE("CZQCCM::OpenCCM"), ZQ_ERR_COM_ABORTED);
    }
    OpenLibrary(moduleFile, kNames, m_functions.data());
    // Each loading and unloading of a module would cost the process a thread-local index.
    KeepLibrary();
    ZQCCM_HANDLE connection = 0;
    const std::int32_t result = reinterpret_cast<ZQCCM_OpenCCM_Function>(m_functions[kOpen])(
        parameter.c_str(), commandAddress.c_str(), &connection);
    if (result <= 0) {
        CloseLibrary();
        throw CZQException(ZQ_HERE("CZQCCM::OpenCCM"), result, "CommandAddress=%s", commandAddress.c_str());
    }
    KeepConnection(connection);
}

// It may have been aborted while the module was opening it.
void CZQCCM::KeepConnection(ZQCCM_HANDLE connection) {
    const std::lock_guard lock(m_mutex);
    if (m_aborted) {
        CloseConnection(connection);
        throw CZQException(ZQ_HERE("CZQCCM::OpenCCM"), ZQ_ERR_COM_ABORTED);
    }
    m_connection = connection;
}

ZQCCM_HANDLE CZQCCM::ConnectionInUse() {
    const std::lock_guard lock(m_mutex);
    if (m_aborted) {
        throw CZQException(ZQ_HERE("CZQCCM::SendCmd"), ZQ_ERR_COM_ABORTED);
    }
    if (m_connection == 0) {
        throw CZQException(ZQ_HERE("CZQCCM::SendCmd"), ZQ_ERR_CONNECTION_NOT_OPEN);
    }
    return m_connection;
}

bool CZQCCM::IsAborted() {
    const std::lock_guard lock(m_mutex);
    return m_aborted;
}

std::int32_t CZQCCM::CloseConnection(ZQCCM_HANDLE connection) const {
    return reinterpret_cast<ZQCCM_CloseCCM_Function>(m_functions[kClose])(connection);
}

CZQString CZQCCM::SendCmd(const CZQString& command) {
    const SourceLocation here = ZQ_HERE("CZQCCM::SendCmd");
    if (!IsLibraryOpen()) {
        throw CZQException(here, ZQ_ERR_MODULE_NOT_OPEN);
    }
    std::array<char, 1024> answer{};
    const std::int32_t result = reinterpret_cast<ZQCCM_SendCmd_Function>(m_functions[kSend])(
        ConnectionInUse(), command.c_str(), answer.data(), static_cast<std::uint32_t>(answer.size()));
    if (result <= 0) {
        throw CZQException(here, IsAborted() ? ZQ_ERR_COM_ABORTED : result, "Command=%s",
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
        result = CloseConnection(std::exchange(m_connection, ZQCCM_HANDLE{0}));
    }
    CloseLibrary();
    if (result <= 0) {
        throw CZQException(ZQ_HERE("CZQCCM::CloseCCM"), result);
    }
}

void CZQCCM::Abort() noexcept {
    const std::lock_guard lock(m_mutex);
    m_aborted = true;
    if (m_connection != 0) {
        // What the module says to it matters to nobody any more.
        CloseConnection(std::exchange(m_connection, ZQCCM_HANDLE{0}));
    }
}

}  // namespace ZQAPI
