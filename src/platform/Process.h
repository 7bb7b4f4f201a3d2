// This process and this library in it: paths, environment, messages to whoever watches.
#pragma once

#include <string>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// Full path of the file that holds this code, however long: the library's own, links resolved, not the calling
// program's. Empty when the system does not tell.
std::string OwnModulePath();

// The same of the program that this process runs.
std::string ProgramPath();

// The local computer's name; empty when the system gives none.
std::string ComputerName();

// False when the variable is missing or empty.
bool GetEnvironmentText(const char* name, std::string& value);
// The same for what decides which files or libraries are used: PATH, and the library's own variables
// (ZQSDK_...). In a process with more rights than its starter's (set-user-id, capabilities) they are the
// starter's wishes and count as missing.
bool GetTrustedEnvironmentText(const char* name, std::string& value);
// Whether the process has more rights than whoever started it, and who chose its arguments, environment and current
// folder: on Linux one with a set-user-id bit or capabilities of its file.
bool HasMoreRightsThanStarter() noexcept;

bool SetEnvironmentText(const char* name, const std::string& value, SystemErrorCode& error);

// Between the folders in PATH: ';' on Windows, ':' elsewhere.
char SearchPathSeparator() noexcept;

// To the debugger (OutputDebugStringA); elsewhere to standard error, when the environment variable
// ZQSDK_DEBUG is set to something other than "0". One line per call, any thread.
void WriteDebugOutput(const char* text) noexcept;

inline constexpr const char* kDebugVariable = "ZQSDK_DEBUG";
// Its value where a program reads the debug output, which then has every text as it is.
inline constexpr const char* kDebugForPrograms = "raw";

// Whether these texts, and those of ShowErrorBox, come out on a terminal as a rule, and so have to be printable.
bool IsDebugOutputForPeople() noexcept;

// A modal box with OK, Cancel and the stop sign; never in a process whose window station is not interactive.
// Elsewhere a text on standard error.
void ShowErrorBox(const char* text) noexcept;

// Calling-process id, for names of temporary files.
unsigned long ProcessId() noexcept;

}  // namespace ZQAPI::platform
