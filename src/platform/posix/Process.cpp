#include "platform/Process.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <stdlib.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <new>

namespace ZQAPI::platform {

namespace {

using PathBuffer = std::array<char, PATH_MAX>;

PathBuffer FindOwnModule() {
    PathBuffer path{};
    Dl_info info{};
    void* extra = nullptr;
    if (dladdr1(reinterpret_cast<const void*>(&OwnModulePath), &info, &extra, RTLD_DL_LINKMAP) != 0) {
        // A program has no name here, and the one it was called by need not lead to its file.
        const char* const name = static_cast<const link_map*>(extra)->l_name;
        if (realpath(*name != '\0' ? name : "/proc/self/exe", path.data()) == nullptr) {
            path[0] = '\0';
        }
    }
    return path;
}

}  // namespace

std::string OwnModulePath() {
    // Found once, when the library has just been loaded: the name may be relative to the working folder of
    // then. No destructor takes it away from a thread that still runs while the process ends.
    static const PathBuffer path = FindOwnModule();
    return path.data();
}

std::string ProgramPath() {
    PathBuffer path{};
    return realpath("/proc/self/exe", path.data()) != nullptr ? path.data() : "";
}

std::string ComputerName() {
    char name[HOST_NAME_MAX + 1] = {};
    return gethostname(name, sizeof name - 1) == 0 ? name : "";
}

namespace {

bool TakeText(const char* text, std::string& value) {
    value = text != nullptr ? text : "";
    return !value.empty();
}

}  // namespace

bool GetEnvironmentText(const char* name, std::string& value) {
    return TakeText(getenv(name), value);
}

bool GetTrustedEnvironmentText(const char* name, std::string& value) {
    return TakeText(secure_getenv(name), value);
}

bool HasMoreRightsThanStarter() noexcept {
    return getauxval(AT_SECURE) != 0;
}

bool SetEnvironmentText(const char* name, const std::string& value, SystemErrorCode& error) {
    return Check(setenv(name, value.c_str(), 1) == 0, error);
}

char SearchPathSeparator() noexcept {
    return ':';
}

namespace {

void WriteLine(const char* text) noexcept {
    try {
        std::string line(text);
        if (!line.ends_with('\n')) {
            line += '\n';
        }
        // One call per line keeps lines of several threads apart. Nobody can be told when it fails.
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace

bool IsDebugOutputForPeople() noexcept {
    const char* const wanted = secure_getenv(kDebugVariable);
    return wanted == nullptr || std::strcmp(wanted, kDebugForPrograms) != 0;
}

void WriteDebugOutput(const char* text) noexcept {
    const char* const wanted = secure_getenv(kDebugVariable);
    if (wanted != nullptr && std::strcmp(wanted, "0") != 0) {
        WriteLine(text);
    }
}

void ShowErrorBox(const char* text) noexcept {
    WriteLine(text);
}

unsigned long ProcessId() noexcept {
    return static_cast<unsigned long>(getpid());
}

}  // namespace ZQAPI::platform
