// The device list file: what can be loaded is saved and loaded again without a difference. Written by hand it may say
// what a save does not (a text in quotes with blanks at its ends, the word for an empty text); and an empty list is
// saved, but never loaded.
#include <cstring>

#include "Fuzz.h"
#include "KeepableRecords.h"
#include "devices/ZQDeviceList.h"
#include "foundation/Io/ZQConfigFile.h"

using namespace ZQAPI;
using namespace ZQAPI::fuzz;

namespace {

bool AreEqual(const CZQDeviceList& left, const CZQDeviceList& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const CZQDeviceInfo& one, const CZQDeviceInfo& other) {
                          return std::memcmp(&one.GetRecord(), &other.GetRecord(), sizeof(ZQDEVICEINFO)) == 0;
                      });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const InputFile file;
    static const InputFile saved;
    file.Write(Text(data, size));
    // Sealed as it is: damage is another target's.
    if (!Succeeds(
            [] { CZQConfigFile(file.Path(), CZQConfigFile::Mode::kRead, false).CreateFileChecksum(); })) {
        return 0;
    }
    CZQDeviceList list;
    const bool isLoaded = Succeeds([&] { list.LoadFromFile(file.Path()); });
    for (const CZQDeviceInfo& device : list) {
        device.CheckTerminated();
    }
    if (isLoaded) {
        CZQDeviceList again;
        list.SaveToFile(saved.Path());
        const bool isLoadedAgain = Succeeds([&] { again.LoadFromFile(saved.Path()); });
        const bool isKeepable =
            list.GetCount() > 0 && std::all_of(list.begin(), list.end(), [](const CZQDeviceInfo& device) {
                return IsKeepable(device) && Succeeds([&] { device.CheckName(); });
            });
        ZQ_REQUIRE(!isKeepable || (isLoadedAgain && AreEqual(list, again)));
    }
    return 0;
}
