#include "kit/ConfigFiles.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <unordered_set>

#include "Failure.h"
#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/Io/ZQIniDocument.h"
#include "foundation/ZQException.h"
#include "platform/FileReplacement.h"
#include "platform/Files.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::zqdev {

namespace {

// Without the check that is done on opening: that one seals a file which has no seal.
CZQConfigFile OpenUnchecked(const std::string& file) {
    return {file, CZQConfigFile::Mode::kRead, false};
}

std::string ReasonText(platform::SystemErrorCode error) {
    std::string text = platform::SystemErrorText(error);
    text.erase(text.find_last_not_of(" .\r\n") + 1);
    return text.empty() ? "system error " + std::to_string(error) : text;
}

Failure CannotWrite(const std::string& file, const std::string& reason) {
    return Failure("can't write " + file + " (" + reason +
                   "); check that its folder can be written to and has room");
}

constexpr const char* kListSection = "General";
constexpr const char* kListKey = "Devices";

// Nothing of a file that can't be read.
std::string ContentOf(const std::string& file) {
    std::string content;
    platform::SystemErrorCode ignored = 0;
    return platform::ReadWholeFile(file, content, ignored) ? content : std::string();
}

}  // namespace

bool IsMissing(const std::string& file) {
    std::error_code ignored;
    return std::filesystem::symlink_status(platform::ToPath(file), ignored).type() ==
           std::filesystem::file_type::not_found;
}

std::string ReadingObstacle(const std::string& file) {
    std::string content;
    platform::SystemErrorCode error = 0;
    return platform::ReadWholeFile(file, content, error) ? std::string() : ReasonText(error);
}

std::string WritingObstacle(const std::string& file) {
    constexpr std::size_t kLonger = 4096;
    std::string content = ContentOf(file);
    platform::FileReplacement trial(file, file);
    platform::SystemErrorCode error = 0;
    const bool isWritten = trial.Create(error) && trial.Write(content.append(kLonger, ' '), error);
    return isWritten ? std::string() : ReasonText(error);
}

int SealError(const std::string& file) {
    try {
        OpenUnchecked(file).VerifyFileChecksum();
        return 0;
    } catch (const CZQException& exception) {
        return exception.GetErrorNumber();
    }
}

std::uint32_t Seal(const std::string& file) {
    return OpenUnchecked(file).CreateFileChecksum();
}

bool IsDeviceListEmpty(const std::string& file) {
    return IsDeviceList(file) &&
           CZQIniDocument(ContentOf(file)).GetWholeValue(kListSection, kListKey).empty();
}

bool IsDeviceList(const std::string& file) {
    const std::string keys = CZQIniDocument(ContentOf(file)).GetNames(kListSection);
    bool isOne = false;
    for (std::string_view rest = keys; !rest.empty() && !isOne;) {
        isOne = SIniNameEqual()(TakeIniName(rest), kListKey);
    }
    return isOne;
}

std::string NoIniTextReason(const std::string& file) {
    std::string content = ContentOf(file);
    if (content.empty()) {
        return ReadingObstacle(file).empty() ? "it is empty" : "";
    }
    const bool isUtf16 = content.starts_with("\xFF\xFE");
    if (!isUtf16 && std::any_of(content.begin(), content.end(), [](char c) {
            return c == '\x7F' || (c >= '\0' && c < ' ' && c != '\t' && c != '\r' && c != '\n');
        })) {
        return "it has control characters";
    }
    const CZQIniDocument document(std::move(content));
    // One that stands there again is read no second time.
    std::unordered_set<std::string_view, SIniNameHash, SIniNameEqual> known;
    const std::string sections = document.GetNames(nullptr);
    bool hasKey = false;
    for (std::string_view rest = sections; !rest.empty() && !hasKey;) {
        const std::string_view section = TakeIniName(rest);
        hasKey = known.insert(section).second && !document.GetNames(std::string(section).c_str()).empty();
    }
    return hasKey ? "" : "no section has a key";
}

bool WriteSetting(const std::string& file, const char* section, const char* key, const std::string& value) {
    const std::string before = CZQFile::ReadWhole(file);
    CZQIniDocument document{std::string(CZQConfigFile::WithoutSeal(before))};
    document.SetProfileString(section, key, value.c_str());
    return CZQFile::ReplaceIf(file, CZQConfigFile::Sealed(document.Bytes()), before);
}

void MakeFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(platform::ToPath(folder), error);
    if (error) {
        throw Failure("can't make the folder " + folder + " (" + error.message() +
                      "); check that the one it lies in can be written to and has room");
    }
}

void ReplaceFile(const std::string& file, std::string_view content) {
    try {
        if (!IsMissing(file)) {
            CZQFile::Copy(file + ".bak", file);
        }
        CZQFile::Replace(file, content);
    } catch (const CZQException& exception) {
        throw CannotWrite(file, exception.GetExtraText().str());
    }
}

}  // namespace ZQAPI::zqdev
