#include "Failure.h"

#include <ZQAPI/ZQDevice.hpp>

namespace ZQAPI::zqdev {

std::string FailureLine(const std::string& what, int number, const std::string& advice) {
    return what + ": error " + std::to_string(number) + ", " + device::Condition(number) + "; " + advice;
}

}  // namespace ZQAPI::zqdev
