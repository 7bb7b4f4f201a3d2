#include "ConfigFiles.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "Failure.h"
#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/SystemText.h"

namespace ZQAPI::zqdev {

namespace {

// Without the check that is done on opening: that one seals a file which has no seal.
CZQConfigFile OpenUnchecked(const std::string& file) {
    return {file, CZQConfigFile::Mode::kRead, false};
}

// The system's code; 0 when the content is on disk.
platform::SystemErrorCode WriteAndSync(const std::string& file, std::string_view content) {
    platform::SystemErrorCode error = 0;
    std::FILE* stream = std::fopen(file.c_str(), "wb");
    if (stream == nullptr) {
        return platform::LastSystemError();
    }
    if (std::fwrite(content.data(), 1, content.size(), stream) != content.size()) {
        error = platform::LastSystemError();
    } else {
        platform::SyncToDisk(stream, error);
    }
    if (std::fclose(stream) != 0 && error == 0) {
        error = platform::LastSystemError();
    }
    return error;
}

Failure CannotWrite(const std::string& file, const std::string& reason) {
    return Failure("can't write " + file + " (" + reason +
                   "); check that its folder can be written to and has room");
}

}  // namespace

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
    if (!CZQFile::Exists(file)) {
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
    std::error_code error;
    if (CZQFile::Exists(file)) {
        std::filesystem::copy_file(platform::ToPath(file), platform::ToPath(file + ".bak"),
                                   std::filesystem::copy_options::overwrite_existing, error);
        if (error) {
            throw CannotWrite(file + ".bak", error.message());
        }
    }
    const std::string temporary = file + "." + std::to_string(platform::ProcessId()) + ".tmp";
    platform::SystemErrorCode code = WriteAndSync(temporary, content);
    if (code == 0 && platform::MoveFileTo(temporary, file, true, code)) {
        return;
    }
    platform::SystemErrorCode ignored = 0;
    platform::RemoveFile(temporary, ignored);
    throw CannotWrite(file, FormatSystemError(code).str());
}

}  // namespace ZQAPI::zqdev
