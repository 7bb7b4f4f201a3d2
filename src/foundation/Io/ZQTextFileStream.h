#pragma once

#include "foundation/Io/ZQFileStream.h"

namespace ZQAPI {

// A text file, line by line.
class CZQTextFileStream : public CZQFileStream {
public:
    CZQTextFileStream(const CZQString& fileName, std::uint32_t access, std::uint32_t disposition)
        : CZQFileStream(fileName, access, disposition, false) {}

    // The next line without its line end. After the last one ZQ_ERR_STREAM_END.
    CZQString ReadLine();
    void WriteLine(const CZQString& text);
};

}  // namespace ZQAPI
