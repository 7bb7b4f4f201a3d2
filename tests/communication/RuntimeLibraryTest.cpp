// Libraries loaded at run time, where they are looked for, and threads that outlive the library they run in.
#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>

#include "foundation/ZQDllSearchPath.h"
#include "foundation/ZQDynamicDLL.h"
#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/SearchPath.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Pair;
namespace fs = std::filesystem;

constexpr const char* kLibrary = ZQ_TEST_LIBRARY;
constexpr const char* kOtherBuild = ZQ_TEST_LIBRARY_OTHER_BUILD;
constexpr const char* kThreadLibrary = ZQ_TEST_THREAD_LIBRARY;
constexpr const char* kNone[] = {""};
constexpr const char* kOneName[] = {"First", ""};

std::string FileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

template <class Function>
Function* Symbol(CZQDynamicDLL& library, const char* name) {
    const char* const names[] = {name, ""};
    void* slot = nullptr;
    library.GetProcAddresses(names, &slot);
    return reinterpret_cast<Function*>(slot);
}

TEST(DynamicDLL, ResolvesNamesUpToTheEmptyOne) {
    void* slots[] = {nullptr, nullptr, nullptr};
    static const char* const kNames[] = {"Fourth", "First", "", "Second"};
    CZQDynamicDLL library(kLibrary, kNames, slots);
    EXPECT_EQ(reinterpret_cast<int (*)()>(slots[0])(), 4);
    EXPECT_EQ(reinterpret_cast<int (*)()>(slots[1])(), 1);
    EXPECT_EQ(slots[2], nullptr);
    EXPECT_EQ(library.GetLibraryName(), kLibrary);
    library.OpenLibrary(kOtherBuild, kNone, nullptr);
    EXPECT_EQ(Symbol<int()>(library, "First")(), 2);
    library.CloseLibrary();
    library.CloseLibrary();
    EXPECT_FALSE(library.IsLibraryOpen());
    EXPECT_EQ(library.GetLibraryName(), "");
}

TEST(DynamicDLL, HoldsNothingAfterAFailure) {
    const TempFolder folder;
    const std::string broken = folder.File(FileName(kLibrary));
    std::ofstream(broken) << "no library";
    static const char* const kMissingThird[] = {"First", "Second", "Third", "Fourth", ""};
    const struct {
        std::string file;
        std::int32_t error;
        std::string text;
    } cases[] = {
        {kLibrary, ZQ_ERR_ENTRY_POINT_MISSING,
         std::string("DLLName=") + kLibrary + ", ProcName=Third; SysError ("},
        {broken, ZQ_ERR_LIBRARY_NOT_LOADED, "DLLName=" + broken + "; SysError ("},
        {folder.File("missing.dll"), ZQ_ERR_LIBRARY_NOT_LOADED, "missing.dll; SysError ("},
        {"zq_missing.dll", ZQ_ERR_LIBRARY_NOT_LOADED, "DLLName=zq_missing.dll; SysError ("},
        {"", ZQ_ERR_LIBRARY_NOT_LOADED, "DLLName=; SysError ("},
    };
    for (const auto& test : cases) {
        CZQDynamicDLL library(kOtherBuild, kNone, nullptr);
        int untouched = 0;
        void* slots[4] = {nullptr, nullptr, &untouched, &untouched};
        EXPECT_THAT(FailureOf([&] { library.OpenLibrary(test.file, kMissingThird, slots); }),
                    Pair(test.error, HasSubstr(test.text)));
        EXPECT_FALSE(library.IsLibraryOpen());
        EXPECT_EQ(library.GetLibraryName(), "");
        if (test.error == ZQ_ERR_ENTRY_POINT_MISSING) {
            EXPECT_TRUE(slots[0] != nullptr && slots[1] != nullptr && slots[2] == nullptr);
            EXPECT_EQ(slots[3], &untouched);
        }
    }
}

