#pragma once

#include <cstdint>
#include <span>

#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQException.h"
#include "foundation/ZQStringArray.h"

namespace ZQAPI {

// The NI-IMAQ library ("imaq.dll"), as far as serial lines of frame grabbers need it. Its functions return 0
// for success. Bound to one thread.
class CZQImaqLibrary : public CZQDynamicDLL {
public:
    static constexpr const char* kFile = "imaq.dll";
    using Status = std::int32_t;
    using Id = std::uint32_t;  // of an interface or a session; 0: none

    // The library in the kit's folder, which ends in a separator, or else the one that the system finds.
    // ZQ_ERR_LIBRARY_NOT_LOADED, ZQ_ERR_ENTRY_POINT_MISSING
    explicit CZQImaqLibrary(const CZQString& kitFolder);

    // The names of the frame grabbers' interfaces ("img0"), in the library's order; 64 at most.
    CZQStringArray QueryInterfaceNames() const;

    Status OpenInterface(const CZQString& name, Id& interfaceId) const;
    Status OpenSession(Id interfaceId, Id& sessionId) const;
    Status CloseId(Id id) const;
    // `size` becomes the number of bytes written.
    Status Write(Id sessionId, std::span<const char> data, std::uint32_t& size,
                 std::uint32_t timeoutMs) const;
    Status ReadByte(Id sessionId, char& byte, std::uint32_t timeoutMs) const;
    Status Flush(Id sessionId) const;

    // "ImaqError (0x%08X): %s" with the library's own text.
    CZQString FormatStatus(Status status) const;

    static bool IsReadTimeout(Status status) noexcept;

private:
    // After the kit's own has failed, which is told as the cause when this one fails, too.
    void OpenSystems(const CZQException& afterKits);

    // As in the library's C interface (niimaq.h). All of them are stdcall, which makes a difference in 32-bit
    // programs alone.
    CZQEntryPoint<Status(std::uint32_t index, char* name)> m_queryNames{*this, "imgInterfaceQueryNames"};
    CZQEntryPoint<Status(const char* name, Id* interfaceId)> m_openInterface{*this, "imgInterfaceOpen"};
    CZQEntryPoint<Status(Id interfaceId, Id* sessionId)> m_openSession{*this, "imgSessionOpen"};
    CZQEntryPoint<Status(Id id, std::uint32_t freeResources)> m_close{*this, "imgClose"};
    using Transfer = Status(Id sessionId, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs);
    CZQEntryPoint<Transfer> m_write{*this, "imgSessionSerialWrite"};
    CZQEntryPoint<Transfer> m_readBytes{*this, "imgSessionSerialReadBytes"};
    CZQEntryPoint<Status(Id sessionId)> m_flush{*this, "imgSessionSerialFlush"};
    CZQEntryPoint<Status(Status status, char* text)> m_showError{*this, "imgShowError"};
};

}  // namespace ZQAPI
