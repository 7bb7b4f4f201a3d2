#pragma once

#include <cstdint>

#include "foundation/Io/ZQIniFile.h"

namespace ZQAPI {

// An INI file whose last line is a checksum of everything before it, so that damage is noticed when it is
// opened. See docs/file-formats.md for the line and the checksum.
class CZQConfigFile : public CZQIniFile {
public:
    enum class Mode : std::uint32_t { kRead = 0, kWrite = 1 };

    // Read mode with `check` verifies the file: ZQ_ERR_SEAL_READ, ZQ_ERR_SEAL_MISMATCH; one without a
    // checksum line is logged and sealed, by one thread of the process at a time. It is read once: what was
    // verified is what the object gives, whatever becomes of the file. Write mode deletes an existing file and, with `check`, the
    // destructor seals what was written. Without `check` a plain INI file.
    CZQConfigFile(const CZQString& fileName, Mode mode, bool check);
    CZQConfigFile(const CZQConfigFile&) = delete;
    CZQConfigFile& operator=(const CZQConfigFile&) = delete;
    ~CZQConfigFile() override;

    // The checksum line's value. No such line: ZQ_ERR_SEAL_MISSING; unreadable or shorter than the line:
    // ZQ_ERR_SEAL_READ.
    std::uint32_t ReadFileChecksum() const;
    // ZQ_ERR_SEAL_MISMATCH, and what ReadFileChecksum throws.
    void VerifyFileChecksum() const;
    bool HasChecksum() const;
    // Puts the checksum line at the end, or renews the one there; its value. The file is replaced, as
    // CZQFile::Replace does it. ZQ_ERR_SEAL_COMPUTE, and what that throws.
    std::uint32_t CreateFileChecksum();

    // Bytes of the file that was verified on opening.
    std::size_t GetSize() const noexcept { return m_size; }

    // The text with its checksum line, in place of the one it may have.
    static std::string Sealed(std::string text);
    // What the checksum is about: all before its line, if there is one.
    static std::string_view WithoutSeal(std::string_view content) noexcept;

private:
    std::string ReadContent() const;
    std::uint32_t StoredChecksum(std::string_view content) const;
    void Verify(std::string_view content) const;
    std::string VerifiedOrSealed() const;

    bool m_sealsOnClose;
    std::size_t m_size = 0;
};

}  // namespace ZQAPI
