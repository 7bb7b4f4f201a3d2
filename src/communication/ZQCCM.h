#pragma once

#include <ZQAPI/ZQCommandModule.h>

#include <mutex>

#include "foundation/ZQDynamicDLL.h"

namespace ZQAPI {

// One command module, loaded at run time, and one connection of it. Bound to one thread, but for Abort.
class CZQCCM : public CZQDynamicDLL {
public:
    CZQCCM() = default;
    CZQCCM(const CZQCCM&) = delete;
    CZQCCM& operator=(const CZQCCM&) = delete;
    ~CZQCCM() override;

    // Loads the module file and opens a connection to the command address. Errors of CZQDynamicDLL; what the
    // module reports comes as its own number.
    void OpenCCM(const CZQString& moduleFile, const CZQString& parameter, const CZQString& commandAddress);
    // The answer with its line feeds. ZQ_ERR_MODULE_NOT_OPEN, ZQ_ERR_CONNECTION_NOT_OPEN, the
    // module's own number.
    CZQString SendCmd(const CZQString& command);
    // Closes the connection and frees the module, also when the module then reports an error,
    // which is thrown.
    void CloseCCM();

    // From any thread, for good: closes the connection, which ends a command under way in the kit's own
    // modules. What is opened or sent afterwards: ZQ_ERR_COM_ABORTED.
    void Abort() noexcept;

private:
    ZQCCM_HANDLE ConnectionInUse();
    void KeepConnection(ZQCCM_HANDLE connection);
    bool IsAborted();

    // Per object: modules of several kinds are in use at the same time.
    CZQEntryPoint<decltype(ZQCCM_OpenCCM)> m_open{*this, "ZQCCM_OpenCCM"};
    CZQEntryPoint<decltype(ZQCCM_CloseCCM)> m_close{*this, "ZQCCM_CloseCCM"};
    CZQEntryPoint<decltype(ZQCCM_SendCmd)> m_send{*this, "ZQCCM_SendCmd"};
    std::mutex m_mutex;  // for what follows; held while the module closes a connection
    ZQCCM_HANDLE m_connection = 0;
    bool m_aborted = false;
};

}  // namespace ZQAPI
