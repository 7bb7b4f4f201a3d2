// Runs a fuzz target over its corpus: every file of a folder.
#include <filesystem>
#include <set>

#include "Fuzz.h"

int main(int argc, char** argv) {
    std::set<std::filesystem::path> files;
    if (argc == 2) {
        files = {std::filesystem::directory_iterator(argv[1]), {}};
    }
    for (const auto& file : files) {
        std::fprintf(stderr, "%s\n", file.c_str());
        ZQAPI::fuzz::CheckInput(ZQAPI::test::ContentOf(file.string()));
    }
    return files.empty() ? 1 : 0;
}
