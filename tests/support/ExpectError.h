// EXPECT_ZQ_ERROR(statement, number): the statement throws CZQException with this number. What follows it in
// the same statement (<< "...") is printed on failure. FailureOf(lambda) gives number and extra text, and
// ThrownBy(lambda) the exception itself.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "foundation/ZQException.h"

namespace ZQAPI::test {

template <class Body>
std::optional<CZQException> ThrownBy(Body&& body) {
    try {
        body();
    } catch (const CZQException& exception) {
        return exception;
    }
    return std::nullopt;
}

// The number that the body fails with; 0 when it does not fail.
template <class Body>
std::int32_t ErrorOf(Body&& body) {
    const auto exception = ThrownBy(std::forward<Body>(body));
    return exception ? exception->GetErrorNumber() : 0;
}

using Failure = std::pair<std::int32_t, std::string>;  // {0, ""}: none

template <class Body>
Failure FailureOf(Body&& body) {
    const auto exception = ThrownBy(std::forward<Body>(body));
    return exception ? Failure{exception->GetErrorNumber(), exception->GetExtraText().str()} : Failure{};
}

}  // namespace ZQAPI::test

#define EXPECT_ZQ_ERROR(statement, number) EXPECT_EQ(::ZQAPI::test::ErrorOf([&] { statement; }), number)
