#pragma once

#include "camera_link/ZQAdimecCameraControl.h"
#include "camera_link/ZQCLSerial.h"
#include "scanners/vendor/ZQVendorScanner.h"

namespace ZQAPI {

// What an Adimec camera says about itself.
struct SAdimecCamera {
    std::uint32_t port = 0;
    CZQString id;
    CZQString serialNumber;
    CZQString firmwareVersion;
};

// The ports of a Camera Link serial library, each with a camera or without. Bound to one thread.
class CZQAdimecPorts : public CZQICameraSource<SAdimecCamera> {
public:
    explicit CZQAdimecPorts(const CZQString& libraryPath) : m_serial(libraryPath) {}

    // The first port only, on purpose, whatever the library counts.
    std::uint32_t GetNofCameras() override;
    SAdimecCamera GetCamera(std::uint32_t port) override;

private:
    CZQCLSerial m_serial;
    CZQAdimecCameraControl m_camera{m_serial};
};

struct SAdimecScanner : SVendorScannerTraits<CZQAdimecPorts> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ADIMEC_CL, "CZQScanAdimecCL");
    static constexpr OnCameraFailure kOnCameraFailure = OnCameraFailure::kSkip;
    static constexpr std::int32_t kBadTextError = ZQ_ERR_BAD_VALUE;

    // The library that the kit brings, in full.
    static CZQString LibraryOf(const CZQSdkPaths& kit);
    static std::unique_ptr<Source> MakeSource(const CZQSdkPaths& kit);
    static SVendorIdentity Identify(const Camera& camera);
    static SVendorProduct ProductOf(const Camera& camera);

    // The device type behind a camera's answer to "ID?"; an unknown one: ZQ_ERR_UNKNOWN_MODEL,
    // "DeviceType=%s" with the answer.
    static CZQString GetZQDeviceType(const CZQString& id);
};

// Finds an Adimec camera on a frame grabber's Camera Link serial port, through the library of the grabber's maker.
// One that can't be loaded, or can't tell its ports: errors of CZQCLSerial. A port without a known camera is left
// out.
using CZQScanAdimecCL = CZQVendorScannerOf<SAdimecScanner>;

}  // namespace ZQAPI
