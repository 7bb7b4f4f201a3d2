#pragma once

#include <cstdio>
#include <memory>

#include "foundation/Io/ZQStream.h"
#include "foundation/ZQString.h"

namespace ZQAPI {

// A buffered file. In text mode lines end in CR LF on disk and in LF for the caller, and a 1A byte ends what
// can be read; that is so on every system. Between reading and writing on the same stream, Seek or Flush must
// be called. Only regular files are opened.
//
// Errors of every operation but Close: ZQ_ERR_STREAM_CLOSED; of those that read ZQ_ERR_STREAM_NOT_READABLE,
// ZQ_ERR_STREAM_END, ZQ_ERR_STREAM_READ; of those that write ZQ_ERR_STREAM_NOT_WRITABLE, ZQ_ERR_STREAM_WRITE,
// ZQ_ERR_STREAM_FLUSH.
class CZQFileStream : public CZQStream {
public:
    enum Access : std::uint32_t { kRead = 0, kWrite = 1, kReadWrite = 2 };

    // kCreate empties an existing file, kAppend writes at its end only. kExisting needs a file and keeps it;
    // with kWrite it is the same as kAppend. Reading takes an existing file whatever the disposition.
    enum Disposition : std::uint32_t { kExisting = 0, kCreate = 1, kAppend = 2 };

    // Opens at once: ZQ_ERR_STREAM_OPEN.
    CZQFileStream(const CZQString& fileName, std::uint32_t access, std::uint32_t disposition,
                  bool binary = true);

    // ZQ_ERR_STREAM_POSITION
    std::int64_t GetCurPosition() override;
    // ZQ_ERR_STREAM_SEEK
    std::int64_t Seek(std::int64_t offset, std::uint32_t origin) override;
    // ZQ_ERR_STREAM_LENGTH
    std::int64_t GetLength() override;
    // A null buffer: ZQ_ERR_NULL_OUTPUT.
    void Read(void* buffer, std::size_t count) override;
    std::uint8_t ReadByte() override;
    // A null buffer: ZQ_ERR_NULL_INPUT.
    void Write(const void* buffer, std::size_t count) override;
    void WriteByte(std::uint8_t value) override;
    void Flush() override;
    // What is still buffered goes to the file, but only Flush tells whether it got there.
    void Close() noexcept override { m_file.reset(); }

protected:
    // `method` is who asks, for the exception. What failed before says nothing of this read.
    void BeginReading(const char* method);
    void CheckWritable(const char* method) const;
    // The next character of a text file, EOF at its end or on an error.
    int GetTextCharacter() noexcept;
    // Ends a reading operation that got less than it needs.
    [[noreturn]] void ThrowReadFailure(const char* method) const;
    void WriteText(std::string_view text);

private:
    struct Closer {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    void Open(const CZQString& fileName, std::uint32_t access, std::uint32_t disposition);
    void CheckOpen(const char* method) const;
    std::size_t ReadText(char* buffer, std::size_t count) noexcept;
    void WriteBytes(std::string_view bytes);

    std::unique_ptr<std::FILE, Closer> m_file;
    bool m_isBinary;
};

}  // namespace ZQAPI
