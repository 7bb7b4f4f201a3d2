#pragma once

#include <memory>

#include "camera_link/ZQAdimecSerialProtocol.h"

namespace ZQAPI {

// An Adimec camera on a serial port. Bound to one thread.
class CZQAdimecCameraControl : public CZQRoot {
public:
    // The port outlives the control, which opens and closes it.
    explicit CZQAdimecCameraControl(CZQSerialBase& port);
    CZQAdimecCameraControl(const CZQAdimecCameraControl&) = delete;
    CZQAdimecCameraControl& operator=(const CZQAdimecCameraControl&) = delete;
    ~CZQAdimecCameraControl() override;

    // Opens the port at the camera's baud rate and greets the camera. Errors of the port and the protocol.
    void Open(std::uint32_t portIndex);
    // Errors of the port; the camera counts as closed all the same.
    void Close();

    // The text that the camera answers a query ("ID?") with, as it comes: untrusted. Errors of the protocol
    // and of CZQAdimecDataParser::ParseString; while closed ZQ_ERR_SERIAL_CLOSED.
    CZQString GetString(const char* query);
    CZQString GetID() { return GetString("ID?"); }
    CZQString GetSerialNumber() { return GetString("SN?"); }
    CZQString GetFirmwareVersion() { return GetString("BS?"); }

private:
    CZQSerialBase& m_port;
    std::unique_ptr<CZQAdimecSerialProtocol> m_protocol;  // null while closed
};

}  // namespace ZQAPI
