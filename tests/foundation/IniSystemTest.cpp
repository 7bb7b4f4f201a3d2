// The system's own functions, which the INI engine is held against, on the same cases.
#include <gtest/gtest.h>

#include "foundation/IniCases.h"
#include "support/SystemProfile.h"

namespace ZQAPI::test {

TEST(IniCases, SystemFunctionsGiveWhatIsKnown) {
    ExpectAllCases(WhoseIniFunctions::kSystem, [](const std::filesystem::path& path) -> IniFunctions {
        const std::string file = path.string();
        return {[file](auto section, auto key, auto text, auto buffer, auto size, auto& error) {
                    return SystemProfileGet(section, key, text, buffer, size, file.c_str(), error);
                },
                [file](auto section, auto key, auto value, auto& error) {
                    return SystemProfileSet(section, key, value, file.c_str(), error);
                }};
    });
}

}  // namespace ZQAPI::test
