#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <system_error>

#include "foundation/IniCases.h"
#include "foundation/Io/ZQProfileFile.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

using nlohmann::json;

// From UTF-8 to the bytes meant; nothing where there is none.
std::optional<std::string> BytesOf(const json& iniCase, const char* name) {
    if (!iniCase.contains(name) || iniCase[name].is_null()) {
        return std::nullopt;
    }
    const std::string utf8 = iniCase[name];
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        bytes.push_back(lead < 0x80 ? utf8[i] : static_cast<char>((lead & 3) << 6 | (utf8[++i] & 0x3F)));
    }
    return bytes;
}

const char* TextOrNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

// Whether a code of this system means what Windows' number does.
bool MeansTheSame(platform::SystemErrorCode error, std::uint32_t windowsError) {
    constexpr std::uint32_t kAccessDenied = 5;
    const std::error_code code(static_cast<int>(error), std::system_category());
    return windowsError == kAccessDenied
               ? code == std::errc::permission_denied || code == std::errc::is_a_directory
               : code == std::errc::no_such_file_or_directory;
}

// Nothing is written behind a value's NUL, or behind the buffer.
void ExpectCase(const json& iniCase, const std::filesystem::path& path, const IniFunctions& functions) {
    constexpr char kUntouched = '\x55';
    const auto section = BytesOf(iniCase, "section");
    const auto key = BytesOf(iniCase, "key");
    platform::SystemErrorCode error = 0;
    const bool isGet = iniCase["call"] == "get";
    if (isGet) {
        const std::size_t size = iniCase["size"];
        std::string buffer(size + 16, kUntouched);
        const std::size_t length =
            functions.get(TextOrNull(section), TextOrNull(key), TextOrNull(BytesOf(iniCase, "default")),
                          buffer.data(), size, error);
        EXPECT_EQ(buffer.substr(0, length), BytesOf(iniCase, "text"));
        const std::size_t end = section && key ? std::min(length + 1, size) : size;
        EXPECT_EQ(buffer.find_first_not_of(kUntouched, end), std::string::npos);
        EXPECT_TRUE(size == 0 || buffer[length] == '\0');
    } else {
        EXPECT_EQ(
            functions.set(TextOrNull(section), TextOrNull(key), TextOrNull(BytesOf(iniCase, "value")), error),
            iniCase["succeeds"].get<bool>());
    }
    EXPECT_EQ(ReadBytes(path), BytesOf(iniCase, isGet ? "file" : "file_after"));
    EXPECT_TRUE(!iniCase.contains("error") || MeansTheSame(error, iniCase["error"])) << error;
}

}  // namespace

void ExpectAllCases(WhoseIniFunctions whose, IniFunctions (*functionsOf)(const std::filesystem::path& file)) {
    using std::filesystem::perms;
    const bool isOwn = whose == WhoseIniFunctions::kOwn;
    const TempFolder folder;
    std::ifstream cases(ZQ_TEST_DATA_DIR "/ini_cases.json");
    for (const json& iniCase : json::parse(cases)) {
        const std::string name = iniCase["name"];
        const std::string kind = iniCase.value("kind", "");
        SCOPED_TRACE(name + ": " + iniCase.value("note", ""));
        const auto path = folder.Path() / (kind == "nodir" ? "missing" : "") / (name + ".ini");
        if (kind == "dir") {
            std::filesystem::create_directory(path);
        }
        std::filesystem::file_time_type before;
        if (const auto content = BytesOf(iniCase, "file")) {
            WriteBytes(path, *content);
            before = std::filesystem::last_write_time(path) - std::chrono::hours(1);
            std::filesystem::last_write_time(path, before);
        }
        if (kind == "readonly") {
            std::filesystem::permissions(path, perms::owner_read | perms::group_read | perms::others_read);
        }
        const bool isForOthers = isOwn
                                     ? iniCase.contains("ordinary_user") && std::ofstream(path, std::ios::app)
                                     : iniCase.contains("ordinary_user") || iniCase.contains("wine_differs");
        if (!isForOthers) {
            ExpectCase(iniCase, path, functionsOf(path));
            EXPECT_TRUE(!isOwn || iniCase["call"] == "get" || iniCase["file"].is_null() ||
                        (std::filesystem::last_write_time(path) == before) ==
                            (iniCase["file"] == iniCase["file_after"]))
                << "writes what changes, and only that";
        }
        if (kind == "readonly") {
            std::filesystem::permissions(path, perms::owner_all);
        }
    }
}

TEST(IniCases, OwnFunctionsGiveWhatIsKnown) {
    ExpectAllCases(WhoseIniFunctions::kOwn, [](const std::filesystem::path& path) -> IniFunctions {
        const auto file = std::make_shared<CZQProfileFile>(path.string());
        return {[file](auto&&... arguments) { return file->Get(arguments...); },
                [file](auto&&... arguments) { return file->Set(arguments...); }};
    });
}

}  // namespace ZQAPI::test
