#include "tools/platform/DebugCapture.h"

#include <windows.h>

#include <algorithm>
#include <mutex>
#include <utility>

namespace ZQAPI::platform {

namespace {

// OutputDebugStringA raises an exception with this code, the text's length with its NUL, and the text.
constexpr DWORD kDebugPrint = 0x40010006;

// The callback in use. A callback that itself writes debug output is not called for that.
std::mutex g_mutex;
const DebugCapture::LineCallback* g_onLine = nullptr;
thread_local bool t_inCallback = false;

void HandOver(std::string_view text) {
    const std::lock_guard lock(g_mutex);
    if (g_onLine == nullptr) {
        return;
    }
    t_inCallback = true;
    for (bool isFirst = true; !text.empty(); isFirst = false) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!line.empty()) {
            (*g_onLine)(line, isFirst);
        }
    }
    t_inCallback = false;
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode == kDebugPrint && record.NumberParameters >= 2 &&
        record.ExceptionInformation[0] > 0 && !t_inCallback) {
        const auto length = static_cast<std::size_t>(record.ExceptionInformation[0]) - 1;
        HandOver({reinterpret_cast<const char*>(record.ExceptionInformation[1]), length});
    }
    return EXCEPTION_CONTINUE_SEARCH;  // other listeners get it as well
}

}  // namespace

struct DebugCapture::State {
    explicit State(LineCallback callback) : onLine(std::move(callback)) {}
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (handler != nullptr) {
            ::RemoveVectoredExceptionHandler(handler);
        }
        const std::lock_guard lock(g_mutex);
        g_onLine = nullptr;
    }

    LineCallback onLine;
    void* handler = nullptr;
};

DebugCapture::DebugCapture(std::unique_ptr<State> state) : m_state(std::move(state)) {}
DebugCapture::~DebugCapture() = default;

std::unique_ptr<DebugCapture> DebugCapture::Start(LineCallback onLine, SystemErrorCode& error) {
    auto state = std::make_unique<State>(std::move(onLine));
    {
        const std::lock_guard lock(g_mutex);
        g_onLine = &state->onLine;
    }
    state->handler = ::AddVectoredExceptionHandler(1, OnException);
    if (state->handler == nullptr) {
        error = LastSystemError();
        return nullptr;
    }
    return std::unique_ptr<DebugCapture>(new DebugCapture(std::move(state)));
}

std::FILE* DebugCapture::StandardError() const noexcept {
    return stderr;
}

}  // namespace ZQAPI::platform
