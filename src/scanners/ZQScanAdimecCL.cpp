#include "scanners/ZQScanAdimecCL.h"

#include "camera_link/ZQAdimecCameraControl.h"
#include "camera_link/ZQCLSerial.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQScannerErrors.h"

namespace ZQAPI {

namespace {

constexpr const char* kName = ZQDEV_SCANNER_NAME_ADIMEC_CL;
constexpr const char* kDeviceType = "Q-12A65";
constexpr const char* kVersionSuffix = "-V30";
constexpr const char* kDescription = "Valdremonix Q-12A65 camera";

// The first port only, on purpose, whatever the library counts.
constexpr std::uint32_t kNofPorts = 1;

CZQString KitLibraryPath() {
    const CZQString separator = PathSeparator();
    return GetBinPath() + "3dParty" + separator + "Euresys" + separator + "clseremc_x64.dll";
}

// The text goes into the device list file and onto screens.
const CZQString& Printable(const CZQString& answer) {
    if (answer.HasControlCharacter()) {
        throw CZQException(ZQ_HERE("CZQScanAdimecCL::Probe"), ZQ_ERR_BAD_VALUE,
                           "A text of the camera has a control character");
    }
    return answer;
}

struct SAnswers {
    CZQString id;
    CZQString serialNumber;
    CZQString firmwareVersion;
};

SAnswers Probe(CZQAdimecCameraControl& camera, std::uint32_t port) {
    camera.Open(port);
    SAnswers answers;
    answers.id = Printable(camera.GetID());
    answers.serialNumber = Printable(camera.GetSerialNumber());
    answers.firmwareVersion = Printable(camera.GetFirmwareVersion());
    try {
        camera.Close();
    } catch (CZQException& exception) {
        // The camera is known by now, and of a library whose close function has no result this says nothing.
        ReportRecovered(exception, ZQ_HERE("CZQScanAdimecCL::Probe"));
    }
    return answers;
}

CZQDeviceInfo MakeRecord(std::uint32_t port, const SAnswers& answers) {
    const CZQString deviceType = CZQScanAdimecCL::GetZQDeviceType(answers.id);
    const CZQString address = CZQString::Formatted("%u", port);
    CZQDeviceInfo record;
    record.SetName(CZQString::Formatted("_%s.%u", kName, port));
    record.SetDeviceTypeByName(deviceType);
    record.SetDeviceID(deviceType + ":" + answers.serialNumber);
    record.SetDeviceDesc(kDescription);
    record.SetUsedScanner(kName);
    record.SetUsedAddress(address);
    record.SetCCM(ZQDEV_CCM_ADIMEC_CL);
    record.SetCCMAddress(address);
    record.SetIAM(ZQDEV_IAM_ADIMEC_CL);
    record.SetIAMAddress(address);
    record.SetFirmwareVersion(answers.firmwareVersion);
    return record;
}

}  // namespace

CZQScanAdimecCL::CZQScanAdimecCL(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanAdimecCL(KitLibraryPath()) {}

CZQScanAdimecCL::CZQScanAdimecCL(CZQString libraryPath) : m_libraryPath(std::move(libraryPath)) {}

void CZQScanAdimecCL::Scan(CZQDeviceList& found) {
    for (const CZQDeviceInfo& camera : FindCameras("CZQScanAdimecCL::Scan")) {
        found.AddDevice(camera, false);
    }
}

void CZQScanAdimecCL::Update(CZQDeviceInfo& device) {
    for (const CZQDeviceInfo& camera : FindCameras("CZQScanAdimecCL::Update")) {
        if (camera.GetDeviceID() == device.GetDeviceID()) {
            device.SetUsedAddress(camera.GetUsedAddress());
            device.SetCCMAddress(camera.GetCCMAddress());
            device.SetIAMAddress(camera.GetIAMAddress());
            device.SetFirmwareVersion(camera.GetFirmwareVersion());
            return;
        }
    }
    throw DeviceGone(ZQ_HERE("CZQScanAdimecCL::Update"), device);
}

CZQString CZQScanAdimecCL::GetZQDeviceType(const CZQString& id) {
    if (!id.Contains(kDeviceType)) {
        throw CZQException(ZQ_HERE("CZQScanAdimecCL::GetZQDeviceType"), ZQ_ERR_UNKNOWN_MODEL, "DeviceType=%s",
                           id.c_str());
    }
    return id.Contains(kVersionSuffix) ? CZQString(kDeviceType) + kVersionSuffix : kDeviceType;
}

std::vector<CZQDeviceInfo> CZQScanAdimecCL::FindCameras(const char* method) const {
    CZQCLSerial serial(m_libraryPath);
    CZQAdimecCameraControl camera(serial);
    // A library that can't tell its ports ends the search; how many it has does not matter.
    serial.GetNofSerialPorts();
    std::vector<CZQDeviceInfo> cameras;
    for (std::uint32_t port = 0; port < kNofPorts; ++port) {
        try {
            cameras.push_back(MakeRecord(port, Probe(camera, port)));
        } catch (CZQException& exception) {
            ReportRecovered(exception, ZQ_HERE(method));
        } catch (const std::exception& exception) {
            CZQException failure(ZQ_HERE(method), ZQ_ERR_UNEXPECTED, "%s", exception.what());
            ReportRecovered(failure, ZQ_HERE(method));
        }
    }
    return cameras;
}

}  // namespace ZQAPI
