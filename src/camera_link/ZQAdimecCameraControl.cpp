#include "camera_link/ZQAdimecCameraControl.h"

#include <array>

#include "camera_link/ZQAdimecDataParser.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kBaudRate = 57600;

}  // namespace

CZQAdimecCameraControl::CZQAdimecCameraControl(CZQSerialBase& port) : m_port(port) {}

CZQAdimecCameraControl::~CZQAdimecCameraControl() {
    try {
        Close();
    } catch (...) {
        DebugOutput("ZQSDK: !! a camera's serial port failed to close");
    }
}

void CZQAdimecCameraControl::Open(std::uint32_t portIndex) {
    Close();
    m_port.Open(portIndex, kBaudRate);
    m_protocol = std::make_unique<CZQAdimecSerialProtocol>(m_port);
    m_protocol->SendCmd("FD", nullptr);
}

void CZQAdimecCameraControl::Close() {
    m_protocol.reset();
    m_port.Close();
}

CZQString CZQAdimecCameraControl::GetString(const char* query) {
    if (m_protocol == nullptr) {
        ZQ_THROW("CZQAdimecCameraControl::GetString", ZQ_ERR_SERIAL_CLOSED);
    }
    std::array<char, 1024> answer{};
    m_protocol->GetData(query, answer.data(), static_cast<std::uint32_t>(answer.size()));
    return CZQAdimecDataParser::ParseString(answer.data());
}

}  // namespace ZQAPI
