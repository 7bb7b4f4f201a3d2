// EXPECT_ZQ_ERROR(statement, number): the statement throws CZQException with this number. What follows it in
// the same statement (<< "...") is printed on failure. ThrownBy(lambda) gives the exception itself.
#pragma once

#include <gtest/gtest.h>

#include <optional>

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

}  // namespace ZQAPI::test

#define EXPECT_ZQ_ERROR(statement, number) EXPECT_EQ(::ZQAPI::test::ErrorOf([&] { statement; }), number)
