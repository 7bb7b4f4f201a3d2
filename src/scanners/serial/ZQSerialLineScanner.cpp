#include "scanners/serial/ZQSerialLineScanner.h"

#include "scanners/ZQUpdateByScan.h"

namespace ZQAPI {

CZQSerialLineScanner::CZQSerialLineScanner(SSerialLineKind kind)
    : m_kind(std::make_shared<const SSerialLineKind>(std::move(kind))),
      m_search(std::make_shared<CZQSerialLineSearch>(m_kind)) {}

void CZQSerialLineScanner::Scan(CZQDeviceList& found) {
    for (const CZQDeviceInfo& device : m_search->Run(m_deadline, m_wantedId, m_firstLine)) {
        found.AddDevice(device, false);
    }
    m_search->RethrowFailure();
}

void CZQSerialLineScanner::Update(CZQDeviceInfo& device) {
    m_wantedId = device.GetDeviceID();
    m_firstLine = device.GetUsedAddress();
    UpdateByScan(*this, device, ZQ_HERE(m_kind->names.updateMethod));
    if (!device.GetIAM().IsEmpty() && device.GetIAM() == m_kind->names.iam) {
        device.SetIAMAddress(device.GetUsedAddress());
    }
}

}  // namespace ZQAPI
