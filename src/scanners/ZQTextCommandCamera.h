#pragma once

#include <atomic>
#include <chrono>
#include <functional>

#include "communication/ZQCCM.h"
#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

// A camera of the maker's behind a command module, asked in text commands who it is.
// Bound to one thread, but for Abort and LastAnswer.
class CZQTextCommandCamera {
public:
    using Clock = std::chrono::steady_clock;

    CZQTextCommandCamera() = default;
    CZQTextCommandCamera(const CZQString& moduleFile, const CZQString& commandAddress);

    // Opens the command module of that path with the command address. Errors are CZQCCM's.
    void Open(const CZQString& moduleFile, const CZQString& commandAddress);

    // Fills what the camera itself knows: DeviceTypeByName, DeviceID ("type:serial"), DeviceDesc and FirmwareVersion
    // from its answers, and the address given. `chooseIAM` sets IAM and IAMAddress as soon as the type is known.
    // Closes the connection. See ZQCameraText.h for what becomes of texts that can't be kept.
    void ReadRecord(CZQDeviceInfo& device, const CZQString& address, const std::function<void()>& chooseIAM);

    // For good: a command under way ends with ZQ_ERR_COM_ABORTED, and so does whatever follows.
    void Abort() noexcept { m_ccm.Abort(); }
    // When the camera answered last; before its first answer, when this object was made.
    Clock::time_point LastAnswer() const noexcept { return m_lastAnswer; }

private:
    // The answer without its line feeds.
    CZQString Ask(const char* command);
    void ReadIdentity(CZQDeviceInfo& device);
    // An answer that the camera is known by; see IdentityText.
    CZQString AskIdentity(const char* command);

    CZQCCM m_ccm;
    std::atomic<Clock::time_point> m_lastAnswer{Clock::now()};
};

}  // namespace ZQAPI
