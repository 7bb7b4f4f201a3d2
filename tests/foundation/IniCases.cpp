#include "foundation/IniCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "foundation/Io/ZQProfileFile.h"
#include "support/FileBytes.h"

namespace ZQAPI::test {

namespace {

using nlohmann::json;

// From the file's UTF-8 to the bytes meant.
std::string ToBytes(const std::string& utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            bytes.push_back(utf8[i]);
        } else if (lead <= 0xC3 && i + 1 < utf8.size()) {
            bytes.push_back(
                static_cast<char>((lead & 3U) << 6U | (static_cast<unsigned char>(utf8[++i]) & 0x3FU)));
        } else {
            throw std::runtime_error("a character above U+00FF is no byte");
        }
    }
    return bytes;
}

std::optional<std::string> OptionalBytes(const json& object, const char* name) {
    if (!object.contains(name) || object.at(name).is_null()) {
        return std::nullopt;
    }
    return ToBytes(object.at(name).get<std::string>());
}

IniCase ToCase(const json& object) {
    IniCase result;
    result.name = object.at("name");
    result.note = object.value("note", "");
    result.file = OptionalBytes(object, "file");
    result.kind = object.value("kind", "");
    result.isGet = object.at("call") == "get";
    result.section = OptionalBytes(object, "section");
    result.key = OptionalBytes(object, "key");
    result.defaultValue = OptionalBytes(object, "default");
    result.size = object.value("size", std::size_t{0});
    result.text = OptionalBytes(object, "text").value_or("");
    result.value = OptionalBytes(object, "value");
    result.succeeds = object.value("succeeds", false);
    result.fileAfter = OptionalBytes(object, "file_after");
    result.error = object.value("error", std::uint32_t{0});
    result.differsUnderWine = object.value("wine_differs", false);
    result.needsOrdinaryUser = object.value("ordinary_user", false);
    return result;
}

}  // namespace

const std::vector<IniCase>& IniCases() {
    static const std::vector<IniCase> cases = [] {
        std::ifstream file(ZQ_TEST_DATA_DIR "/ini_cases.json");
        std::vector<IniCase> result;
        for (const json& object : json::parse(file)) {
            result.push_back(ToCase(object));
        }
        return result;
    }();
    return cases;
}

StagedFile::StagedFile(const IniCase& iniCase, const std::filesystem::path& folder)
    : m_path(folder / (iniCase.kind == "nodir" ? "missing" : "") / (iniCase.name + ".ini")),
      m_isReadOnly(iniCase.kind == "readonly") {
    using std::filesystem::perms;
    if (iniCase.kind == "dir") {
        std::filesystem::create_directory(m_path);
    }
    if (iniCase.file) {
        WriteBytes(m_path, *iniCase.file);
        std::filesystem::last_write_time(m_path,
                                         std::filesystem::last_write_time(m_path) - std::chrono::hours(1));
    }
    if (m_isReadOnly) {
        std::filesystem::permissions(m_path, perms::owner_read | perms::group_read | perms::others_read);
    }
}

StagedFile::~StagedFile() {
    if (m_isReadOnly) {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
    }
}

bool StagedFile::IsWriteProtected() const {
    return !std::ofstream(m_path, std::ios::app).is_open();
}

IniFunctions OwnFunctions(const std::filesystem::path& path) {
    const auto file = std::make_shared<CZQProfileFile>(path.string());
    return {[file](auto section, auto key, auto text, auto buffer, auto size, auto& error) {
                return file->Get(section, key, text, buffer, size, error);
            },
            [file](auto section, auto key, auto value, auto& error) {
                return file->Set(section, key, value, error);
            }};
}

std::ostream& operator<<(std::ostream& stream, const IniOutcome& outcome) {
    return stream << ::testing::PrintToString(outcome.text) << ", done " << outcome.isDone << ", file "
                  << ::testing::PrintToString(outcome.file) << ", error " << outcome.error;
}

IniOutcome RunCase(const IniCase& iniCase, const std::filesystem::path& path, const IniFunctions& functions) {
    constexpr char kUntouched = '\x55';
    IniOutcome outcome;
    if (iniCase.isGet) {
        std::string buffer(iniCase.size + 16, kUntouched);
        const std::size_t length =
            functions.get(TextOrNull(iniCase.section), TextOrNull(iniCase.key),
                          TextOrNull(iniCase.defaultValue), buffer.data(), iniCase.size, outcome.error);
        outcome.text = buffer.substr(0, length);
        const bool isList = !iniCase.section || !iniCase.key;
        const std::size_t end = isList ? iniCase.size : std::min(length + 1, iniCase.size);
        EXPECT_EQ(buffer.find_first_not_of(kUntouched, end), std::string::npos);
        EXPECT_TRUE(iniCase.size == 0 || buffer[length] == '\0');
    } else {
        outcome.isDone = functions.set(TextOrNull(iniCase.section), TextOrNull(iniCase.key),
                                       TextOrNull(iniCase.value), outcome.error);
    }
    if (iniCase.error == 0) {
        outcome.error = 0;
    }
    outcome.file = ReadBytes(path);
    return outcome;
}

}  // namespace ZQAPI::test