// A bare name, as the kit writes it on every system.
TEST(DynamicDLL, IsLookedForBesideThisProgramThenInPath) {
    const SearchPath path;
    const TempFolder folder;
    const std::string extension = fs::path(kLibrary).extension().string();
    fs::copy_file(kOtherBuild, folder.File(FileName(kLibrary)));
    const std::string onlyInPath = "zq_only_in_path";
    fs::copy_file(kOtherBuild, folder.File(onlyInPath + extension));
    EXPECT_ZQ_ERROR(CZQDynamicDLL(onlyInPath + ".dll", kNone, nullptr), ZQ_ERR_LIBRARY_NOT_LOADED);

    CZQDllSearchPath::AddSearchPath(folder.Path().string());
    CZQDynamicDLL library(onlyInPath + ".dll", kNone, nullptr);
    EXPECT_EQ(Symbol<int()>(library, "First")(), 2);
    EXPECT_EQ(library.GetLibraryName(), "zq_only_in_path.dll");
    library.OpenLibrary(fs::path(kLibrary).stem().string() + ".dll", kNone, nullptr);
    EXPECT_EQ(Symbol<int()>(library, "First")(), 1);
    EXPECT_ZQ_ERROR(library.OpenLibrary(onlyInPath + ".dll", kNone, nullptr, ELibraryPlace::kSystem),
                    ZQ_ERR_LIBRARY_NOT_LOADED);
}

// What has the name but is no library is passed over, and the reason told is that of a file that is there.
TEST(DynamicDLL, PassesOverWhatIsNoLibrary) {
    const SearchPath path;
    const TempFolder folder;
    const char separator = platform::SearchPathSeparator();
    const std::string name = "zq_wanted" + fs::path(kLibrary).extension().string();
    std::string folders = ".";  // the current one, below
    for (const char* const kind : {"folder", "link", "text", "library"}) {
        const fs::path place = folder.Path() / kind;
        fs::create_directory(place);
        folders += separator + place.string();
    }
    fs::create_directory(folder.Path() / "folder" / name);
    std::ofstream(folder.Path() / "text" / name) << "no library";
    std::error_code ignored;  // not every user may make links on every system
    fs::create_symlink(folder.Path() / "nowhere", folder.Path() / "link" / name, ignored);
    fs::copy_file(kOtherBuild, folder.Path() / "library" / name);
    SearchPath::Set(folders);
    CZQDynamicDLL library("zq_wanted.dll", kNone, nullptr);
    EXPECT_EQ(Symbol<int()>(library, "First")(), 2);
    library.CloseLibrary();

    // The same one in the current folder counts nowhere.
    const fs::path before = fs::current_path();
    fs::current_path(folder.Path() / "library");
    SearchPath::Set(folders.substr(0, folders.rfind(separator)));
    const CZQString names[] = {"zq_first.dll", "zq_wanted.dll", "zq_third.dll"};
    const Failure failure = FailureOf([&] { library.OpenFirstLibrary(names, kNone, nullptr); });
    fs::current_path(before);
    EXPECT_THAT(failure, Pair(ZQ_ERR_LIBRARY_NOT_LOADED, HasSubstr("DLLName=zq_wanted.dll; SysError (")));

    void* slot = &library;
    EXPECT_ZQ_ERROR(CZQDynamicDLL().GetProcAddresses(kOneName, &slot), ZQ_ERR_ENTRY_POINT_MISSING);
    EXPECT_EQ(slot, nullptr);
}

TEST(DynamicDLL, StaysWhenItIsKept) {
    const TempFolder folder;
    const std::string file = folder.File(FileName(kThreadLibrary));
    fs::copy_file(kThreadLibrary, file);
    const auto countCalls = [&](bool keep) {
        CZQDynamicDLL library(file, kNone, nullptr);
        if (keep) {
            library.KeepLibrary();
        }
        return Symbol<int()>(library, "CountCalls")();
    };
    EXPECT_EQ(countCalls(false), 1);
    EXPECT_EQ(countCalls(true), 1);
    EXPECT_EQ(countCalls(false), 2);
}

