#include "foundation/Io/ZQConfigFile.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdlib>
#include <utility>
#include <vector>

#include "foundation/Io/ZQCrc32.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/Io/ZQFileStream.h"
#include "foundation/ZQLogger.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// The last line: CR LF before it, "<#CRC", ten digits, "#>", no line end.
constexpr std::string_view kLinePrefix = "<#CRC";
constexpr std::int64_t kLineLength = 17;
constexpr std::int64_t kSealLength = kLineLength + 2;

constexpr std::size_t kBlockSize = 65536;

// How much of a file of this length its checksum is about.
std::int64_t CoveredLength(std::int64_t fileLength, bool isSealed) {
    return isSealed ? std::max<std::int64_t>(fileLength - kSealLength, 0) : fileLength;
}

}  // namespace

CZQConfigFile::CZQConfigFile(const CZQString& fileName, Mode mode, bool check)
    : CZQIniFile(fileName), m_sealsOnClose(check && mode == Mode::kWrite) {
    if (mode == Mode::kWrite) {
        if (CZQFile::Exists(fileName)) {
            CZQFile::Delete(fileName);
        }
    } else if (check) {
        VerifyOrSeal();
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
void CZQConfigFile::VerifyOrSeal() {
    try {
        VerifyFileChecksum();
    } catch (CZQException& exception) {
        if (exception.GetErrorNumber() != ZQ_ERR_SEAL_MISSING) {
            throw;
        }
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::CZQConfigFile"));
        exception.SetSeverity(kSeverityRecovered);
        LogException(kLogLevel, exception);
        CreateFileChecksum();
    }
}

std::uint32_t CZQConfigFile::ReadFileChecksum() const {
    std::array<char, kLineLength + 1> line{};
    try {
        CZQFileStream stream(GetFileName(), CZQFileStream::kRead, CZQFileStream::kExisting);
        stream.Seek(-kLineLength, CZQStream::kFromEnd);
        stream.Read(line.data(), kLineLength);
    } catch (CZQException& exception) {
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::ReadFileChecksum"));
        throw CZQException(ZQ_HERE("CZQConfigFile::ReadFileChecksum"), ZQ_ERR_SEAL_READ, "FileName='%s'",
                           GetFileName().c_str())
            .CausedBy(exception);
    }
    if (!std::string_view(line.data()).starts_with(kLinePrefix)) {
        throw CZQException(ZQ_HERE("CZQConfigFile::ReadFileChecksum"), ZQ_ERR_SEAL_MISSING,
                           "FileName='%s', Checksum='%s'", GetFileName().c_str(), line.data());
    }
    return static_cast<std::uint32_t>(std::strtoll(line.data() + kLinePrefix.size(), nullptr, 10));
}

void CZQConfigFile::VerifyFileChecksum() const {
    const std::uint32_t reference = ReadFileChecksum();
    const std::uint32_t current = ComputeFileCrc(true);
    if (reference != current) {
        throw CZQException(ZQ_HERE("CZQConfigFile::VerifyFileChecksum"), ZQ_ERR_SEAL_MISMATCH,
                           "FileName='%s', RefCRC=%010" PRIu32 ", CurFileCRC=%010" PRIu32,
                           GetFileName().c_str(), reference, current);
    }
}

bool CZQConfigFile::HasChecksum() const {
    try {
        ReadFileChecksum();
        return true;
    } catch (const CZQException&) {
        return false;
    }
}

std::uint32_t CZQConfigFile::ComputeFileCrc(bool excludeChecksumLine) const {
    CZQFileStream stream(GetFileName(), CZQFileStream::kRead, CZQFileStream::kExisting);
    auto rest = static_cast<std::size_t>(CoveredLength(stream.GetLength(), excludeChecksumLine));
    std::vector<std::byte> block(std::min<std::size_t>(rest, kBlockSize));
    CZQCrc32 crc;
    while (rest > 0) {
        const auto part = std::span(block).first(std::min(rest, block.size()));
        stream.Read(part.data(), part.size());
        crc.Add(part);
        rest -= part.size();
    }
    return crc.Value();
}

std::uint32_t CZQConfigFile::CreateFileChecksum() {
    const bool isSealed = HasChecksum();
    std::uint32_t checksum = 0;
    try {
        checksum = ComputeFileCrc(isSealed);
    } catch (CZQException& exception) {
        exception.AddCatchLocation(ZQ_HERE("CZQConfigFile::CreateFileChecksum"));
        throw CZQException(ZQ_HERE("CZQConfigFile::CreateFileChecksum"), ZQ_ERR_SEAL_COMPUTE, "FileName='%s'",
                           GetFileName().c_str())
            .CausedBy(exception);
    }
    const CZQString seal = CZQString::Formatted("\r\n<#CRC%010" PRIu32 "#>", checksum);
    CZQFileStream stream(GetFileName(), CZQFileStream::kReadWrite, CZQFileStream::kExisting);
    stream.Seek(CoveredLength(stream.GetLength(), isSealed), CZQStream::kFromStart);
    stream.Write(seal.c_str(), seal.GetLength());
    stream.Flush();
    return checksum;
}

void CZQConfigFile::SealAndSync() {
    if (std::exchange(m_sealsOnClose, false)) {
        CreateFileChecksum();
    }
    CZQFileStream(GetFileName(), CZQFileStream::kReadWrite, CZQFileStream::kExisting).Sync();
}

}  // namespace ZQAPI
