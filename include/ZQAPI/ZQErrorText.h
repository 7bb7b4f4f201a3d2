/* The name and the condition of an error number, for programs in C and C++: out of the table of ZQErrors.h, with
 * nothing to link.
 *
 * Plain C89 and C++. Thread-safe; the texts are constants.
 */
#ifndef ZQAPI_ZQERRORTEXT_H
#define ZQAPI_ZQERRORTEXT_H

#include "ZQErrors.h"

/* Defined in each source that includes this header, whether that uses them or not. */
#if defined(__cplusplus)
#define ZQ_ERROR_TEXT_FUNCTION_ inline
#elif defined(__GNUC__)
#define ZQ_ERROR_TEXT_FUNCTION_ static __attribute__((unused))
#elif defined(_MSC_VER)
#define ZQ_ERROR_TEXT_FUNCTION_ static __inline
#else
#define ZQ_ERROR_TEXT_FUNCTION_ static
#endif

/* "ZQ_ERR_NOT_INITIALISED" for -190006, "ZQ_OK" for 1; "unknown" for a number outside the table. */
ZQ_ERROR_TEXT_FUNCTION_ const char* ZQ_ErrorName(int number) {
    switch (number) {
        case ZQ_OK:
            return "ZQ_OK";
#define ZQ_ERROR_NAME_CASE_(name, value, condition) \
    case value:                                     \
        return #name;
            ZQ_ERROR_TABLE(ZQ_ERROR_NAME_CASE_)
#undef ZQ_ERROR_NAME_CASE_
        default:
            return "unknown";
    }
}

/* "the library is not initialised" for -190006, "success" for 1; "unknown error" for a number outside the table. */
ZQ_ERROR_TEXT_FUNCTION_ const char* ZQ_ErrorText(int number) {
    switch (number) {
        case ZQ_OK:
            return "success";
#define ZQ_ERROR_TEXT_CASE_(name, value, condition) \
    case value:                                     \
        return condition;
            ZQ_ERROR_TABLE(ZQ_ERROR_TEXT_CASE_)
#undef ZQ_ERROR_TEXT_CASE_
        default:
            return "unknown error";
    }
}

#undef ZQ_ERROR_TEXT_FUNCTION_

#endif
