#pragma once

#include "communication/ZQComImaqRS232Config.h"
#include "communication/ZQComSerial.h"
#include "communication/ZQImaqLibrary.h"

namespace ZQAPI {

// The serial line of a frame grabber's interface, through the NI-IMAQ library, which is loaded while the
// channel is open. Opening: "%s: %s" with the interface's name and the library's text; CZQImaqLibrary's errors.
class CZQComImaqRS232 : public CZQComSerial {
public:
    // The library is looked for in the kit's folder first; empty: only where the system looks.
    explicit CZQComImaqRS232(CZQString kitFolder = {})
        : CZQComSerial(ZQ_SERIAL_METHODS("CZQComImaqRS232")), m_kitFolder(std::move(kitFolder)) {}
    CZQComImaqRS232(const CZQComImaqRS232&) = delete;
    CZQComImaqRS232& operator=(const CZQComImaqRS232&) = delete;
    ~CZQComImaqRS232() override;

    bool IsOpen() const noexcept override { return m_library.has_value(); }
    CZQComImaqRS232Config& GetConfig() noexcept override { return m_config; }

private:
    void SetConfig(const CZQComConfigBase& config, const SSourceLocation& here) override;
    void OpenLine() override;
    void CloseLine() noexcept override;
    bool Discard(CZQString& reason) override;
    bool Write(std::span<const std::byte> data, CZQString& reason) override;
    std::optional<std::size_t> Read(std::span<std::byte> room, std::chrono::milliseconds maxWait,
                                    CZQString& reason) override;
    bool IsDone(CZQImaqLibrary::Status status, CZQString& reason) const;

    const CZQString m_kitFolder;
    std::optional<CZQImaqLibrary> m_library;  // there while the line is open
    CZQImaqLibrary::Id m_interface = 0;
    CZQImaqLibrary::Id m_session = 0;
    CZQComImaqRS232Config m_config;
};

}  // namespace ZQAPI
