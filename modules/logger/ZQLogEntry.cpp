#include "ZQLogEntry.h"

#include <ZQAPI/ZQErrorText.h>

#include "foundation/ZQPrintableText.h"

namespace ZQAPI {

namespace {

// In bytes, before they are made printable: that may make four of one.
constexpr std::size_t kMaxText = 1024;
constexpr std::size_t kMaxName = 128;
constexpr int kMaxCauses = 10;
constexpr int kMaxLines = 30;

constexpr std::string_view kIndent = "\n    ";

std::string Bounded(std::string_view text, std::size_t maxLength) {
    return text.size() <= maxLength ? Printable(text) : Printable(text.substr(0, maxLength)) + "...";
}

// The system's texts end in line ends of their own.
std::string Text(const CZQString& text) {
    return Bounded(CZQString(text).Trim().view(), kMaxText);
}

std::string Place(const CZQExceptionLocationInfo& location) {
    return Bounded(location.GetFunction().view(), kMaxName) + ", " +
           Bounded(location.GetFile().view(), kMaxName) + ":" + std::to_string(location.GetLine());
}

std::string Line(const CZQException& exception) {
    const std::int32_t number = exception.GetErrorNumber();
    std::string line = std::to_string(number) + " " + ZQ_ErrorName(number) + ", " + ZQ_ErrorText(number);
    for (const CZQString& text : {exception.GetErrorText(), exception.GetExtraText()}) {
        if (!text.IsEmpty()) {
            line += ": " + Text(text);
        }
    }
    line += " (" + Place(exception.GetThrowLocation());
    if (!exception.GetCatchLocation().GetFunction().IsEmpty()) {
        line += "; caught in " + Place(exception.GetCatchLocation());
    }
    return line + ")";
}

}  // namespace

std::string FailureEntry(const CZQException& exception) {
    std::string entry = Line(exception);
    int nofCauses = 0;
    for (const CZQException* cause = exception.GetInnerException(); cause != nullptr;
         cause = cause->GetInnerException()) {
        entry += kIndent;
        if (++nofCauses > kMaxCauses) {
            return entry + "...";
        }
        entry += "caused by " + Line(*cause);
    }
    return entry;
}

std::string TextEntry(std::string_view text) {
    std::string entry;
    int nofLines = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string line = Text(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty()) {
            continue;
        }
        entry += entry.empty() ? std::string_view() : kIndent;
        if (++nofLines > kMaxLines) {
            return entry + "...";
        }
        entry += line;
    }
    return entry;
}

}  // namespace ZQAPI