// A library knows its own path whole, and its kit's folder by it; a module finds the kit's libraries first.
TEST(DynamicDLL, ALibraryDeepDownKnowsItsPath) {
    const TempFolder folder;
    const std::string longName(60, 'x');
    fs::path place = fs::path(platform::HasDriveLetters() ? "\\\\?\\" : "") += folder.Path();
    for (int i = 0; i < 5; ++i) {
        place /= longName;
    }
    fs::create_directories(place / "CCMs");
    const std::string wanted = "zq_beside" + fs::path(kLibrary).extension().string();
    fs::copy_file(kOtherBuild, place / wanted);
    fs::copy_file(kLibrary, place / "CCMs" / wanted);
    const std::string file = (place / "CCMs" / FileName(kThreadLibrary)).string();
    fs::copy_file(kThreadLibrary, file);
    CZQDynamicDLL library(file, kNone, nullptr);
    const std::string told = Symbol<const char*()>(library, "OwnPath")();
    EXPECT_TRUE(!told.empty() && file.ends_with(told)) << told;  // the system may leave the prefix out
    EXPECT_EQ(Symbol<int(const char*)>(library, "FirstOf")("zq_beside.dll"), 2);
}

TEST(DllSearchPath, AppendsWhatExists) {
    const SearchPath path;
    const TempFolder folder;
    const std::string directory = folder.Path().string();
    const std::string s(1, platform::SearchPathSeparator());
    const std::string longest(20000, 'x');
    const std::pair<std::string, std::string> cases[] = {{"x", "x"},
                                                         {"x" + s, "x"},
                                                         {"x" + s + s + "  ", "x"},
                                                         {"x" + s + " " + s, "x" + s + " "},
                                                         {"x" + s + directory, "x" + s + directory},
                                                         {longest, longest}};
    for (const auto& [before, after] : cases) {
        SearchPath::Set(before);
        CZQDllSearchPath::AddSearchPath(directory);
        EXPECT_EQ(SearchPath::Get(), after + s + directory);
    }
    SearchPath::Set("x" + s);
    CZQDllSearchPath::AddSearchPath(folder.File("missing"));
    CZQDllSearchPath::AddSearchPath("");
    EXPECT_EQ(SearchPath::Get(), "x" + s);
    SearchPath::Set("");
    EXPECT_EQ(FailureOf([&] { CZQDllSearchPath::AddSearchPath(directory); }),
              Failure(ZQ_ERR_UNEXPECTED, "Error GetEnvironmentVariable(PATH)"));
    CZQDllSearchPath::AddSearchPath("");
}

std::promise<void> g_release;
std::promise<void> g_ended;

TEST(ModuleThread, KeepsItsLibraryUntilItEnds) {
    CZQDynamicDLL library(kThreadLibrary, kNone, nullptr);
    EXPECT_EQ(Symbol<int()>(library, "CountCalls")(), 1);
    ASSERT_TRUE(Symbol<bool(void (*)())>(library, "StartThread")([] {
        g_release.get_future().wait();
        g_ended.set_value();
    }));
    library.CloseLibrary();
    library.OpenLibrary(kThreadLibrary, kNone, nullptr);
    EXPECT_EQ(Symbol<int()>(library, "CountCalls")(), 2);
    library.CloseLibrary();
    g_release.set_value();
    ASSERT_EQ(g_ended.get_future().wait_for(10s), std::future_status::ready);

    // The thread is about to end; then closing the library unloads it.
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    int calls = 0;
    while (calls != 1 && std::chrono::steady_clock::now() < deadline) {
        library.OpenLibrary(kThreadLibrary, kNone, nullptr);
        calls = Symbol<int()>(library, "CountCalls")();
        library.CloseLibrary();
        std::this_thread::yield();
    }
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace ZQAPI::test
