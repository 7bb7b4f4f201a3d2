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
    // checksum line is logged and sealed. Write mode deletes an existing file and, with `check`, the
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
    // Puts the checksum line at the end, or renews the one there; its value. ZQ_ERR_SEAL_COMPUTE.
    std::uint32_t CreateFileChecksum();

    // Write mode: seals now and forces the file onto the disk, reporting what the destructor could only log;
    // the destructor then does nothing more. What CreateFileChecksum throws, and the streams' errors.
    void SealAndSync();

private:
    void VerifyOrSeal();
    std::uint32_t ComputeFileCrc(bool excludeChecksumLine) const;

    bool m_sealsOnClose;
};

}  // namespace ZQAPI
