#pragma once

#include <memory>

#include "devices/ZQScanIFBase.h"
#include "scanners/serial/ZQSerialLineSearch.h"

namespace ZQAPI {

// Finds the maker's cameras on serial lines: asks each line for its identification, takes those whose answer names the
// maker, and identifies the camera through the line's command module.
class CZQSerialLineScanner : public CZQScanIFBase {
public:
    // In the order of the lines.
    void Scan(CZQDeviceList& found) final;
    // As UpdateByScan, which ends as soon as the device has been found, at best on the line where it was; of two cameras
    // with one identifier that one counts. The IAMAddress of the scanner's own image module follows the line.
    void Update(CZQDeviceInfo& device) final;
    void Stop() noexcept final { m_search->Stop(); }

protected:
    // The time that a scan or re-check takes at most begins here.
    explicit CZQSerialLineScanner(SSerialLineKind kind);

private:
    const std::shared_ptr<const SSerialLineKind> m_kind;
    const std::shared_ptr<CZQSerialLineSearch> m_search;
    const CZQSerialLineSearch::Clock::time_point m_deadline = CZQSerialLineSearch::Clock::now() + kTimeLimit;
    CZQString m_wantedId;  // of a re-check
    CZQString m_firstLine;
};

}  // namespace ZQAPI
