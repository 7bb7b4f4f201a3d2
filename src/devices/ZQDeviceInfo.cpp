#include "devices/ZQDeviceInfo.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

struct FieldKey {
    const char* name;  // key in the device list file
    char (ZQDEVICEINFO::*field)[ZQDEV_FIELD_SIZE];
};

constexpr FieldKey kNameField[] = {{"Name", &ZQDEVICEINFO::Name}};

constexpr FieldKey kDeviceKeys[] = {
    {"DeviceTypeByName", &ZQDEVICEINFO::DeviceTypeByName},
    {"DeviceID", &ZQDEVICEINFO::DeviceID},
    {"DeviceDesc", &ZQDEVICEINFO::DeviceDesc},
    {"FirmwareVersion", &ZQDEVICEINFO::FirmwareVersion},
};

constexpr FieldKey kScannerKeys[] = {
    {"UsedScanner", &ZQDEVICEINFO::UsedScanner},
    {"UsedAddress", &ZQDEVICEINFO::UsedAddress},
};

constexpr FieldKey kConnectionKeys[] = {
    {"CCM", &ZQDEVICEINFO::CCM},
    {"CCMAddress", &ZQDEVICEINFO::CCMAddress},
    {"IAM", &ZQDEVICEINFO::IAM},
    {"IAMAddress", &ZQDEVICEINFO::IAMAddress},
};

// The sections that describe one device, in the order of the file: keys, and what follows the device's name.
struct SectionLayout {
    const char* suffix;
    std::span<const FieldKey> keys;
};

constexpr SectionLayout kSections[] = {
    {"", kDeviceKeys},
    {".Scanner", kScannerKeys},
    {".Connections", kConnectionKeys},
};

template <class Check>
void ForEachField(const ZQDEVICEINFO& record, Check&& check) {
    check(kNameField[0].name, record.*kNameField[0].field);
    for (const SectionLayout& section : kSections) {
        for (const FieldKey& key : section.keys) {
            check(key.name, record.*key.field);
        }
    }
}

}  // namespace

std::string_view CZQDeviceInfo::View(const Field& field) noexcept {
    const std::string_view whole(field, sizeof field);
    return whole.substr(0, whole.find('\0'));
}

void CZQDeviceInfo::SetText(Field& field, const char* name, const CZQString& text) {
    if (text.GetLength() > kMaxTextLength) {
        ZQ_THROW("CZQDeviceInfo::SetText", ZQ_ERR_TEXT_TOO_LONG, "Field=%s; strlen=%ld", name,
                 static_cast<long>(text.GetLength()));
    }
    text.CopyToChars(field, static_cast<std::int32_t>(kMaxTextLength));
    std::fill(field + text.GetLength(), std::end(field), '\0');
}

bool CZQDeviceInfo::ReadsBack(const CZQString& text) noexcept {
    return text.GetLength() <= kMaxTextLength && !text.HasControlCharacter() &&
           CZQIniFile::ReadsBack(text.view());
}

void CZQDeviceInfo::CheckTerminated() const {
    ForEachField(m_record, [](const char* name, const Field& field) {
        if (View(field).size() == ZQDEV_FIELD_SIZE) {
            ZQ_THROW("CZQDeviceInfo::CheckTerminated", ZQ_ERR_TEXT_TOO_LONG, "Field=%s", name);
        }
    });
}

void CZQDeviceInfo::CheckPrintable() const {
    ForEachField(m_record, [](const char* name, const Field& field) {
        if (Text(field).HasControlCharacter()) {
            ZQ_THROW("CZQDeviceInfo::CheckPrintable", ZQ_ERR_BAD_VALUE, "Field=%s", name);
        }
    });
}

void CZQDeviceInfo::CheckName() const {
    const std::string_view name = View(m_record.Name);
    // Blanks and quotes at the ends come off when the file is read, the list of names is split at ';', and a
    // leading part of the word for an empty value reads as empty.
    constexpr std::string_view kLostAtEnds = " \t\"'";
    const bool readsBack = !name.empty() && name.size() <= kMaxNameLength &&
                           name.find_first_of(";]") == std::string_view::npos &&
                           kLostAtEnds.find(name.front()) == std::string_view::npos &&
                           kLostAtEnds.find(name.back()) == std::string_view::npos &&
                           !std::string_view(CZQIniFile::kEmptyValue).starts_with(name);
    if (!readsBack) {
        ZQ_THROW("CZQDeviceInfo::CheckName", ZQ_ERR_BAD_VALUE, "Name=%s", Text(m_record.Name).c_str());
    }
}

void CZQDeviceInfo::LoadFromIni(CZQIniFile& file, const CZQString& section) {
    if (section.GetLength() > kMaxNameLength) {
        ZQ_THROW("CZQDeviceInfo::LoadFromIni", ZQ_ERR_TEXT_TOO_LONG, "Section=%s; File=%s", section.c_str(),
                 file.GetFileName().c_str());
    }
    SetName(section);
    for (const SectionLayout& layout : kSections) {
        file.SetSection(section + layout.suffix);
        for (const FieldKey& key : layout.keys) {
            file.Read(key.name, m_record.*key.field, static_cast<std::uint32_t>(kMaxTextLength));
        }
    }
}

void CZQDeviceInfo::SaveToIni(CZQIniFile& file) const {
    for (const SectionLayout& layout : kSections) {
        file.SetSection(GetName() + layout.suffix);
        for (const FieldKey& key : layout.keys) {
            file.WriteVerbatim(key.name, Text(m_record.*key.field));
        }
    }
}

}  // namespace ZQAPI
