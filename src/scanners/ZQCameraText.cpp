#include "scanners/ZQCameraText.h"

#include <algorithm>

#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kBlank = " ";

bool IsTooLong(const CZQString& text) {
    return text.GetLength() > CZQDeviceInfo::kMaxTextLength;
}

CZQString OrElse(CZQString text, const char* substitute) {
    text.Trim(kBlank);
    return IsTooLong(text) || CZQDeviceInfo::ReadsBack(text) ? text : CZQString(substitute);
}

}  // namespace

CZQString IdentityText(CZQString text, const char* field, std::int32_t errorNumber,
                       const SSourceLocation& here) {
    text.Trim(kBlank);
    if (!IsTooLong(text) && !CZQDeviceInfo::ReadsBack(text)) {
        throw CZQException(here, errorNumber, "%s='%s' can't be kept", field, ShownText(text).c_str());
    }
    return text;
}

CZQString DescriptionText(CZQString text) {
    return OrElse(std::move(text), "?");
}

CZQString FirmwareVersionText(CZQString text) {
    return OrElse(std::move(text), "-.-");
}

CZQString ShownText(const CZQString& text) {
    std::string shown = text.str().substr(0, CZQDeviceInfo::kMaxTextLength);
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return CZQString(std::string(1, c)).HasControlCharacter(); },
        '.');
    return shown;
}

}  // namespace ZQAPI
