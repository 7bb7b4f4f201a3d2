#include "foundation/Io/ZQTextFileStream.h"

namespace ZQAPI {

CZQString CZQTextFileStream::ReadLine() {
    // Lines are made of pieces of this size, and the end of the file where a piece should begin is an error:
    // a last line without line end whose length is a multiple of it can't be read. An old rule, kept.
    constexpr std::size_t kPiece = 255;
    constexpr const char* kMethod = "CZQTextFileStream::ReadLine";
    BeginReading(kMethod);
    std::string line;
    for (;;) {
        const int c = GetTextCharacter();
        if (c == '\n') {
            return line;
        }
        if (c == EOF) {
            break;
        }
        line.push_back(static_cast<char>(c));
    }
    if (line.size() % kPiece == 0) {
        ThrowReadFailure(kMethod);
    }
    return line;
}

void CZQTextFileStream::WriteLine(const CZQString& text) {
    CheckWritable("CZQTextFileStream::WriteLine");
    WriteText(text.str() + '\n');
}

}  // namespace ZQAPI
