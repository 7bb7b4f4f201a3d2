// What the scanners over vendors' libraries have in common. They differ in names, in how the library tells of
// a camera and in how an identifier is made of that.
#pragma once

#include <functional>
#include <memory>

#include "devices/ZQScanIFBase.h"
#include "foundation/ZQException.h"
#include "scanners/ZQScannerErrors.h"
#include "vendors/ZQICameraSource.h"

namespace ZQAPI {

// The names that a scanner writes into every record, and the methods under which its failures are reported.
struct SVendorScannerNames {
    const char* scanner;
    const char* ccm;
    const char* iam;
    const char* scanMethod;    // "CZQScanIFIDSUEye::Scan"
    const char* updateMethod;  // "CZQScanIFIDSUEye::Update"
};

// Which camera it is and where, in the texts of a record.
struct SVendorIdentity {
    CZQString deviceId;
    CZQString address;  // UsedAddress, CCMAddress and IAMAddress
    CZQString firmwareVersion = "-.-";
};

// What kind of camera it is.
struct SVendorProduct {
    CZQString deviceType;
    CZQString description;
};

// `Info` is what the library tells of one camera. The library is loaded for each scan and update, and freed
// at its end.
template <class Info>
class CZQVendorScanner : public CZQScanIFBase {
public:
    using Source = CZQICameraSource<Info>;
    using MakeSource = std::function<std::unique_ptr<Source>()>;

    void Scan(CZQDeviceList& found) final {
        const std::unique_ptr<Source> source = m_makeSource();
        const std::uint32_t count = source->GetNofCameras();
        for (std::uint32_t i = 0; i < count; ++i) {
            ForCamera(m_names.scanMethod,
                      [&] { found.AddDevice(MakeRecord(i, source->GetCamera(i)), false); });
        }
    }

    void Update(CZQDeviceInfo& device) final {
        const std::unique_ptr<Source> source = m_makeSource();
        const std::uint32_t count = source->GetNofCameras();
        bool isFound = false;
        for (std::uint32_t i = 0; i < count && !isFound; ++i) {
            ForCamera(m_names.updateMethod, [&] {
                const SVendorIdentity identity = Identify(source->GetCamera(i));
                isFound = identity.deviceId == device.GetDeviceID();
                if (isFound) {
                    SetIdentity(device, identity);
                }
            });
        }
        if (!isFound) {
            throw DeviceGone(ZQ_HERE(m_names.updateMethod), device);
        }
    }

protected:
    enum class OnCameraFailure { kEnd, kSkip };

    CZQVendorScanner(const SVendorScannerNames& names, MakeSource makeSource,
                     OnCameraFailure onCameraFailure = OnCameraFailure::kEnd)
        : m_names(names), m_makeSource(std::move(makeSource)), m_onCameraFailure(onCameraFailure) {}

    virtual SVendorIdentity Identify(const Info& camera) const = 0;
    // A camera that is none of the maker's: ZQ_ERR_UNKNOWN_MODEL.
    virtual SVendorProduct ProductOf(const Info& camera) const = 0;

private:
    template <class Body>
    void ForCamera(const char* method, Body&& body) const {
        try {
            body();
        } catch (CZQException& exception) {
            if (m_onCameraFailure == OnCameraFailure::kEnd) {
                throw;
            }
            ReportRecovered(exception, ZQ_HERE(method));
        }
    }

    CZQDeviceInfo MakeRecord(std::uint32_t index, const Info& camera) const {
        const SVendorIdentity identity = Identify(camera);
        const SVendorProduct product = ProductOf(camera);
        if (identity.address.IsEmpty()) {
            throw CZQException(ZQ_HERE(m_names.scanMethod), ZQ_ERR_VENDOR_LIBRARY,
                               "DeviceID=%s; the camera has no address", identity.deviceId.c_str());
        }
        CZQDeviceInfo device;
        device.SetName(CZQString::Formatted("_%s.%u", m_names.scanner, index));
        device.SetDeviceID(identity.deviceId);
        device.SetDeviceTypeByName(product.deviceType);
        device.SetDeviceDesc(product.description);
        device.SetUsedScanner(m_names.scanner);
        device.SetCCM(m_names.ccm);
        device.SetIAM(m_names.iam);
        SetIdentity(device, identity);
        return device;
    }

    static void SetIdentity(CZQDeviceInfo& device, const SVendorIdentity& identity) {
        device.SetUsedAddress(identity.address);
        device.SetCCMAddress(identity.address);
        device.SetIAMAddress(identity.address);
        device.SetFirmwareVersion(identity.firmwareVersion);
    }

    const SVendorScannerNames m_names;
    const MakeSource m_makeSource;
    const OnCameraFailure m_onCameraFailure;
};

}  // namespace ZQAPI
