#pragma once

#include <ZQAPI/ZQDeviceAPI.h>

#include "foundation/ZQRoot.h"

namespace ZQAPI {

class CZQIniFile;

// One device: the eleven texts of the exported record. A value of 715 bytes, all zero when new.
class CZQDeviceInfo : public CZQRoot {
public:
    CZQDeviceInfo() = default;
    explicit CZQDeviceInfo(const ZQDEVICEINFO& record) : m_record(record) {}

    const ZQDEVICEINFO& GetRecord() const noexcept { return m_record; }

    // Setters take at most 64 characters: ZQ_ERR_TEXT_TOO_LONG, "Field=%s; strlen=%ld". Getters never read
    // past a field's end.
    CZQString GetName() const { return Text(m_record.Name); }
    CZQString GetDeviceDesc() const { return Text(m_record.DeviceDesc); }
    CZQString GetDeviceTypeByName() const { return Text(m_record.DeviceTypeByName); }
    CZQString GetDeviceID() const { return Text(m_record.DeviceID); }
    CZQString GetUsedScanner() const { return Text(m_record.UsedScanner); }
    CZQString GetUsedAddress() const { return Text(m_record.UsedAddress); }
    CZQString GetCCM() const { return Text(m_record.CCM); }
    CZQString GetCCMAddress() const { return Text(m_record.CCMAddress); }
    CZQString GetIAM() const { return Text(m_record.IAM); }
    CZQString GetIAMAddress() const { return Text(m_record.IAMAddress); }
    CZQString GetFirmwareVersion() const { return Text(m_record.FirmwareVersion); }

    void SetName(const CZQString& text) { SetText(m_record.Name, "Name", text); }
    void SetDeviceDesc(const CZQString& text) { SetText(m_record.DeviceDesc, "DeviceDesc", text); }
    void SetDeviceTypeByName(const CZQString& text) {
        SetText(m_record.DeviceTypeByName, "DeviceTypeByName", text);
    }
    void SetDeviceID(const CZQString& text) { SetText(m_record.DeviceID, "DeviceID", text); }
    void SetUsedScanner(const CZQString& text) { SetText(m_record.UsedScanner, "UsedScanner", text); }
    void SetUsedAddress(const CZQString& text) { SetText(m_record.UsedAddress, "UsedAddress", text); }
    void SetCCM(const CZQString& text) { SetText(m_record.CCM, "CCM", text); }
    void SetCCMAddress(const CZQString& text) { SetText(m_record.CCMAddress, "CCMAddress", text); }
    void SetIAM(const CZQString& text) { SetText(m_record.IAM, "IAM", text); }
    void SetIAMAddress(const CZQString& text) { SetText(m_record.IAMAddress, "IAMAddress", text); }
    void SetFirmwareVersion(const CZQString& text) {
        SetText(m_record.FirmwareVersion, "FirmwareVersion", text);
    }

    // Where the camera is reached: UsedAddress and CCMAddress.
    void SetAddress(const CZQString& text) {
        SetUsedAddress(text);
        SetCCMAddress(text);
    }

    // The identity, without a copy; it lives as long as the record is not changed.
    std::string_view DeviceIDView() const noexcept { return View(m_record.DeviceID); }
    std::string_view UsedScannerView() const noexcept { return View(m_record.UsedScanner); }

    // Whether a field with this text comes back from the device list file as itself: 1 to 64 characters, none
    // of them a control character, and nothing that reading takes away.
    static bool ReadsBack(const CZQString& text) noexcept;

    // Checks for a record from outside. A field without a NUL: ZQ_ERR_TEXT_TOO_LONG, "Field=%s".
    void CheckTerminated() const;
    // A control character in a field: ZQ_ERR_BAD_VALUE, "Field=%s".
    void CheckPrintable() const;
    // A Name that the device list file could not give back: ZQ_ERR_BAD_VALUE, "Name=%s".
    void CheckName() const;

    // The device's three sections in the device list file, named after its Name; reading needs every key to
    // be there with a value (ZQ_ERR_INI_KEY_MISSING) of at most 64 characters (ZQ_ERR_TEXT_TOO_LONG), and a
    // section name of at most 63.
    void LoadFromIni(CZQIniFile& file, const CZQString& section);
    void SaveToIni(CZQIniFile& file) const;

    static constexpr std::size_t kMaxTextLength = ZQDEV_FIELD_SIZE - 1;
    static constexpr std::size_t kMaxNameLength = kMaxTextLength - 1;

private:
    using Field = char[ZQDEV_FIELD_SIZE];

    static std::string_view View(const Field& field) noexcept;
    static CZQString Text(const Field& field) { return View(field); }
    static void SetText(Field& field, const char* name, const CZQString& text);

    ZQDEVICEINFO m_record{};
};

}  // namespace ZQAPI
