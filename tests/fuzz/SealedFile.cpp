// Files with a checksum line, byte for byte as they come.
#include "Fuzz.h"

void ZQAPI::fuzz::CheckInput(std::string_view input) {
    static const InputFile file;
    file.Write(std::string(input));
    const auto open = [] { CZQConfigFile(file.Path(), CZQConfigFile::Mode::kRead, true); };
    const bool isOpened = Succeeds(open);
    const std::string after = file.Read();
    // A file that is refused stays as it is; one that nobody had sealed gets its seal and nothing else.
    ZQ_REQUIRE(isOpened ? after.starts_with(input) : after == input);
    ZQ_REQUIRE(!isOpened || (Succeeds(open) && file.Read() == after));
    if (isOpened && !after.empty()) {
        file.Write(after.substr(0, after.size() - 1));
        Succeeds(open);
        std::string damaged = after;
        damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 1);
        file.Write(damaged);
        // A damaged checksum line counts as none.
        const bool isInSeal = damaged.size() / 2 + 19 >= damaged.size();
        ZQ_REQUIRE(isInSeal || !Succeeds(open));
    }
}
