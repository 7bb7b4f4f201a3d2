#include "communication/ZQComUDPConfig.h"

#include <utility>

#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQComUDPConfig::CZQComUDPConfig() {
    constexpr std::size_t kMaxHostNameLength = 15;
    m_hostName = GetLocalComputerName().view().substr(0, kMaxHostNameLength);
}

CZQComUDPConfig::CZQComUDPConfig(const CZQString& fileName, const CZQString& section) : CZQComUDPConfig() {
    CZQComUDPConfig::LoadFromFile(fileName, section);
}

void CZQComUDPConfig::SetBoundInterface(const CZQComNetInterface* card) {
    m_bound = card != nullptr ? std::optional(*card) : std::nullopt;
}

void CZQComUDPConfig::LoadFromFile(const CZQString& fileName, const CZQString& section) {
    WithSection(fileName, section, ZQ_HERE("CZQComUDPConfig::LoadFromFile"), ZQ_ERR_COM_CONFIG_LOAD,
                [this](CZQIniFile& file) {
                    CZQString hostName;
                    std::int32_t portNumber = 0;
                    file.ReadString("HostName", hostName);
                    file.ReadLong("PortNumber", portNumber);
                    if (!std::in_range<std::uint16_t>(portNumber)) {
                        ZQ_THROW("CZQComUDPConfig::LoadFromFile", ZQ_ERR_BAD_VALUE, "PortNumber=%ld",
                                 static_cast<long>(portNumber));
                    }
                    m_hostName = std::move(hostName);
                    m_portNumber = static_cast<std::uint16_t>(portNumber);
                });
}

void CZQComUDPConfig::SaveToFile(const CZQString& fileName, const CZQString& section) const {
    WithSection(fileName, section, ZQ_HERE("CZQComUDPConfig::SaveToFile"), ZQ_ERR_COM_CONFIG_SAVE,
                [this](CZQIniFile& file) {
                    file.WriteString("HostName", m_hostName);
                    file.WriteUInt32("PortNumber", m_portNumber);
                });
}

CZQString CZQComUDPConfig::ToString() const {
    return CZQString::Formatted("(UDP) IP %s; Port %d", m_hostName.c_str(), m_portNumber);
}

std::unique_ptr<CZQComConfigBase> CZQComUDPConfig::Clone() const {
    return std::make_unique<CZQComUDPConfig>(*this);
}

}  // namespace ZQAPI
