// Libraries loaded at run time.
#pragma once

#include <string>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

using LibraryHandle = void*;

// Loads a library by name or path; null on failure. A name that ends in ".dll" is the kit's way of writing
// it: on Windows it is taken as it stands, elsewhere it ends in ".so" instead, and a bare name is looked for
// in this library's own folder, then in the folders of PATH, then by the system's loader. `detail` gets the
// loader's own words where it has better ones than the code's text.
LibraryHandle LoadSharedLibrary(const std::string& name, SystemErrorCode& error, std::string& detail);

// The address of an exported function; null when the library has none of that name.
void* FindSymbol(LibraryHandle library, const char* name, SystemErrorCode& error) noexcept;

void FreeSharedLibrary(LibraryHandle library) noexcept;

}  // namespace ZQAPI::platform
