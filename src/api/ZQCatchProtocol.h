#pragma once

#include <exception>

#include "foundation/ZQException.h"
#include "foundation/ZQLogger.h"

namespace ZQAPI {

// Records where the exception was caught, logs it, and gives its number.
inline int Report(CZQException& exception, const SSourceLocation& here) {
    exception.AddCatchLocation(here);
    LogException(kLogLevel, exception);
    return exception.GetErrorNumber();
}

// Runs the body of an exported method: ZQ_OK, or the number of what it threw, which has then been logged with
// the method as its catch location. Anything but a CZQException becomes ZQ_ERR_UNEXPECTED. Lets nothing out.
template <class Body>
int RunReported(const SSourceLocation& here, Body&& body) noexcept {
    try {
        try {
            body();
            return ZQ_OK;
        } catch (CZQException& exception) {
            return Report(exception, here);
        } catch (const std::exception& exception) {
            CZQException unexpected(here, ZQ_ERR_UNEXPECTED, "%s", exception.what());
            return Report(unexpected, here);
        } catch (...) {
            CZQException unexpected(here, ZQ_ERR_UNEXPECTED);
            return Report(unexpected, here);
        }
    } catch (...) {
        // Not even memory for the report.
        return ZQ_ERR_UNEXPECTED;
    }
}

}  // namespace ZQAPI
