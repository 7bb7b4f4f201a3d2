#include "scan/Remark.h"

#include <algorithm>

#include "Records.h"
#include "Text.h"

namespace ZQAPI::zqdev {

namespace {

constexpr std::size_t kMostTold = 16;
constexpr const char* kIndent = "  ";
constexpr const char* kMoreIndent = "    ";
constexpr const char* kCallIndent = "      ";

}  // namespace

std::string ToText(std::string_view title, const std::vector<Remark>& remarks, std::size_t width) {
    if (remarks.empty()) {
        return {};
    }
    std::string text = "\n" + std::string(title) + ":\n";
    for (std::size_t i = 0; i < std::min(remarks.size(), kMostTold); ++i) {
        text += Wrapped(Printable(remarks[i].text), kIndent, kMoreIndent, width);
        for (const std::string& call : remarks[i].calls) {
            text += kCallIndent + Printable(call) + "\n";
        }
    }
    return remarks.size() <= kMostTold
               ? text
               : text + kIndent + "and " + std::to_string(remarks.size() - kMostTold) + " more (--json)\n";
}

Json ToJson(const std::vector<Remark>& remarks) {
    Json json = Json::Array();
    for (const Remark& remark : remarks) {
        Json calls = Json::Array();
        for (const std::string& call : remark.calls) {
            calls.Add(ToJson(call));
        }
        json.Add({{"text", ToJson(remark.text)}, {"calls", calls}});
    }
    return json;
}

}  // namespace ZQAPI::zqdev
