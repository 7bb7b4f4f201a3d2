#pragma once

namespace ZQAPI {

// Keeps the system's socket library started while any of these live. Thread-safe.
class CZQComWs2DllInit {
public:
    // ZQ_ERR_SOCKETS_START; a granted version other than 2.0: ZQ_ERR_SOCKETS_VERSION.
    CZQComWs2DllInit() { Startup(); }
    CZQComWs2DllInit(const CZQComWs2DllInit&) = delete;
    CZQComWs2DllInit& operator=(const CZQComWs2DllInit&) = delete;
    ~CZQComWs2DllInit();

    // How many live now.
    static int GetUseCount() noexcept;

private:
    static void Startup();
};

}  // namespace ZQAPI
