// Libraries loaded at run time.
#pragma once

#include <string>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

using LibraryHandle = void*;

// The file that a name of the kit stands for on this system: a name that ends in ".dll" is taken as it stands
// on Windows and ends in ".so" elsewhere.
std::string LibraryFileName(std::string name);

// The folder of the system's own libraries, with a separator at its end; empty where the loader
// alone knows it.
std::string SystemLibraryFolder();

// Whether a regular file of that path is there, links followed.
bool IsLibraryFileThere(const std::string& path) noexcept;

// Loads the library file of that path; null on failure. What the library itself needs is found beside it, by
// the system's rules and, on Windows, in the absolute folders of PATH; never in the current folder. `detail`
// gets the loader's own words where it has better ones than the code's text.
LibraryHandle LoadLibraryFile(const std::string& path, SystemErrorCode& error, std::string& detail);

// Leaves a bare file name to the system's loader, where that never looks into the current folder; elsewhere
// no such file is found.
LibraryHandle LoadLibraryByLoader(const std::string& fileName, SystemErrorCode& error, std::string& detail);

// The address of an exported function; null when the library has none of that name, or there is no library.
void* FindSymbol(LibraryHandle library, const char* name, SystemErrorCode& error) noexcept;

void FreeSharedLibrary(LibraryHandle library) noexcept;

// From now on the library stays loaded until the process ends, however often it is freed. False when the
// system refuses.
bool KeepSharedLibrary(LibraryHandle library) noexcept;

}  // namespace ZQAPI::platform
