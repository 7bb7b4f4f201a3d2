// Camera configuration files.
#include "Fuzz.h"
#include "devices/ZQCamConfigFile.h"

using namespace ZQAPI;
using namespace ZQAPI::fuzz;

namespace {

// The default module is the list's first; a list without one has no default.
template <class List, class Default>
void CheckModules(const List& list, const Default& getDefault) {
    const auto modules = ResultOf(list);
    const auto first = ResultOf(getDefault);
    ZQ_REQUIRE(first.has_value() == (modules && modules->GetSize() > 0));
    ZQ_REQUIRE(!first || *first == modules->GetAt(0));
    ZQ_REQUIRE(!first || !CZQCamConfigFile::GetDefaultAddress(*first).IsEmpty());
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const InputFile file;
    file.Write(Text(data, size));
    Succeeds([] { CZQConfigFile(file.Path(), CZQConfigFile::Mode::kRead, false).CreateFileChecksum(); });
    Succeeds([] {
        CZQCamConfigFile config(file.Path());
        CheckModules([&] { return config.GetSupportedCCMs(); }, [&] { return config.GetDefaultCCM(); });
        CheckModules([&] { return config.GetSupportedIAMs(); }, [&] { return config.GetDefaultIAM(); });
        const auto iam = ResultOf([&] { return config.GetDefaultIAM(); });
        ZQ_REQUIRE(!iam || config.IsSupportedIAM(*iam));
    });
    return 0;
}
