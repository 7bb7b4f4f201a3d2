#pragma once

#include <memory>

#include "devices/ZQScanIFBase.h"
#include "scanners/ZQSettings.h"
#include "scanners/udp/ZQUdpSearch.h"

namespace ZQAPI {

// Finds the maker's network cameras by UDP broadcast, or asks given hosts, and identifies each through the UDP command module.
class CZQScanIFZqUDP : public CZQScanIFBase {
public:
    // The time that a scan or re-check takes at most begins here.
    CZQScanIFZqUDP(const CZQSdkPaths& kit, const CZQString& section);
    static std::span<const SSettingRow> GetSettings();

    // A camera that can't be identified is logged, handed to the error reporter and left out. A named network card that
    // can't be used is an error once the others have been searched: ZQ_ERR_BAD_VALUE "NetworkCards: %s".
    void Scan(CZQDeviceList& found) override;
    // Ends as soon as the device has been identified. Of two cameras with one identifier the one that answers
    // first counts.
    void Update(CZQDeviceInfo& device) override;
    void Stop() noexcept override { m_search->Stop(); }

private:
    // Tells what became of each camera that was heard.
    static void Report(const CZQUdpSearch::Cameras& cameras);
    void RequireCards() const;

    const SUdpDiscoverySettings m_settings;
    const std::shared_ptr<CZQUdpSearch> m_search;
    CZQString m_wantedId;  // of a re-check
};

}  // namespace ZQAPI
