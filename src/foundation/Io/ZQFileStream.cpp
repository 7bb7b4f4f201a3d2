#include "foundation/Io/ZQFileStream.h"

#include <cinttypes>
#include <limits>
#include <string>

#include "foundation/ZQException.h"
#include "platform/Files.h"

namespace ZQAPI {

namespace {

// Ends the text of a file, as old systems had it.
constexpr int kEndOfText = 0x1A;

// Opened as binary always: the two text conversions are made here, alike on every system.
const char* OpenMode(std::uint32_t access, std::uint32_t disposition) {
    if (access == CZQFileStream::kRead) {
        return "rb";
    }
    if (access == CZQFileStream::kWrite) {
        return disposition == CZQFileStream::kCreate ? "wb" : "ab";
    }
    switch (disposition) {
        case CZQFileStream::kExisting:
            return "r+b";
        case CZQFileStream::kCreate:
            return "w+b";
        default:
            return "a+b";
    }
}

int ToWhence(std::uint32_t origin) {
    switch (origin) {
        case CZQStream::kFromCurrent:
            return SEEK_CUR;
        case CZQStream::kFromEnd:
            return SEEK_END;
        default:
            return SEEK_SET;
    }
}

}  // namespace

CZQFileStream::CZQFileStream(const CZQString& fileName, std::uint32_t access, std::uint32_t disposition,
                             bool binary)
    : m_isBinary(binary) {
    Open(fileName, access, disposition);
}

void CZQFileStream::Open(const CZQString& fileName, std::uint32_t access, std::uint32_t disposition) {
    m_canSeek = true;
    m_canRead = access != kWrite;
    m_canWrite = access != kRead;
    // Some systems open a folder for reading and fail later; a pipe would be waited for.
    if (!platform::IsSpecialFile(fileName.str())) {
        m_file.reset(std::fopen(fileName.c_str(), OpenMode(access, disposition)));
    }
    if (!m_file) {
        ZQ_THROW("CZQFileStream::Open", ZQ_ERR_STREAM_OPEN, "FileName=%s", fileName.c_str());
    }
}

void CZQFileStream::CheckOpen(const char* method) const {
    if (!m_file) {
        ZQ_THROW(method, ZQ_ERR_STREAM_CLOSED);
    }
}

void CZQFileStream::BeginReading(const char* method) {
    CheckOpen(method);
    if (!CanRead()) {
        ZQ_THROW(method, ZQ_ERR_STREAM_NOT_READABLE);
    }
    std::clearerr(m_file.get());
}

void CZQFileStream::CheckWritable(const char* method) const {
    CheckOpen(method);
    if (!CanWrite()) {
        ZQ_THROW(method, ZQ_ERR_STREAM_NOT_WRITABLE);
    }
}

std::int64_t CZQFileStream::GetCurPosition() {
    CheckOpen("CZQFileStream::GetCurPosition");
    const long position = std::ftell(m_file.get());
    if (position == -1) {
        ZQ_THROW("CZQFileStream::GetCurPosition", ZQ_ERR_STREAM_POSITION);
    }
    return position;
}

std::int64_t CZQFileStream::Seek(std::int64_t offset, std::uint32_t origin) {
    using Limits = std::numeric_limits<long>;
    CheckOpen("CZQFileStream::Seek");
    if (offset < Limits::min() || offset > Limits::max() ||
        std::fseek(m_file.get(), static_cast<long>(offset), ToWhence(origin)) != 0) {
        ZQ_THROW("CZQFileStream::Seek", ZQ_ERR_STREAM_SEEK, "SeekOrigin=%d, llOffset=%" PRId64,
                 static_cast<int>(origin), offset);
    }
    return GetCurPosition();
}

std::int64_t CZQFileStream::GetLength() {
    CheckOpen("CZQFileStream::GetLength");
    try {
        const std::int64_t position = GetCurPosition();
        const std::int64_t length = Seek(0, kFromEnd);
        Seek(position, kFromStart);
        return length;
    } catch (CZQException& exception) {
        exception.AddCatchLocation(ZQ_HERE("CZQFileStream::GetLength"));
        ZQ_THROW("CZQFileStream::GetLength", ZQ_ERR_STREAM_LENGTH).CausedBy(exception);
    }
}

void CZQFileStream::Read(void* buffer, std::size_t count) {
    constexpr const char* kMethod = "CZQFileStream::Read";
    if (count == 0) {
        return;
    }
    BeginReading(kMethod);
    if (buffer == nullptr) {
        ZQ_THROW(kMethod, ZQ_ERR_NULL_OUTPUT);
    }
    const std::size_t got =
        m_isBinary ? std::fread(buffer, 1, count, m_file.get()) : ReadText(static_cast<char*>(buffer), count);
    if (got != count) {
        ThrowReadFailure(kMethod);
    }
}

std::uint8_t CZQFileStream::ReadByte() {
    CheckOpen("CZQFileStream::ReadByte");
    std::uint8_t value = 0;
    Read(&value, 1);
    return value;
}

void CZQFileStream::Write(const void* buffer, std::size_t count) {
    constexpr const char* kMethod = "CZQFileStream::Write";
    if (count == 0) {
        return;
    }
    CheckWritable(kMethod);
    if (buffer == nullptr) {
        ZQ_THROW(kMethod, ZQ_ERR_NULL_INPUT);
    }
    const std::string_view bytes(static_cast<const char*>(buffer), count);
    if (m_isBinary) {
        WriteBytes(bytes);
    } else {
        WriteText(bytes);
    }
}

void CZQFileStream::WriteByte(std::uint8_t value) {
    CheckOpen("CZQFileStream::WriteByte");
    Write(&value, 1);
}

void CZQFileStream::Flush() {
    CheckWritable("CZQFileStream::Flush");
    if (std::fflush(m_file.get()) == EOF) {
        ZQ_THROW("CZQFileStream::Flush", ZQ_ERR_STREAM_FLUSH);
    }
}

int CZQFileStream::GetTextCharacter() noexcept {
    std::FILE* const file = m_file.get();
    const int c = std::getc(file);
    if (c == kEndOfText) {
        std::ungetc(c, file);
        return EOF;
    }
    if (c == '\r') {
        const int next = std::getc(file);
        if (next == '\n') {
            return next;
        }
        std::ungetc(next, file);
    }
    return c;
}

std::size_t CZQFileStream::ReadText(char* buffer, std::size_t count) noexcept {
    std::size_t got = 0;
    for (int c = 0; got < count && (c = GetTextCharacter()) != EOF; ++got) {
        buffer[got] = static_cast<char>(c);
    }
    return got;
}

void CZQFileStream::ThrowReadFailure(const char* method) const {
    ZQ_THROW(method, std::ferror(m_file.get()) != 0 ? ZQ_ERR_STREAM_READ : ZQ_ERR_STREAM_END);
}

void CZQFileStream::WriteText(std::string_view text) {
    std::string converted;
    converted.reserve(text.size() + 1);
    for (const char c : text) {
        if (c == '\n') {
            converted.push_back('\r');
        }
        converted.push_back(c);
    }
    WriteBytes(converted);
}

void CZQFileStream::WriteBytes(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size()) {
        ZQ_THROW("CZQFileStream::Write", ZQ_ERR_STREAM_WRITE);
    }
}

}  // namespace ZQAPI
