// Where a failure is shown that the library goes on after, such as a camera that could not be identified.
#pragma once

#include <memory>

#include "foundation/ZQException.h"

namespace ZQAPI {

class CZQIErrorReporter {
public:
    CZQIErrorReporter() = default;
    CZQIErrorReporter(const CZQIErrorReporter&) = delete;
    CZQIErrorReporter& operator=(const CZQIErrorReporter&) = delete;
    virtual ~CZQIErrorReporter() = default;

    // From any thread. Must not throw.
    virtual void Report(const CZQException& exception) = 0;
};

// Installs the reporter of this process; null for none. Thread-safe.
void SetErrorReporter(std::shared_ptr<CZQIErrorReporter> reporter);

// Hands the exception to the reporter; without one its text goes to the debug output. Never throws.
void ReportError(const CZQException& exception) noexcept;

}  // namespace ZQAPI
