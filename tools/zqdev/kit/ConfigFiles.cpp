#include "kit/ConfigFiles.h"

#include <algorithm>
#include <filesystem>
#include <vector>

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

// Of the sections, or of a section's keys.
std::vector<std::string> Names(const CZQIniDocument& document, const char* section) {
    std::vector<std::string> names;
    const std::string joined = document.GetNames(section);
    for (std::size_t start = 0; start < joined.size(); start += names.back().size() + 1) {
        names.emplace_back(joined.c_str() + start);
    }
    return names;
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
    const std::vector<std::string> keys = Names(CZQIniDocument(ContentOf(file)), kListSection);
    return std::any_of(keys.begin(), keys.end(),
                       [](const std::string& key) { return SIniNameEqual()(key, kListKey); });
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
    const std::vector<std::string> sections = Names(document, nullptr);
    const bool hasKey = std::any_of(sections.begin(), sections.end(), [&](const std::string& section) {
        return !Names(document, section.c_str()).empty();
    });
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
