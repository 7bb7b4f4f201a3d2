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
    m_connection = connection;
}

CZQString CZQCCM::SendCmd(const CZQString& command) {
    const SourceLocation here = ZQ_HERE("CZQCCM::SendCmd");
    if (!IsLibraryOpen()) {
        throw CZQException(here, ZQ_ERR_MODULE_NOT_OPEN);
    }
    if (m_connection == 0) {
        throw CZQException(here, ZQ_ERR_CONNECTION_NOT_OPEN);
    }
    std::array<char, 1024> answer{};
    const std::int32_t result = reinterpret_cast<ZQCCM_SendCmd_Function>(m_functions[kSend])(
        m_connection, command.c_str(), answer.data(), static_cast<std::uint32_t>(answer.size()));
    if (result <= 0) {
        throw CZQException(here, result, "Command=%s", CZQString(command).TrimRight("\n").c_str());
    }
    // The module may have filled the buffer to its last byte.
    return std::string(answer.begin(), std::find(answer.begin(), answer.end(), '\0'));
}

void CZQCCM::CloseCCM() {
    if (m_connection == 0 || !IsLibraryOpen()) {
        return;
    }
    const std::int32_t result = reinterpret_cast<ZQCCM_CloseCCM_Function>(m_functions[kClose])(
        std::exchange(m_connection, ZQCCM_HANDLE{0}));
    CloseLibrary();
    if (result <= 0) {
        throw CZQException(ZQ_HERE("CZQCCM::CloseCCM"), result);
    }
}

}  // namespace ZQAPI
