// The device list file: what can be loaded is saved and loaded again without a difference. Written by hand it may say
// what a save does not (a text in quotes with blanks at its ends, the word for an empty text); and an empty list is
// saved, but never loaded.
#include "Fuzz.h"

void ZQAPI::fuzz::CheckInput(std::string_view input) {
    static const InputFile file;
    if (!file.WriteSealed(input)) {
        return;
    }
    CZQDeviceList list;
    const bool isLoaded = Succeeds([&] { list.LoadFromFile(file.Path()); });
    for (const CZQDeviceInfo& device : list) {
        device.CheckTerminated();
    }
    if (isLoaded) {
        RequireComesBack(list);
    }
}
