#include "ConfigFiles.h"

#include <filesystem>

#include "Failure.h"
#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
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

std::string Words(platform::SystemErrorCode error) {
    std::string text = platform::SystemErrorText(error);
    text.erase(text.find_last_not_of(" .\r\n") + 1);
    return text.empty() ? "system error " + std::to_string(error) : text;
}

Failure CannotWrite(const std::string& file, const std::string& reason) {
    return Failure("can't write " + file + " (" + reason +
                   "); check that its folder can be written to and has room");
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
    return platform::ReadWholeFile(file, content, error) ? std::string() : Words(error);
}

std::string WritingObstacle(const std::string& file) {
    constexpr std::size_t kLonger = 4096;
    std::string content;
    platform::SystemErrorCode ignored = 0;
    platform::ReadWholeFile(file, content, ignored);
    platform::FileReplacement trial(file, file);
    platform::SystemErrorCode error = 0;
    const bool isWritten = trial.Create(error) && trial.Write(content.append(kLonger, ' '), error);
    return isWritten ? std::string() : Words(error);
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
    if (!ReadingObstacle(file).empty()) {
        return false;
    }
    CZQIniFile ini(file);
    ini.SetSection("General");
    try {
        CZQStringArray names;
        ini.ReadLongStringArray("Devices", names, ';');
        return false;
    } catch (const CZQException& exception) {
        return exception.GetErrorNumber() == ZQ_ERR_INI_KEY_MISSING;
    }
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
