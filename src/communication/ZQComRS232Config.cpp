#include "communication/ZQComRS232Config.h"

#include <algorithm>
#include <iterator>

#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQSystem.h"
#include "platform/SerialPort.h"

namespace ZQAPI {

namespace {

template <class Value, std::size_t kCount>
bool ParseWord(const CZQString& word, const char* const (&words)[kCount], Value& value) {
    const auto* const found = std::find_if(std::begin(words), std::end(words),
                                           [&](const char* candidate) { return word == candidate; });
    value = static_cast<Value>(found - std::begin(words));
    return found != std::end(words);
}

template <class Value, std::size_t kCount>
const char* WordOf(Value value, const char* const (&words)[kCount]) {
    const auto index = static_cast<std::size_t>(value);
    return index < kCount ? words[index] : words[0];
}

CZQComRS232Config::Handshake HandshakeOf(const platform::SerialControl& control) {
    using Line = platform::SerialControl::Line;
    if (control.xonXoffOutput && control.xonXoffInput) {
        return CZQComRS232Config::Handshake::kXonXoff;
    }
    return control.rts == Line::kEnabled && control.dtr == Line::kEnabled
               ? CZQComRS232Config::Handshake::kHardware
               : CZQComRS232Config::Handshake::kNo;
}

}  // namespace

CZQComRS232Config::CZQComRS232Config() : CZQComRS232Config(1, kDefaultModeText) {}

CZQComRS232Config::CZQComRS232Config(std::uint32_t portNumber, const CZQString& modeText)
    : m_portNumber(portNumber) {
    platform::SerialControl control;
    platform::SystemErrorCode error = 0;
    if (!platform::ParseModeText(modeText.str(), control, error)) {
        ZQ_THROW("CZQComRS232Config::CZQComRS232Config", ZQ_ERR_RS232_MODE_TEXT, "strConfig=%s; %s",
                 modeText.c_str(), FormatSystemError(error).c_str());
    }
    m_baudRate = control.baudRate;
    m_dataBits = control.dataBits;
    m_stopBits = control.stopBits;
    m_parity = static_cast<Parity>(control.parity);
    m_handshake = HandshakeOf(control);
}

CZQComRS232Config::CZQComRS232Config(const CZQString& fileName, const CZQString& section)
    : CZQComRS232Config() {
    CZQComRS232Config::LoadFromFile(fileName, section);
}

CZQString CZQComRS232Config::GetPortName() const {
    return CZQString::Formatted("COM%u", m_portNumber);
}

void CZQComRS232Config::LoadFromFile(const CZQString& fileName, const CZQString& section) {
    WithSection(fileName, section, ZQ_HERE("CZQComRS232Config::LoadFromFile"), ZQ_ERR_COM_CONFIG_LOAD,
                [this](CZQIniFile& file) {
                    CZQComRS232Config loaded(*this);
                    std::int32_t portNumber = 0;
                    std::int32_t baudRate = 0;
                    CZQString parity;
                    CZQString handshake;
                    file.ReadLong("COMPort", portNumber);
                    file.ReadLong("Baudrate", baudRate);
                    file.ReadByte("Databits", loaded.m_dataBits);
                    file.ReadByte("StopBits", loaded.m_stopBits);
                    file.ReadString("Parity", parity);
                    if (!ParseWord(parity.MakeUpper(), kParities, loaded.m_parity)) {
                        ZQ_THROW("CZQComRS232Config::LoadFromFile", ZQ_ERR_BAD_VALUE,
                                 "RS232.Parity=%s; Validvalues: 'NO', 'ODD' 'EVEN'", parity.c_str());
                    }
                    file.ReadString("Handshake", handshake);
                    if (!ParseWord(handshake, kHandshakes, loaded.m_handshake)) {
                        ZQ_THROW("CZQComRS232Config::LoadFromFile", ZQ_ERR_BAD_VALUE,
                                 "RS232.Handshake=%s; Validvalues: 'NO', 'HW' 'XON/XOFF'", handshake.c_str());
                    }
                    loaded.m_portNumber = static_cast<std::uint32_t>(portNumber);
                    loaded.m_baudRate = static_cast<std::uint32_t>(baudRate);
                    *this = loaded;
                });
}

void CZQComRS232Config::SaveToFile(const CZQString& fileName, const CZQString& section) const {
    WithSection(fileName, section, ZQ_HERE("CZQComRS232Config::SaveToFile"), ZQ_ERR_COM_CONFIG_SAVE,
                [this](CZQIniFile& file) {
                    file.WriteUInt32("COMPort", m_portNumber);
                    file.WriteUInt32("Baudrate", m_baudRate);
                    file.WriteUInt8("Databits", m_dataBits);
                    file.WriteUInt8("StopBits", m_stopBits);
                    file.WriteString("Parity", WordOf(m_parity, kParities));
                    file.WriteString("Handshake", WordOf(m_handshake, kHandshakes));
                });
}

CZQString CZQComRS232Config::ToString() const {
    return CZQString::Formatted("(RS232) %s, Baud=%u, Databits=%d, Stopbits=%d", GetPortName().c_str(),
                                m_baudRate, m_dataBits, m_stopBits);
}

std::unique_ptr<CZQComConfigBase> CZQComRS232Config::Clone() const {
    return std::make_unique<CZQComRS232Config>(*this);
}

}  // namespace ZQAPI
