#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "foundation/ZQException.h"
#include "foundation/ZQStringArray.h"
#include "platform/Files.h"

namespace ZQAPI {

class CZQProfileFile;

// Reads and writes single keys of one section of an INI file, with the rules of the system's private-profile
// functions (names match without regard to case, quotes around a value come off, ...). Rules of this class's
// own: a missing key is an error unless there is a default; WriteToFile never writes an empty value but a
// sentinel that reads back as empty.
//
// The file is parsed once and again when it changed on disk; a write is on disk when the call returns, except
// within a CZQIniBatch. Bound to one thread.
class CZQIniFile : public CZQRoot {
public:
    explicit CZQIniFile(CZQString fileName);
    CZQIniFile(const CZQIniFile&) = delete;
    CZQIniFile& operator=(const CZQIniFile&) = delete;
    ~CZQIniFile() override;

    const CZQString& GetFileName() const noexcept { return m_fileName; }
    // Later calls use this section; "not defined" at first.
    void SetSection(CZQString section) { m_section = std::move(section); }

    // A file that is there and can't be read: ZQ_ERR_STREAM_OPEN, from every reading operation. One that is
    // missing has no keys.
    //
    // The value as text; a value that is a leading part of the sentinel reads as empty. Missing or empty: the
    // default, which is also written into the file unless `noWriteBack`; without a default
    // ZQ_ERR_INI_KEY_MISSING. 4095 or more characters: ZQ_ERR_INI_VALUE_TOO_LONG.
    CZQString ReadFromFile(const CZQString& key, const CZQString* defaultValue, bool noWriteBack);
    // Spaces at both ends are dropped; what is empty then is written as the sentinel. ZQ_ERR_INI_WRITE.
    void WriteToFile(const CZQString& key, CZQString value);
    // Writes the value exactly as it is: an empty one stays empty and will count as missing when read.
    void WriteVerbatim(const CZQString& key, const CZQString& value);

    void ReadString(const CZQString& key, CZQString& value);
    // Copies the value with its NUL when it has at most `size` characters: the buffer has room for size + 1
    // bytes. Longer: ZQ_ERR_TEXT_TOO_LONG.
    void Read(const CZQString& key, char* buffer, std::uint32_t size);
    void ReadBool(const CZQString& key, bool& value);
    // Numbers as atoi reads them: what is no number is 0, never an error.
    void ReadInt(const CZQString& key, std::int32_t& value);
    void ReadByte(const CZQString& key, std::uint8_t& value);
    void ReadLong(const CZQString& key, std::int32_t& value);
    // Pieces are trimmed of white space.
    void ReadStringArray(const CZQString& key, CZQStringArray& values, char separator);
    // As ReadString without the limit on the value's length: a device list names any number of devices.
    std::string ReadLongString(const CZQString& key);
    // The names that the file has, in its order, each ended by a NUL (TakeIniName): of its sections, or of the keys in
    // the section.
    std::string ReadSectionNames() { return ReadNames(nullptr); }
    std::string ReadKeyNames() { return ReadNames(m_section.c_str()); }
    // Present with a value that is not empty (one written as empty through WriteToFile counts).
    bool KeyExists(const CZQString& key);

    void WriteString(const CZQString& key, const CZQString& value) { WriteToFile(key, value); }
    void WriteInt(const CZQString& key, std::int32_t value);
    void WriteUInt8(const CZQString& key, std::uint8_t value);
    void WriteUInt32(const CZQString& key, std::uint32_t value);
    void WriteStringArray(const CZQString& key, const CZQStringArray& values, char separator);

    // "true" and "false" in any case, "1" and "0"; anything else ZQ_ERR_INI_BAD_BOOL naming the key.
    bool String2Bool(const CZQString& text, const CZQString& key) const;

    // Whether a value written as it is will be read as the same text: it is neither empty nor the beginning
    // of the sentinel, and has no blanks or pair of quotes around it, no line break and no NUL.
    static bool ReadsBack(std::string_view value) noexcept;

    // For texts of errors: "Section=...; Key=...; File=...".
    CZQString Where(const CZQString& key) const;

    // The word that stands for an empty value in the file.
    static constexpr const char* kEmptyValue = "EmpTySTRINg";

protected:
    // This text was read from the file already: it stands for the file until something is written.
    void Hold(std::string content);

private:
    friend class CZQIniBatch;

    static constexpr std::size_t kBufferSize = 4096;
    using Buffer = std::array<char, kBufferSize>;

    // The value as it stands in the file, put into the buffer; empty when there is none.
    std::string_view Get(const CZQString& key, Buffer& buffer);
    // ZQ_ERR_INI_KEY_MISSING for an empty one.
    void CheckFound(std::string_view value, const CZQString& key) const;
    std::string ReadNames(const char* section);
    void CheckRead(platform::SystemErrorCode error) const;

    CZQString m_fileName;
    CZQString m_section = "not defined";
    std::unique_ptr<CZQProfileFile> m_profile;
};

// While it lives, the file is one snapshot in memory: reads don't look at the disk again, writes collect
// until Commit writes them all at once. Without Commit they are dropped. For whole lists, so that the work
// stays linear. One at a time for each file object.
class CZQIniBatch {
public:
    explicit CZQIniBatch(CZQIniFile& file);
    // The snapshot is this text instead of the file's.
    CZQIniBatch(CZQIniFile& file, std::string content);
    CZQIniBatch(const CZQIniBatch&) = delete;
    CZQIniBatch& operator=(const CZQIniBatch&) = delete;
    ~CZQIniBatch();

    // ZQ_ERR_INI_WRITE
    void Commit();
    // What Commit would write.
    std::string Text() const;

private:
    CZQIniFile& m_file;
};

}  // namespace ZQAPI
