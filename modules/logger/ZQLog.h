#pragma once

#include <cstdint>
#include <memory>

#include "foundation/ZQException.h"

namespace ZQAPI {

// The log of this process: the file of its program in the folder "log" of the kit's data folder, as the section
// "Logger" of ZQAPI.ini has it, which is looked at again when it has changed. Nothing is read or made before the first
// entry. What goes wrong is told once on the debug output, and nowhere else. Thread-safe; it holds no file, lock or
// thread between two calls.
class CZQLog {
public:
    CZQLog();
    CZQLog(const CZQLog&) = delete;
    CZQLog& operator=(const CZQLog&) = delete;
    ~CZQLog();

    // `level` is the one that a caller of the library gives: kLogLevelDebug is a text, all others are failures.
    void Write(std::uint32_t level, const CZQException& exception) noexcept;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace ZQAPI
