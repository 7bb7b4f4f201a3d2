#include "foundation/Io/ZQIniFile.h"

#include <algorithm>
#include <cinttypes>
#include <cstdlib>
#include <limits>

#include "foundation/Io/ZQIniText.h"
#include "foundation/Io/ZQProfileFile.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// The default that shows a key to be missing.
constexpr const char* kMissingKey = "333KeyExists?";

// Any leading part of the sentinel counts as the sentinel: files out there rely on it.
std::string_view WithoutSentinel(std::string_view value) {
    return std::string_view(CZQIniFile::kEmptyValue).starts_with(value) ? std::string_view() : value;
}

std::int32_t ToNumber(const CZQString& text) {
    using Limits = std::numeric_limits<std::int32_t>;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

}  // namespace

bool CZQIniFile::ReadsBack(std::string_view value) noexcept {
    return UnquoteIniValue(TrimIniPart(value)) == value && !HasLineBreak(value) &&
           !std::string_view(kEmptyValue).starts_with(value);
}

CZQIniFile::CZQIniFile(CZQString fileName)
    : m_fileName(std::move(fileName)), m_profile(std::make_unique<CZQProfileFile>(m_fileName)) {}

CZQIniFile::~CZQIniFile() = default;

CZQString CZQIniFile::Where(const CZQString& key) const {
    return CZQString::Formatted("Section=%s; Key=%s; File=%s", m_section.c_str(), key.c_str(),
                                m_fileName.c_str());
}

void CZQIniFile::Hold(std::string content) {
    m_profile->Hold(std::move(content));
}

void CZQIniFile::CheckRead(platform::SystemErrorCode error) const {
    if (error != 0 && !m_profile->IsMissing()) {
        ZQ_THROW("CZQIniFile::ReadFromFile", ZQ_ERR_STREAM_OPEN, "FileName=%s; %s", m_fileName.c_str(),
                 FormatSystemError(error).c_str());
    }
}

std::string_view CZQIniFile::Get(const CZQString& key, Buffer& buffer) {
    platform::SystemErrorCode error = 0;
    const std::size_t count =
        m_profile->Get(m_section.c_str(), key.c_str(), "", buffer.data(), buffer.size(), error);
    CheckRead(error);
    if (count == kBufferSize - 1) {
        ZQ_THROW("CZQIniFile::ReadFromFile", ZQ_ERR_INI_VALUE_TOO_LONG, "%s", Where(key).c_str());
    }
    return {buffer.data(), count};
}

void CZQIniFile::CheckFound(std::string_view value, const CZQString& key) const {
    if (value.empty()) {
        ZQ_THROW("CZQIniFile::ReadFromFile", ZQ_ERR_INI_KEY_MISSING, "%s", Where(key).c_str());
    }
}

CZQString CZQIniFile::ReadFromFile(const CZQString& key, const CZQString* defaultValue, bool noWriteBack) {
    Buffer buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled by Get
    std::string_view value = Get(key, buffer);
    if (defaultValue == nullptr) {
        CheckFound(value, key);
    } else if (value.empty()) {
        value = defaultValue->view().substr(0, kBufferSize - 1);
        if (!noWriteBack) {
            try {
                WriteToFile(key, *defaultValue);
            } catch (CZQException& exception) {
                exception.AddCatchLocation(ZQ_HERE("CZQIniFile::ReadFromFile"));
                ZQ_THROW("CZQIniFile::ReadFromFile", ZQ_ERR_INI_DEFAULT_WRITE, "%s", Where(key).c_str())
                    .CausedBy(exception);
            }
        }
    }
    return WithoutSentinel(value);
}

void CZQIniFile::WriteToFile(const CZQString& key, CZQString value) {
    value.Trim(" ");
    WriteVerbatim(key, value.IsEmpty() ? kEmptyValue : value);
}

void CZQIniFile::WriteVerbatim(const CZQString& key, const CZQString& value) {
    platform::SystemErrorCode error = 0;
    if (!m_profile->Set(m_section.c_str(), key.c_str(), value.c_str(), error)) {
        ZQ_THROW("CZQIniFile::WriteToFile", ZQ_ERR_INI_WRITE, "%s; %s", Where(key).c_str(),
                 FormatSystemError(error).c_str());
    }
}

