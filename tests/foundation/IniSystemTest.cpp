// The INI engine beside the system's own functions, on the same files.
#include <gtest/gtest.h>

#include "foundation/IniCases.h"
#include "support/SystemProfile.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

IniFunctions SystemFunctions(const std::string& path) {
    return {[path](auto section, auto key, auto text, auto buffer, auto size, auto& error) {
                return SystemProfileGet(section, key, text, buffer, size, path.c_str(), error);
            },
            [path](auto section, auto key, auto value, auto& error) {
                return SystemProfileSet(section, key, value, path.c_str(), error);
            }};
}

}  // namespace

TEST(IniSystem, SameAsTheSystemWhereWineIsKnownToBeRight) {
    const TempFolder ownFolder;
    const TempFolder systemFolder;
    for (const IniCase& iniCase : IniCases()) {
        if (iniCase.differsUnderWine || iniCase.needsOrdinaryUser) {
            continue;
        }
        const StagedFile own(iniCase, ownFolder.Path());
        const StagedFile system(iniCase, systemFolder.Path());
        EXPECT_EQ(RunCase(iniCase, own.Path(), OwnFunctions(own.Path())),
                  RunCase(iniCase, system.Path(), SystemFunctions(system.Path().string())))
            << iniCase.name;
    }
}

}  // namespace ZQAPI::test
