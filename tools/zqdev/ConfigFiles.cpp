#include "ConfigFiles.h"

#include <filesystem>

#include "Failure.h"
#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/ZQException.h"

namespace ZQAPI::zqdev {

namespace {

// Without the check that is done on opening: that one seals a file which has no seal.
CZQConfigFile OpenUnchecked(const std::string& file) {
    return {file, CZQConfigFile::Mode::kRead, false};
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

void ReplaceFile(const std::string& file, std::string_view content) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), error);
    if (error) {
        throw CannotWrite(file, error.message());
    }
    try {
        if (CZQFile::Exists(file)) {
            CZQFile::Copy(file + ".bak", file);
        }
        CZQFile::Replace(file, content);
    } catch (const CZQException& exception) {
        throw CannotWrite(file, exception.GetExtraText().str());
    }
}

}  // namespace ZQAPI::zqdev
