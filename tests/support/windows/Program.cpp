#include "support/Program.h"

#include <windows.h>

#include "platform/windows/OwnedHandle.h"
#include "support/FileBytes.h"

namespace ZQAPI::test {
namespace {

platform::OwnedHandle InheritedFile(const std::string& path) {
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    return platform::OwnedHandle(
        platform::NullWhenInvalid(CreateFileA(path.c_str(), GENERIC_WRITE, platform::kShareAll, &inherited,
                                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

}  // namespace

int RunProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& out,
               const std::string& err, std::chrono::milliseconds limit) {
    std::string command = '"' + program + '"';
    for (const std::string& argument : arguments) {
        command += " \"" + argument + '"';
    }
    platform::OwnedHandle outFile = InheritedFile(out);
    platform::OwnedHandle errFile = InheritedFile(err);
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = outFile.get();
    startup.hStdError = errFile.get();
    PROCESS_INFORMATION started = {};
    if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &started) == FALSE) {
        const DWORD error = GetLastError();
        errFile.reset();
        WriteBytes(err, "not started: " + std::to_string(error));
        return -1;
    }
    const platform::OwnedHandle thread(started.hThread);
    const platform::OwnedHandle process(started.hProcess);
    DWORD status = 0;
    if (WaitForSingleObject(process.get(), static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0) {
        TerminateProcess(process.get(), 1);
        return kHadToBeEnded;
    }
    GetExitCodeProcess(process.get(), &status);
    return static_cast<int>(status);
}

}  // namespace ZQAPI::test
