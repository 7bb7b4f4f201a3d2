// The function that libFuzzer's main calls.
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ZQAPI::fuzz::CheckInput({reinterpret_cast<const char*>(data), size});
    return 0;
}
