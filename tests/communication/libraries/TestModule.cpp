// A command module that fails on request: what it is asked for is in the texts it is given.
#include <ZQAPI/ZQCommandModule.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>

namespace {

std::atomic<std::int32_t> g_closingResult{ZQ_OK};
std::atomic<bool> g_isClosed{true};

}  // namespace

std::int32_t ZQCCM_OpenCCM(const char* parameter, const char* address, ZQCCM_HANDLE* handle) {
    const std::string wanted = parameter;
    if (wanted == "fail" || std::strcmp(address, "nowhere") == 0) {
        return ZQ_ERR_BAD_VALUE;
    }
    if (wanted == "zero") {
        return 0;
    }
    g_isClosed = false;
    g_closingResult = wanted == "close with zero"    ? 0
                      : wanted == "close with error" ? ZQ_ERR_COM_SEND
                                                     : ZQ_OK;
    *handle = wanted == "no handle" ? 0 : 7;
    return 2;  // any number above 0 is a success
}

std::int32_t ZQCCM_CloseCCM(ZQCCM_HANDLE /*handle*/) {
    g_isClosed = true;
    return g_closingResult;
}

std::int32_t ZQCCM_SendCmd(ZQCCM_HANDLE handle, const char* command, char* answer, std::uint32_t answerSize) {
    const std::string wanted = command;
    if (wanted == "fail\n") {
        return ZQ_ERR_COM_TIMEOUT;
    }
    if (wanted == "zero\n") {
        return 0;
    }
    if (wanted == "until closed\n") {
        while (!g_isClosed) {
            std::this_thread::yield();
        }
        return ZQ_ERR_CONNECTION_NOT_OPEN;
    }
    if (wanted == "fill\n") {
        std::memset(answer, 'x', answerSize);
        return ZQ_OK;
    }
    const std::string text = std::to_string(handle) + ":" + command;
    std::memcpy(answer, text.c_str(), text.size() + 1);
    return ZQ_OK;
}
