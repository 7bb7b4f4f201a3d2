#include "foundation/Io/ZQConfigFile.h"

#include <algorithm>
#include <cinttypes>
#include <cstdlib>
#include <mutex>
#include <span>

#include "foundation/Io/ZQCrc32.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/Io/ZQStream.h"
#include "foundation/ZQLogger.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// The last line: CR LF before it, "<#CRC", ten digits, "#>", no line end.
constexpr std::string_view kLinePrefix = "<#CRC";
constexpr std::size_t kLineLength = 17;
constexpr std::size_t kSealLength = kLineLength + 2;

bool IsSealed(std::string_view content) noexcept {
    return content.size() >= kLineLength &&
           content.substr(content.size() - kLineLength).starts_with(kLinePrefix);
}

std::uint32_t ChecksumOf(std::string_view covered) noexcept {
    CZQCrc32 crc;
    crc.Add(std::as_bytes(std::span(covered)));
    return crc.Value();
}

}  // namespace

CZQConfigFile::CZQConfigFile(const CZQString& fileName, Mode mode, bool check)
    : CZQIniFile(fileName), m_sealsOnClose(check && mode == Mode::kWrite) {
    if (mode == Mode::kWrite) {
        if (CZQFile::Exists(fileName)) {
            CZQFile::Delete(fileName);
        }
    } else if (check) {
        std::string content = VerifiedOrSealed();
        m_size = content.size();
        Hold(std::move(content));
    }
}

CZQConfigFile::~CZQConfigFile() {
    try {
        if (m_sealsOnClose && CZQFile::Exists(GetFileName())) {
            CreateFileChecksum();
        }
    } catch (CZQException& exception) {
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::~CZQConfigFile"));
        LogException(kLogLevel, exception);
    } catch (...) {
        DebugOutput("ZQSDK: !! not sealed: %s", GetFileName().c_str());
    }
}

// A file that nobody sealed yet is taken as it is, once.
std::string CZQConfigFile::VerifiedOrSealed() const {
    std::string content = ReadContent();
    if (IsSealed(content)) {
        Verify(content);
        return content;
    }
    // Two threads would both log it, and seal it twice.
    static std::mutex guard;
    const std::lock_guard lock(guard);
    content = ReadContent();
    try {
        Verify(content);
        return content;
    } catch (CZQException& exception) {
        if (exception.GetErrorNumber() != ZQ_ERR_SEAL_MISSING) {
            throw;
        }
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::CZQConfigFile"));
        exception.SetSeverity(kSeverityRecovered);
        LogException(kLogLevel, exception);
    }
    // Whoever writes to the file at this moment has it sealed at its next opening.
    CZQFile::ReplaceIf(GetFileName(), Sealed(content), content);
    return content;
}

std::string CZQConfigFile::ReadContent() const {
    try {
        std::string content = CZQFile::ReadWhole(GetFileName());
        if (content.size() < kLineLength) {
            ZQ_THROW("CZQConfigFile::ReadFileChecksum", ZQ_ERR_STREAM_SEEK, "SeekOrigin=%d, llOffset=%d",
                     static_cast<int>(CZQStream::kFromEnd), -static_cast<int>(kLineLength));
        }
        return content;
    } catch (CZQException& exception) {
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::ReadFileChecksum"));
        ZQ_THROW("CZQConfigFile::ReadFileChecksum", ZQ_ERR_SEAL_READ, "FileName='%s'", GetFileName().c_str())
            .CausedBy(exception);
    }
}

std::uint32_t CZQConfigFile::StoredChecksum(std::string_view content) const {
    const std::string line(content.substr(content.size() - kLineLength));
    if (!IsSealed(content)) {
        ZQ_THROW("CZQConfigFile::ReadFileChecksum", ZQ_ERR_SEAL_MISSING, "FileName='%s', Checksum='%s'",
                 GetFileName().c_str(), line.c_str());
    }
    return static_cast<std::uint32_t>(std::strtoll(line.c_str() + kLinePrefix.size(), nullptr, 10));
}

void CZQConfigFile::Verify(std::string_view content) const {
    const std::uint32_t reference = StoredChecksum(content);
    const std::uint32_t current = ChecksumOf(WithoutSeal(content));
    if (reference != current) {
        ZQ_THROW("CZQConfigFile::VerifyFileChecksum", ZQ_ERR_SEAL_MISMATCH,
                 "FileName='%s', RefCRC=%010" PRIu32 ", CurFileCRC=%010" PRIu32, GetFileName().c_str(),
                 reference, current);
    }
}

std::uint32_t CZQConfigFile::ReadFileChecksum() const {
    return StoredChecksum(ReadContent());
}

void CZQConfigFile::VerifyFileChecksum() const {
    Verify(ReadContent());
}

bool CZQConfigFile::HasChecksum() const {
    try {
        ReadFileChecksum();
        return true;
    } catch (const CZQException&) {
        return false;
    }
}

std::uint32_t CZQConfigFile::CreateFileChecksum() {
    std::string content;
    try {
        content = CZQFile::ReadWhole(GetFileName());
    } catch (CZQException& exception) {
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::CreateFileChecksum"));
        ZQ_THROW("CZQConfigFile::CreateFileChecksum", ZQ_ERR_SEAL_COMPUTE, "FileName='%s'",
                 GetFileName().c_str())
            .CausedBy(exception);
    }
    CZQFile::Replace(GetFileName(), Sealed(content));
    return ChecksumOf(WithoutSeal(content));
}

std::string_view CZQConfigFile::WithoutSeal(std::string_view content) noexcept {
    return IsSealed(content) ? content.substr(0, content.size() - std::min(content.size(), kSealLength))
                             : content;
}

std::string CZQConfigFile::Sealed(std::string text) {
    text.resize(WithoutSeal(text).size());
    const CZQString seal = CZQString::Formatted("\r\n<#CRC%010" PRIu32 "#>", ChecksumOf(text));
    return text.append(seal.view());
}

}  // namespace ZQAPI
