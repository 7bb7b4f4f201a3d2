// Camera configuration files.
#include "Fuzz.h"
#include "devices/ZQCamConfigFile.h"

namespace ZQAPI::fuzz {

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

void CheckInput(std::string_view input) {
    static const InputFile file;
    file.WriteSealed(input);
    Succeeds([] {
        CZQCamConfigFile config(file.Path());
        CheckModules([&] { return config.GetSupportedCCMs(); }, [&] { return config.GetDefaultCCM(); });
        CheckModules([&] { return config.GetSupportedIAMs(); }, [&] { return config.GetDefaultIAM(); });
        const auto iam = ResultOf([&] { return config.GetDefaultIAM(); });
        ZQ_REQUIRE(!iam || config.IsSupportedIAM(*iam));
    });
}

}  // namespace ZQAPI::fuzz
