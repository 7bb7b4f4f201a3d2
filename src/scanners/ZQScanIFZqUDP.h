#pragma once

#include "devices/ZQScanIFBase.h"
#include "scanners/ZQUdpDiscovery.h"

namespace ZQAPI {

// Finds the maker's network cameras by UDP broadcast and identifies each through the UDP command module.
class CZQScanIFZqUDP : public CZQScanIFBase {
public:
    // The section's settings as ReadUdpDiscoverySettings reads them.
    CZQScanIFZqUDP(const CZQString& apiIniPath, const CZQString& section);

    // A camera that can't be identified is logged, handed to the error reporter and left out.
    void Scan(CZQDeviceList& found) override;
    void Update(CZQDeviceInfo& device) override;

private:
    UdpDiscoverySettings m_settings;
};

}  // namespace ZQAPI
