// What the scanners over vendors' libraries have in common. They differ in names, in how the library tells of
// a camera and in what its record is made of.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "devices/ZQScanIFBase.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQException.h"
#include "scanners/ZQModelTable.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQScannerNames.h"
#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorGuard.h"

namespace ZQAPI {

// Which camera it is and where, as its library or the camera itself has it.
struct SVendorIdentity {
    CZQString kind;  // what stands before the serial number in the identifier, as a rule the model
    CZQString serialNumber;
    CZQString address;  // UsedAddress, CCMAddress and IAMAddress
    CZQString firmwareVersion = "-.-";
    CZQString hardwareAddress = {};  // where it is known; for messages

    CZQString GetDeviceID() const { return kind + ":" + serialNumber; }
};

// Whether a camera that can't be read, or is none of the maker's, ends the search. One with a text that a
// record can't keep never does: it is left out.
enum class OnCameraFailure { kEnd, kSkip };

// One kind of scanner. `Info` is what the library tells of one camera.
template <class Info>
struct SVendorScannerKind {
    using MakeSource = std::function<std::unique_ptr<CZQICameraSource<Info>>()>;

    SScannerNames names = {};
    MakeSource makeSource;  // loads the library; called for each scan and update
    SVendorIdentity (*identify)(const Info& camera) = nullptr;
    // A camera that is none of the maker's: ZQ_ERR_UNKNOWN_MODEL.
    SVendorProduct (*productOf)(const Info& camera) = nullptr;
    OnCameraFailure onCameraFailure = OnCameraFailure::kEnd;
    std::int32_t badTextError = ZQ_ERR_VENDOR_LIBRARY;  // for a text that a record can't keep
    std::uint32_t maxWaitMs = CZQVendorGuard::kMaxWaitMs;
};

// The identity as a record can keep it; else `badTextError`, or ZQ_ERR_TEXT_TOO_LONG.
SVendorIdentity FitForRecord(SVendorIdentity identity, std::int32_t badTextError,
                             const SSourceLocation& here);
CZQDeviceInfo MakeVendorRecord(const SScannerNames& names, std::uint32_t index,
                               const SVendorIdentity& identity, const SVendorProduct& product);
void SetVendorLocation(CZQDeviceInfo& device, const SVendorIdentity& identity);

// Within a handler: what is being handled, of whatever kind, as the library's exception, its text followed by
// the camera's number and what is known of it. What is none of the library's becomes ZQ_ERR_UNEXPECTED.
CZQException CaughtWithCamera(const SSourceLocation& here, std::uint32_t index,
                              const SVendorIdentity& identity = {});

// The library is loaded for each scan and update, in its turn (CZQVendorGuard), and freed at its end.
template <class Info>
class CZQVendorScanner : public CZQScanIFBase {
public:
    using Kind = SVendorScannerKind<Info>;
    using Source = CZQICameraSource<Info>;
    using MakeSource = typename Kind::MakeSource;

    // Not its turn within the time of a scan: ZQ_ERR_WAIT_FAILED.
    void Scan(CZQDeviceList& found) final {
        const Kind& kind = *m_kind;
        const CZQVendorGuard guard(kind.names.scanner, kind.maxWaitMs);
        ForEachCamera(kind, kind.names.scanMethod, kProduct, [&](std::uint32_t index, const SCamera& camera) {
            found.AddDevice(MakeVendorRecord(kind.names, index, camera.identity, camera.product), false);
            return false;
        });
    }

