#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "devices/ZQScanIFBase.h"
#include "vendors/ZQGigE.h"

namespace ZQAPI {

// Finds the maker's GigE cameras, each once, however many ways the library reaches it. A model that is none
// of the maker's is left out.
class CZQScanIFZQGigE : public CZQScanIFBase {
public:
    using GetLibrary = std::function<std::shared_ptr<const CZQGigE>()>;

    // Has no settings; uses the library that the process shares.
    CZQScanIFZQGigE(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFZQGigE(GetLibrary getLibrary);

    void Scan(CZQDeviceList& found) override;
    void Update(CZQDeviceInfo& device) override;

private:
    // A camera found, in texts.
    struct SCamera {
        CZQString deviceType;
        CZQString serialNumber;
        CZQString macAddress;
        CZQString ipAddress;
        CZQString deviceVersion;
        CZQString modelName;
        CZQString description;

        CZQString GetDeviceID() const { return modelName + ":" + serialNumber; }
    };

    std::vector<SCamera> FindAllCameras() const;
    static void FindCameras(const CZQGigE& library, std::int32_t kind, std::vector<SCamera>& cameras);
    static void SetLocation(CZQDeviceInfo& device, const SCamera& camera);

    const GetLibrary m_getLibrary;
};

}  // namespace ZQAPI
