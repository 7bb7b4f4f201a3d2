// Camera configuration files.
#include "Fuzz.h"
#include "devices/ZQCamConfigFile.h"

using namespace ZQAPI;
using namespace ZQAPI::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const InputFile file;
    file.Write(Text(data, size));
    Succeeds([] { CZQConfigFile(file.Path(), CZQConfigFile::Mode::kRead, false).CreateFileChecksum(); });
    Succeeds([] {
        CZQCamConfigFile config(file.Path());
        if (const auto ccms = ResultOf([&] { return config.GetSupportedCCMs(); })) {
            ZQ_REQUIRE(ccms->GetSize() > 0 && config.GetDefaultCCM() == ccms->GetAt(0));
            ZQ_REQUIRE(!CZQCamConfigFile::GetDefaultAddress(ccms->GetAt(0)).IsEmpty());
        }
        if (const auto iams = ResultOf([&] { return config.GetSupportedIAMs(); })) {
            ZQ_REQUIRE(iams->GetSize() > 0 && config.GetDefaultIAM() == iams->GetAt(0));
            ZQ_REQUIRE(config.IsSupportedIAM(config.GetDefaultIAM()));
        }
    });
    return 0;
}
