// The function that libFuzzer's main calls.
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ZQAPI::fuzz::CheckInput({reinterpret_cast<const char*>(data), size});
    return 0;
}

// libFuzzer looks for leaks between two inputs, while threads of the library may be about to end. What glibc notes of a
// thread-local destructor is then held by that thread alone, which is not looked through any more.
extern "C" const char*
__lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier): the sanitizer's name
    return "leak:__cxa_thread_atexit_impl\n";
}
