// Libraries loaded at run time, where they are looked for, and threads that outlive the library they run in.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <future>

#include "foundation/ZQDllSearchPath.h"
#include "foundation/ZQDynamicDLL.h"
#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/ScarceResources.h"
#include "support/SearchPath.h"
#include "support/TempFolder.h"
#include "support/WaitUntil.h"

namespace ZQAPI::test {
namespace {

using testing::HasSubstr;
using testing::Pair;
namespace fs = std::filesystem;

constexpr const char* kLibrary = ZQ_TEST_LIBRARY;
constexpr const char* kOtherBuild = ZQ_TEST_LIBRARY_OTHER_BUILD;
constexpr const char* kThreadLibrary = ZQ_TEST_THREAD_LIBRARY;

std::string FileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

TEST(DynamicDLL, BindsItsEntryPointsWhileItIsOpen) {
    CZQDynamicDLL library;
    const CZQEntryPoint<int()> fourth(library, "Fourth");
    const CZQEntryPoint<int()> first(library, "First");
    library.OpenLibrary(kLibrary);
    EXPECT_EQ(fourth(), 4);
    EXPECT_EQ(first(), 1);
    EXPECT_EQ(library.GetLibraryName(), kLibrary);
    {
        const CZQEntryPoint<int()> second(library, "Second");
        library.GetProcAddresses();
        EXPECT_EQ(second(), 2);
    }
    library.OpenLibrary(kOtherBuild);
    EXPECT_EQ(first(), 2);
    library.CloseLibrary();
    library.CloseLibrary();
    EXPECT_FALSE(first.IsBound());
    EXPECT_FALSE(library.IsLibraryOpen());
    EXPECT_EQ(library.GetLibraryName(), "");
}

TEST(DynamicDLL, HoldsNothingAfterAFailure) {
    const TempFolder folder;
    const std::string broken = folder.File(FileName(kLibrary));
    std::ofstream(broken) << "no library";
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
        CZQDynamicDLL library(kOtherBuild);
        const CZQEntryPoint<int()> first(library, "First");
        const CZQEntryPoint<int()> third(library, "Third");
        const CZQEntryPoint<int()> fifth(library, "Fifth");
        EXPECT_THAT(FailureOf([&] { library.OpenLibrary(test.file); }),
                    Pair(test.error, HasSubstr(test.text)));
        EXPECT_FALSE(library.IsLibraryOpen());
        EXPECT_EQ(library.GetLibraryName(), "");
        EXPECT_FALSE(first.IsBound());
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
    EXPECT_ZQ_ERROR(CZQDynamicDLL(onlyInPath + ".dll"), ZQ_ERR_LIBRARY_NOT_LOADED);

    CZQDllSearchPath::AddSearchPath(folder.Path().string());
    CZQDynamicDLL library(onlyInPath + ".dll");
    EXPECT_EQ(library.Find<int()>("First")(), 2);
    EXPECT_EQ(library.GetLibraryName(), "zq_only_in_path.dll");
    library.OpenLibrary(fs::path(kLibrary).stem().string() + ".dll");
    EXPECT_EQ(library.Find<int()>("First")(), 1);
    EXPECT_ZQ_ERROR(library.OpenLibrary(onlyInPath + ".dll", ELibraryPlace::kSystem),
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
    CZQDynamicDLL library("zq_wanted.dll");
    EXPECT_EQ(library.Find<int()>("First")(), 2);
    library.CloseLibrary();

    // The same one in the current folder counts nowhere.
    const fs::path before = fs::current_path();
    fs::current_path(folder.Path() / "library");
    SearchPath::Set(folders.substr(0, folders.rfind(separator)));
    const CZQString names[] = {"zq_first.dll", "zq_wanted.dll", "zq_third.dll"};
    const Failure failure = FailureOf([&] { library.OpenFirstLibrary(names); });
    fs::current_path(before);
    EXPECT_THAT(failure, Pair(ZQ_ERR_LIBRARY_NOT_LOADED, HasSubstr("DLLName=zq_wanted.dll; SysError (")));

    const CZQEntryPoint<int()> first(library, "First");
    EXPECT_ZQ_ERROR(library.GetProcAddresses(), ZQ_ERR_ENTRY_POINT_MISSING);
}

TEST(DynamicDLL, StaysWhenItIsKept) {
    const TempFolder folder;
    const std::string file = folder.File(FileName(kThreadLibrary));
    fs::copy_file(kThreadLibrary, file);
    CZQDynamicDLL library(file);
    library.CloseLibrary();
    EXPECT_FALSE(IsLoaded(file.c_str()));
    library.OpenLibrary(file);
    library.KeepLibrary();
    library.CloseLibrary();
    EXPECT_TRUE(IsLoaded(file.c_str()));
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
    CZQDynamicDLL library(file);
    const std::string told = library.Find<const char*()>("OwnPath")();
    EXPECT_TRUE(!told.empty() && file.ends_with(told)) << told;  // the system may leave the prefix out
    EXPECT_EQ(library.Find<int(const char*)>("FirstOf")("zq_beside.dll"), 2);
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

TEST(ModuleThread, KeepsItsLibraryUntilItEnds) {
    CZQDynamicDLL library(kThreadLibrary);
    ASSERT_TRUE(library.Find<bool(void (*)())>("StartThread")([] { g_release.get_future().wait(); }));
    library.CloseLibrary();
    EXPECT_TRUE(IsLoaded(kThreadLibrary));
    g_release.set_value();
    WaitUntil([] { return !IsLoaded(kThreadLibrary); });
}

}  // namespace
}  // namespace ZQAPI::test
