#include "platform/EchoRequest.h"

#include <winsock2.h>
// After winsock2.h.
#include <windows.h>

#include <memory>

namespace ZQAPI::platform {

namespace {

// ICMP_ECHO_REPLY as 64-bit Windows lays it out.
struct EchoReply {
    std::uint32_t address;
    std::uint32_t status;
    std::uint32_t roundTripMs;
    std::uint16_t dataSize;
    std::uint16_t reserved;
    void* data;
    std::uint8_t options[16];
};
static_assert(sizeof(EchoReply) == 40);

struct GlobalFreer {
    void operator()(void* memory) const noexcept { GlobalFree(memory); }
};

// An ICMP handle, closed with the library's own function.
class IcmpHandle {
public:
    explicit IcmpHandle(const EchoFunctions& functions) noexcept
        : m_close(functions.closeHandle), m_handle(functions.createHandle()) {}
    IcmpHandle(const IcmpHandle&) = delete;
    IcmpHandle& operator=(const IcmpHandle&) = delete;
    ~IcmpHandle() {
        if (IsOpen()) {
            m_close(m_handle);
        }
    }

    bool IsOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Value() const noexcept { return m_handle; }

private:
    EchoFunctions::CloseHandle* m_close;
    HANDLE m_handle;
};

}  // namespace

const char* GetEchoLibrary() noexcept {
    return "ICMP.dll";
}

EchoResult SendEchoRequest(const EchoFunctions& functions, std::uint32_t addressBe,
                           std::span<const std::byte> data, std::uint32_t timeoutMs,
                           std::uint32_t& roundTripMs, SystemErrorCode& error) {
    const IcmpHandle icmp(functions);
    if (!icmp.IsOpen()) {
        error = LastSystemError();
        return EchoResult::kNoHandle;
    }
    // Room for the reply, its data and an ICMP error message, which is how the system counts it.
    constexpr std::size_t kIcmpErrorSize = 8;
    const std::size_t replySize = sizeof(EchoReply) + data.size() + kIcmpErrorSize;
    const std::unique_ptr<void, GlobalFreer> buffer(GlobalAlloc(GPTR, replySize));
    if (!buffer) {
        return EchoResult::kOutOfMemory;
    }
    auto* const reply = static_cast<EchoReply*>(buffer.get());
    const DWORD replies = functions.sendEcho(icmp.Value(), addressBe, const_cast<std::byte*>(data.data()),
                                             static_cast<std::uint16_t>(data.size()), nullptr, reply,
                                             static_cast<DWORD>(replySize), timeoutMs);
    // A "reply" may also say that the host can't be reached.
    if (replies == 0 || reply->status != 0) {
        error = replies == 0 ? LastSystemError() : reply->status;
        return EchoResult::kNoReply;
    }
    roundTripMs = reply->roundTripMs;
    error = 0;
    return EchoResult::kReply;
}

}  // namespace ZQAPI::platform
