#pragma once

#include "communication/ZQComConfigBase.h"

namespace ZQAPI {

// A COM port and its line settings. A value.
class CZQComRS232Config : public CZQComConfigBase {
public:
    enum class Parity : std::uint8_t { kNo = 0, kOdd = 1, kEven = 2 };
    enum class Handshake : std::uint8_t { kNo = 0, kHardware = 1, kXonXoff = 2 };

    // Port 1 with the default mode text.
    CZQComRS232Config();
    // The settings that a mode text ("baud=9600 parity=N data=8 stop=1 xon=off", the form of the system's
    // MODE command) stands for. Rejected: ZQ_ERR_RS232_MODE_TEXT, "strConfig=%s; %s".
    CZQComRS232Config(std::uint32_t portNumber, const CZQString& modeText);
    CZQComRS232Config(const CZQString& fileName, const CZQString& section);

    std::uint32_t GetPortNumber() const noexcept { return m_portNumber; }
    void SetPortNumber(std::uint32_t portNumber) noexcept { m_portNumber = portNumber; }
    // "COM3"
    CZQString GetPortName() const;
    std::uint32_t GetBaudRate() const noexcept { return m_baudRate; }
    std::uint8_t GetDataBits() const noexcept { return m_dataBits; }
    // 1 is one stop bit and everything else two. From a file that is the number of stop bits; from a mode
    // text it is the system's code, in which 0 is one: such a port is opened with two. Kept as it always was.
    std::uint8_t GetStopBits() const noexcept { return m_stopBits; }
    Parity GetParity() const noexcept { return m_parity; }
    Handshake GetHandshake() const noexcept { return m_handshake; }

    // Keys "COMPort", "Baudrate", "Databits", "StopBits", "Parity" (NO, ODD, EVEN), "Handshake" (NO, HW,
    // XON/XOFF); all must be there. ZQ_ERR_COM_CONFIG_LOAD, ZQ_ERR_COM_CONFIG_SAVE.
    void LoadFromFile(const CZQString& fileName, const CZQString& section) override;
    void SaveToFile(const CZQString& fileName, const CZQString& section) const override;

    // "(RS232) %s, Baud=%d, Databits=%d, Stopbits=%d"
    CZQString ToString() const override;
    std::unique_ptr<CZQComConfigBase> Clone() const override;
    const char* GetTypeName() const noexcept override { return kTypeName; }

    static constexpr const char* kTypeName = "CZQComRS232Config";
    // The words for a setting's values in a file; each stands at the value's own index.
    static constexpr const char* kParities[] = {"NO", "ODD", "EVEN"};
    static constexpr const char* kHandshakes[] = {"NO", "HW", "XON/XOFF"};
    static constexpr const char* kDefaultModeText = "baud=9600 parity=N data=8 stop=1 xon=off";

private:
    std::uint32_t m_portNumber = 1;
    std::uint32_t m_baudRate = 0;
    std::uint8_t m_dataBits = 0;
    std::uint8_t m_stopBits = 0;
    Parity m_parity = Parity::kNo;
    Handshake m_handshake = Handshake::kNo;
};

}  // namespace ZQAPI
