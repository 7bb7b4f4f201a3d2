#pragma once

#include <chrono>

#include "devices/ZQDeviceList.h"

namespace ZQAPI {

// One way of finding cameras. A scanner is made with the path of ZQAPI.ini and the name of its own section in
// it, and used for one scan or one update.
class CZQScanIFBase {
public:
    CZQScanIFBase() = default;
    CZQScanIFBase(const CZQScanIFBase&) = delete;
    CZQScanIFBase& operator=(const CZQScanIFBase&) = delete;
    virtual ~CZQScanIFBase() = default;

    // Appends one record per camera found. Each needs its DeviceID, and UsedScanner set to this scanner's
    // name; the Name is given later. Failures are thrown as CZQException; what was appended before stays.
    // Runs on a thread of its own; `found` may be read from another one meanwhile, through its own lock.
    virtual void Scan(CZQDeviceList& found) = 0;

    // Refreshes addresses and firmware version of a device that this scanner found earlier. Not there
    // any more: ZQ_ERR_DEVICE_NOT_FOUND, "Label=%s, Address=%s". Runs on the caller's thread, under
    // the library's lock.
    virtual void Update(CZQDeviceInfo& device) = 0;

    // The scan's time is up: what is under way ends as soon as it can, and what has not begun does nothing.
    // For good; from any thread. A scanner that sends to a network sends nothing more once this has returned;
    // one whose calls can't be ended leaves it as it is.
    virtual void Stop() noexcept {}

protected:
    // For scanners that hand over all at their end: a little less than a scan takes at most.
    static constexpr std::chrono::milliseconds kTimeLimit{29000};
};

}  // namespace ZQAPI
