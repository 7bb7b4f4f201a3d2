#include "scanners/vendor/ZQVendorScanner.h"

#include "scanners/ZQCameraText.h"

namespace ZQAPI {

namespace {

CZQException Caught(const SSourceLocation& here) {
    try {
        throw;
    } catch (const CZQException& exception) {
        return exception;
    } catch (const std::exception& exception) {
        return CZQException(here, ZQ_ERR_UNEXPECTED, "%s", exception.what());
    } catch (...) {
        return CZQException(here, ZQ_ERR_UNEXPECTED, "an exception of another kind");
    }
}

void Append(CZQString& text, const char* label, const CZQString& value) {
    if (!CZQString(value).Trim().IsEmpty()) {
        text += (text.IsEmpty() ? "" : ", ") + CZQString(label) + "=" + ShownText(value);
    }
}

}  // namespace

SVendorIdentity FitForRecord(SVendorIdentity identity, std::int32_t badTextError,
                             const SSourceLocation& here) {
    identity.kind.Trim(" ");
    identity.serialNumber = IdentityText(identity.serialNumber, "SerialNumber", badTextError, here);
    identity.address = IdentityText(identity.address, "Address", badTextError, here);
    identity.firmwareVersion = FirmwareVersionText(identity.firmwareVersion);
    if (identity.kind.IsEmpty()) {
        throw CZQException(here, badTextError, "the camera has no model");
    }
    IdentityText(identity.GetDeviceID(), "DeviceID", badTextError, here);
    return identity;
}

CZQDeviceInfo MakeVendorRecord(const SScannerNames& names, std::uint32_t index,
                               const SVendorIdentity& identity, const SVendorProduct& product) {
    CZQDeviceInfo device;
    SetFinder(device, names, std::to_string(index));
    device.SetDeviceID(identity.GetDeviceID());
    device.SetDeviceTypeByName(product.deviceType);
    device.SetDeviceDesc(product.description);
    device.SetIAM(names.iam);
    SetVendorLocation(device, identity);
    return device;
}

void SetVendorLocation(CZQDeviceInfo& device, const SVendorIdentity& identity) {
    device.SetAddress(identity.address);
    device.SetIAMAddress(identity.address);
    device.SetFirmwareVersion(identity.firmwareVersion);
}

CZQException CaughtWithCamera(const SSourceLocation& here, std::uint32_t index,
                              const SVendorIdentity& identity) {
    CZQException failure = Caught(here);
    CZQString camera = CZQString::Formatted("Camera=%u", index);
    Append(camera, "Serial", identity.serialNumber);
    Append(camera, "Address", identity.address);
    Append(camera, "HardwareAddress", identity.hardwareAddress);
    const CZQString text = failure.GetExtraText();
    failure.SetExtraText("%s%s%s", text.c_str(), text.IsEmpty() ? "" : "; ", camera.c_str());
    return failure;
}

}  // namespace ZQAPI
