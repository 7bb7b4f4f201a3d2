// The end of this library in a process that goes on.
#pragma once

namespace ZQAPI::platform {

// The handler is called when the application unloads this library, and never when the process ends: other
// threads may then be gone with whatever locks they held (Windows), or still be running inside (elsewhere),
// and what the library loaded may be unloaded already. To be set while the library is being loaded; one per
// library. The handler must not throw, and works on objects without destructors of their own
// (CZQNoDestructor): in which order the others go is open.
void SetModuleUnloadHandler(void (*handler)()) noexcept;

// Where a library that is unloaded does not give everything back (on Windows a thread-local index of the C++ run-time
// in it), this one stays in the process from now on; elsewhere this does nothing.
void KeepModuleIfUnloadingLeaks() noexcept;

}  // namespace ZQAPI::platform
