#pragma once

#include <optional>

#include "communication/ZQComConfigBase.h"
#include "communication/ZQComNetInterface.h"

namespace ZQAPI {

// Where a UDP channel sends to and, if to one interface only, from which. A value.
class CZQComUDPConfig : public CZQComConfigBase {
public:
    // This computer's name (at most 15 characters) and the command port of the maker's cameras.
    CZQComUDPConfig();
    CZQComUDPConfig(const CZQString& fileName, const CZQString& section);

    const CZQString& GetHostName() const noexcept { return m_hostName; }
    void SetHostName(CZQString hostName) { m_hostName = std::move(hostName); }
    std::uint16_t GetPortNumber() const noexcept { return m_portNumber; }
    void SetPortNumber(std::uint16_t portNumber) noexcept { m_portNumber = portNumber; }
    // Null: bound to none.
    const CZQComNetInterface* GetBoundInterface() const noexcept { return m_bound ? &*m_bound : nullptr; }
    void SetBoundInterface(const CZQComNetInterface* card);

    // Keys "HostName" and "PortNumber"; a port outside 0 to 65535 is an error. ZQ_ERR_COM_CONFIG_LOAD,
    // ZQ_ERR_COM_CONFIG_SAVE.
    void LoadFromFile(const CZQString& fileName, const CZQString& section) override;
    void SaveToFile(const CZQString& fileName, const CZQString& section) const override;

    // "(UDP) IP %s; Port %d"
    CZQString ToString() const override;
    std::unique_ptr<CZQComConfigBase> Clone() const override;
    const char* GetTypeName() const noexcept override { return kTypeName; }

    static constexpr const char* kTypeName = "CZQComUDPConfig";

private:
    CZQString m_hostName;
    std::uint16_t m_portNumber = 19383;
    std::optional<CZQComNetInterface> m_bound;
};

}  // namespace ZQAPI
