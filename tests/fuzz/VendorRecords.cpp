// Records of vendors' libraries with public interfaces, through their scanners. Input: which library, one byte; then
// what its functions give, in the order of the calls (VendorLibraries.cpp).
#include <filesystem>

#include "Fuzz.h"
#include "foundation/ZQDynamicDLL.h"
#include "scanners/vendor/ZQScanIFIDSUEye.h"
#include "scanners/vendor/ZQScanIFMatrixVision.h"
#include "scanners/vendor/ZQScanIFPGRFly.h"

namespace ZQAPI::fuzz {

namespace {

template <class Scanner>
std::unique_ptr<CZQScanIFBase> Make(const CZQString& folder) {
    return std::make_unique<Scanner>(folder);
}

struct Vendor {
    const char* file;
    std::unique_ptr<CZQScanIFBase> (*make)(const CZQString& folder);
};

constexpr Vendor kVendors[] = {
    {"libueye_api.so", Make<CZQScanIFIDSUEye>},
    {"libflycapture-c.so", Make<CZQScanIFPGRFly>},
    {"libmvDeviceManager.so", Make<CZQScanIFMatrixVision>},
};

// The library under the vendors' names, and held, so that what it plays outlasts the scanners' loading and unloading.
class Libraries {
public:
    Libraries() {
        for (const Vendor& vendor : kVendors) {
            std::filesystem::create_symlink(ZQ_FUZZ_VENDOR_LIBRARIES, m_folder.Path() / vendor.file);
        }
        m_library.OpenLibrary(ZQ_FUZZ_VENDOR_LIBRARIES);
    }
    void Play(std::string_view bytes) const { m_play(bytes.data(), bytes.size()); }
    CZQString Folder() const { return m_folder.File(""); }

private:
    test::TempFolder m_folder;
    CZQDynamicDLL m_library;
    CZQEntryPoint<void(const char* bytes, std::size_t size)> m_play{m_library, "FuzzPlay"};
};

}  // namespace

void CheckInput(std::string_view input) {
    static const Libraries libraries;
    const Vendor& vendor = kVendors[TakeByte(input) % std::size(kVendors)];
    libraries.Play(input);
    CZQDeviceList found;
    Succeeds([&] { vendor.make(libraries.Folder())->Scan(found); });
    std::for_each(found.begin(), found.end(), RequireKeepable);
}

}  // namespace ZQAPI::fuzz