void CZQIniFile::ReadString(const CZQString& key, CZQString& value) {
    value = ReadFromFile(key, nullptr, false);
}

void CZQIniFile::Read(const CZQString& key, char* buffer, std::uint32_t size) {
    Buffer whole;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled by Get
    const std::string_view found = Get(key, whole);
    CheckFound(found, key);
    const std::string_view value = WithoutSentinel(found);
    if (value.size() > size) {
        ZQ_THROW("CZQIniFile::Read", ZQ_ERR_TEXT_TOO_LONG, "%s; strlen=%ld", Where(key).c_str(),
                 static_cast<long>(value.size()));
    }
    *std::copy(value.begin(), value.end(), buffer) = '\0';
}

void CZQIniFile::ReadBool(const CZQString& key, bool& value) {
    value = String2Bool(ReadFromFile(key, nullptr, false), key);
}

void CZQIniFile::ReadInt(const CZQString& key, std::int32_t& value) {
    value = ToNumber(ReadFromFile(key, nullptr, false));
}

void CZQIniFile::ReadByte(const CZQString& key, std::uint8_t& value) {
    value = static_cast<std::uint8_t>(ToNumber(ReadFromFile(key, nullptr, false)));
}

void CZQIniFile::ReadLong(const CZQString& key, std::int32_t& value) {
    ReadInt(key, value);
}

void CZQIniFile::ReadStringArray(const CZQString& key, CZQStringArray& values, char separator) {
    values.Split(ReadFromFile(key, nullptr, false), static_cast<std::uint8_t>(separator), true);
}

std::string CZQIniFile::ReadLongString(const CZQString& key) {
    platform::SystemErrorCode error = 0;
    std::string value = m_profile->GetWhole(m_section.c_str(), key.c_str(), error);
    CheckRead(error);
    CheckFound(value, key);
    return WithoutSentinel(value).empty() ? std::string() : value;
}

std::string CZQIniFile::ReadNames(const char* section) {
    platform::SystemErrorCode error = 0;
    std::string names = m_profile->GetNames(section, error);
    CheckRead(error);
    return names;
}

bool CZQIniFile::KeyExists(const CZQString& key) {
    const CZQString missing = kMissingKey;
    return ReadFromFile(key, &missing, true) != missing;
}

void CZQIniFile::WriteInt(const CZQString& key, std::int32_t value) {
    WriteToFile(key, CZQString::Formatted("%" PRId32, value));
}

void CZQIniFile::WriteUInt8(const CZQString& key, std::uint8_t value) {
    WriteUInt32(key, value);
}

void CZQIniFile::WriteUInt32(const CZQString& key, std::uint32_t value) {
    WriteToFile(key, CZQString::Formatted("%" PRIu32, value));
}

void CZQIniFile::WriteStringArray(const CZQString& key, const CZQStringArray& values, char separator) {
    WriteToFile(key, values.Join(static_cast<std::uint8_t>(separator)));
}

bool CZQIniFile::String2Bool(const CZQString& text, const CZQString& key) const {
    if (text.EqualsNoCase("false") || text == "0") {
        return false;
    }
    if (text.EqualsNoCase("true") || text == "1") {
        return true;
    }
    ZQ_THROW("CZQIniFile::String2Bool", ZQ_ERR_INI_BAD_BOOL, "Section=%s; Key=%s; Value=%s; File=%s",
             m_section.c_str(), key.c_str(), text.c_str(), m_fileName.c_str());
}

CZQIniBatch::CZQIniBatch(CZQIniFile& file) : m_file(file) {
    m_file.m_profile->BeginSnapshot();
}

CZQIniBatch::CZQIniBatch(CZQIniFile& file, std::string content) : m_file(file) {
    m_file.m_profile->BeginSnapshot(std::move(content));
}

CZQIniBatch::~CZQIniBatch() {
    m_file.m_profile->EndSnapshot();
}

void CZQIniBatch::Commit() {
    platform::SystemErrorCode error = 0;
    if (!m_file.m_profile->Commit(error)) {
        ZQ_THROW("CZQIniBatch::Commit", ZQ_ERR_INI_WRITE, "%s; %s", m_file.Where({}).c_str(),
                 FormatSystemError(error).c_str());
    }
}

std::string CZQIniBatch::Text() const {
    return m_file.m_profile->SnapshotText();
}

}  // namespace ZQAPI