    // A library that has not come back within the time of a scan: ZQ_ERR_DEVICE_NOT_FOUND as well, with that
    // as its cause.
    void Update(CZQDeviceInfo& device) final {
        const char* const method = m_kind->names.updateMethod;
        const auto updated = std::make_shared<CZQDeviceInfo>(device);
        const auto isFound = std::make_shared<bool>(false);
        try {
            UseVendorLibrary(m_kind->names.scanner, m_kind->maxWaitMs,
                             [kind = m_kind, updated, isFound](const IsAwaited& /*isAwaited*/) {
                                 *isFound = UpdateNow(*kind, *updated);
                             });
        } catch (const CZQException& exception) {
            if (exception.GetErrorNumber() != ZQ_ERR_WAIT_FAILED) {
                throw;
            }
            throw DeviceGone(ZQ_HERE(method), device).CausedBy(exception);
        }
        if (!*isFound) {
            throw DeviceGone(ZQ_HERE(method), device);
        }
        device = *updated;
    }

protected:
    explicit CZQVendorScanner(Kind kind) : m_kind(std::make_shared<const Kind>(std::move(kind))) {}

private:
    struct SCamera {
        SVendorIdentity identity;
        SVendorProduct product;
    };
    enum Wanted { kIdentity, kProduct };

    // Calls `use` with each camera, until it returns true.
    template <class Use>
    static void ForEachCamera(const Kind& kind, const char* method, Wanted wanted, Use&& use) {
        const std::unique_ptr<Source> source = kind.makeSource();
        const std::uint32_t count = source->GetNofCameras();
        bool isDone = false;
        for (std::uint32_t i = 0; i < count && !isDone; ++i) {
            SCamera camera;
            bool isRead = false;
            try {
                const Info info = source->GetCamera(i);
                camera.identity = kind.identify(info);
                camera.product = wanted == kProduct ? kind.productOf(info) : SVendorProduct();
                isRead = true;  // what fails from here on is a text
                camera.identity = FitForRecord(camera.identity, kind.badTextError, ZQ_HERE(method));
                isDone = use(i, camera);
            } catch (...) {
                CZQException failure = CaughtWithCamera(ZQ_HERE(method), i, camera.identity);
                if (!isRead && kind.onCameraFailure == OnCameraFailure::kEnd) {
                    throw CZQException(failure);
                }
                ReportRecovered(failure, ZQ_HERE(method));
            }
        }
    }

    // Whether the device was there.
    static bool UpdateNow(const Kind& kind, CZQDeviceInfo& device) {
        bool isFound = false;
        ForEachCamera(kind, kind.names.updateMethod, kIdentity,
                      [&](std::uint32_t /*index*/, const SCamera& camera) {
                          isFound = camera.identity.GetDeviceID() == device.GetDeviceID();
                          if (isFound) {
                              SetVendorLocation(device, camera.identity);
                          }
                          return isFound;
                      });
        return isFound;
    }

    // Shared with an update that is not waited for any more.
    const std::shared_ptr<const Kind> m_kind;
};

// What one scanner is made of, to derive from: the scanner adds kNames, kProducts, Identify and ProductOf.
template <class CameraSource>
struct SVendorScannerTraits {
    using Source = CameraSource;
    using Camera = typename Source::Camera;

    static constexpr OnCameraFailure kOnCameraFailure = OnCameraFailure::kEnd;
    static constexpr std::int32_t kBadTextError = ZQ_ERR_VENDOR_LIBRARY;
    static std::unique_ptr<Source> MakeSource(const CZQSdkPaths& kit) {
        return std::make_unique<Source>(kit.GetBinPath());
    }
};

// The scanner with these traits.
template <class Traits>
class CZQVendorScannerOf : public CZQVendorScanner<typename Traits::Camera> {
    using Base = CZQVendorScanner<typename Traits::Camera>;

public:
    // Has no settings.
    CZQVendorScannerOf(const CZQSdkPaths& kit, const CZQString& /*section*/)
        : CZQVendorScannerOf(typename Base::MakeSource([kit] { return Traits::MakeSource(kit); })) {}
    // With another library: `place` is what the source is made with, as a rule the library's folder.
    explicit CZQVendorScannerOf(const CZQString& place)
        : CZQVendorScannerOf(typename Base::MakeSource(
              [place] { return std::make_unique<typename Traits::Source>(place); })) {}

private:
    explicit CZQVendorScannerOf(typename Base::MakeSource makeSource)
        : Base({Traits::kNames, std::move(makeSource), Traits::Identify, Traits::ProductOf,
                Traits::kOnCameraFailure, Traits::kBadTextError}) {}
};

}  // namespace ZQAPI
