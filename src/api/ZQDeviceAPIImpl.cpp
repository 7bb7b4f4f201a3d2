#include "api/ZQDeviceAPIImpl.h"

#include <algorithm>
#include <limits>

#include "api/ZQCatchProtocol.h"
#include "devices/ZQCamConfigFile.h"
#include "foundation/Io/ZQConfigFile.h"
#include "foundation/ZQException.h"
#include "foundation/ZQLogger.h"
#include "scanners/ZQLoggerSettings.h"
#include "scanners/address_change/ZQNetAddressChange.h"

namespace ZQAPI {

namespace {

void CheckInput(const void* input, const SSourceLocation& here) {
    if (input == nullptr) {
        throw CZQException(here, ZQ_ERR_NULL_INPUT);
    }
}

void CheckOutput(const void* output, const SSourceLocation& here) {
    if (output == nullptr) {
        throw CZQException(here, ZQ_ERR_NULL_OUTPUT);
    }
}

// A record from outside, whose fields are known to end within it.
CZQDeviceInfo CheckedDevice(const ZQDEVICEINFO& record) {
    CZQDeviceInfo device(record);
    device.CheckTerminated();
    return device;
}

}  // namespace

CZQDeviceAPI::CZQDeviceAPI(SDeviceAPIEnvironment environment) : m_environment(std::move(environment)) {}

void CZQDeviceAPI::CheckInitialised(const SSourceLocation& here) const {
    if (m_initCount.load() <= 0) {
        throw CZQException(here, ZQ_ERR_NOT_INITIALISED);
    }
}

// The frame of every method but a few: under the lock, which is released before a failure is reported, and
// only when the library is initialised.
template <class Body>
int CZQDeviceAPI::Initialised(const SSourceLocation& here, Body&& body) noexcept {
    return RunReported(here, [&] {
        const CZQThreadSync lock(m_lock, CZQThreadSync::kInfinite);
        CheckInitialised(here);
        body();
    });
}

// ---- lifecycle ----------------------------------------------------------------------------------

int CZQDeviceAPI::InitCameraLibrary() noexcept {
    return RunReported(ZQ_HERE("CZQDeviceAPI::InitCameraLibrary"), [&] {
        const CZQThreadSync lock(m_lock, CZQThreadSync::kInfinite);
        if (m_initCount.load() == 0) {
            LoadList();
        }
        ++m_initCount;
    });
}

int CZQDeviceAPI::DeInitCameraLibrary() noexcept {
    // Freed behind the lock: its code may take its time.
    std::vector<std::shared_ptr<const void>> released;
    return RunReported(ZQ_HERE("CZQDeviceAPI::DeInitCameraLibrary"), [&] {
        const CZQThreadSync lock(m_lock, CZQThreadSync::kInfinite);
        if (m_initCount.load() == 1) {
            released = ReleaseScannerLibraries();
        }
        m_initCount = std::max(m_initCount.load() - 1, 0);
    });
}

void CZQDeviceAPI::Reset() noexcept {
    m_initCount = 0;
    DeInitCameraLibrary();
}

// ---- device list --------------------------------------------------------------------------------

int CZQDeviceAPI::GetNofDevices(unsigned int* count) noexcept {
    const SSourceLocation here = ZQ_HERE("CZQDeviceAPI::GetNofDevices");
    return Initialised(here, [&] {
        CheckOutput(count, here);
        *count = m_devices.GetCount();
    });
}

int CZQDeviceAPI::GetDevice(unsigned int index, ZQDEVICEINFO* record) noexcept {
    const SSourceLocation here = ZQ_HERE("CZQDeviceAPI::GetDevice");
    return Initialised(here, [&] {
        CheckOutput(record, here);
        *record = m_devices.GetDevice(index).GetRecord();
    });
}

int CZQDeviceAPI::AddDevice(const ZQDEVICEINFO& record) noexcept {
    return Initialised(ZQ_HERE("CZQDeviceAPI::AddDevice"), [&] {
        const CZQDeviceInfo device = CheckedDevice(record);
        device.CheckPrintable();
        m_devices.AddDevice(device, true);
    });
}

int CZQDeviceAPI::RemoveDevice(const char* deviceId) noexcept {
    const SSourceLocation here = ZQ_HERE("CZQDeviceAPI::RemoveDevice");
    return Initialised(here, [&] {
        CheckInput(deviceId, here);
        m_devices.RemoveDevice(deviceId);
    });
}

int CZQDeviceAPI::ModifyDevice(const ZQDEVICEINFO& record) noexcept {
    return Initialised(ZQ_HERE("CZQDeviceAPI::ModifyDevice"), [&] {
        const CZQDeviceInfo device = CheckedDevice(record);
        device.CheckPrintable();
        device.CheckName();
        m_devices.ModifyDevice(device);
    });
}

int CZQDeviceAPI::SaveDeviceConfig() noexcept {
    return Initialised(ZQ_HERE("CZQDeviceAPI::SaveDeviceConfig"),
                       [&] { m_devices.SaveToFile(m_environment.kit.GetDevicesIniPath()); });
}

int CZQDeviceAPI::LoadDeviceConfig() noexcept {
    return Initialised(ZQ_HERE("CZQDeviceAPI::LoadDeviceConfig"), [&] { LoadList(); });
}

void CZQDeviceAPI::LoadList() {
    m_devices.Clear();
    CZQDeviceList loaded;
    loaded.LoadFromFile(m_environment.kit.GetDevicesIniPath());
    m_devices = std::move(loaded);
}

// ---- modules of a device type -------------------------------------------------------------------

template <class Query>
int CZQDeviceAPI::QueryText(const SSourceLocation& here, const char* deviceType, char* buffer,
                            unsigned int size, Query&& query) noexcept {
    return Initialised(here, [&] {
        CheckInput(deviceType, here);
        CheckOutput(buffer, here);
        CZQCamConfigFile config(m_environment.kit.GetCameraConfigFile(deviceType));
        constexpr auto kMaxSize = static_cast<unsigned int>(std::numeric_limits<std::int32_t>::max());
        CZQString(query(config)).CopyToChars(buffer, static_cast<std::int32_t>(std::min(size, kMaxSize)));
    });
}

template <class Query>
int CZQDeviceAPI::QueryCount(const SSourceLocation& here, const char* deviceType, unsigned int* count,
                             Query&& query) noexcept {
    return Initialised(here, [&] {
        CheckInput(deviceType, here);
        CheckOutput(count, here);
        CZQCamConfigFile config(m_environment.kit.GetCameraConfigFile(deviceType));
        *count = query(config).GetSize();
    });
}

int CZQDeviceAPI::GetDefaultCCM(const char* deviceType, char* buffer, unsigned int size) noexcept {
    return QueryText(ZQ_HERE("CZQDeviceAPI::GetDefaultCCM"), deviceType, buffer, size,
                     [](CZQCamConfigFile& config) { return config.GetDefaultCCM(); });
}

int CZQDeviceAPI::GetDefaultIAM(const char* deviceType, char* buffer, unsigned int size) noexcept {
    return QueryText(ZQ_HERE("CZQDeviceAPI::GetDefaultIAM"), deviceType, buffer, size,
                     [](CZQCamConfigFile& config) { return config.GetDefaultIAM(); });
}

int CZQDeviceAPI::GetNofSupportedCCMs(const char* deviceType, unsigned int* count) noexcept {
    return QueryCount(ZQ_HERE("CZQDeviceAPI::GetNofSupportedCCMs"), deviceType, count,
                      [](CZQCamConfigFile& config) { return config.GetSupportedCCMs(); });
}

int CZQDeviceAPI::GetSupportedCCM(const char* deviceType, unsigned int index, char* buffer,
                                  unsigned int size) noexcept {
    return QueryText(ZQ_HERE("CZQDeviceAPI::GetSupportedCCM"), deviceType, buffer, size,
                     [index](CZQCamConfigFile& config) { return config.GetSupportedCCMs().GetAt(index); });
}

int CZQDeviceAPI::GetNofSupportedIAMs(const char* deviceType, unsigned int* count) noexcept {
    return QueryCount(ZQ_HERE("CZQDeviceAPI::GetNofSupportedIAMs"), deviceType, count,
                      [](CZQCamConfigFile& config) { return config.GetSupportedIAMs(); });
}

int CZQDeviceAPI::GetSupportedIAM(const char* deviceType, unsigned int index, char* buffer,
                                  unsigned int size) noexcept {
    return QueryText(ZQ_HERE("CZQDeviceAPI::GetSupportedIAM"), deviceType, buffer, size,
                     [index](CZQCamConfigFile& config) { return config.GetSupportedIAMs().GetAt(index); });
}

int CZQDeviceAPI::GetNofSupportedDeviceTypes(unsigned int* /*count*/) noexcept {
    return ZQ_OK;
}

int CZQDeviceAPI::GetSupportedDevice(unsigned int /*index*/, char* /*buffer*/,
                                     unsigned int /*size*/) noexcept {
    return ZQ_OK;
}

// ---- scanning -----------------------------------------------------------------------------------

std::unique_ptr<CZQScanIFBase> CZQDeviceAPI::CreateScanner(const CZQString& name) const {
    return m_environment.createScanner(name, m_environment.kit);
}

CZQStringArray CZQDeviceAPI::SelectScanners(std::span<const std::int32_t> scannerNumbers) const {
    CZQStringArray names;
    for (const std::int32_t number : scannerNumbers) {
        names.Add(ScannerNameOfNumber(number));
    }
    if (scannerNumbers.empty()) {
        CZQConfigFile config(m_environment.kit.GetApiIniPath(), CZQConfigFile::Mode::kRead, true);
        config.SetSection(kScannerSection);
        config.ReadStringArray(kActiveScanners, names, ';');
    }
    return names;
}

int CZQDeviceAPI::ScanForDevices(std::span<const std::int32_t> scannerNumbers) noexcept {
    const SSourceLocation here = ZQ_HERE("CZQDeviceAPI::ScanForDevices");
    return RunReported(here, [&] {
        CheckInitialised(here);
        LogDebugOutput(IsDebugOutputLogged(m_environment.kit));
        const CZQStringArray names = SelectScanners(scannerNumbers);
        const CZQDeviceScan scan({[this](const CZQString& name) { return CreateScanner(name); },
                                  ScannerUsesNetworkLock, ScannerMergeOrder()},
                                 m_environment.scanTimeLimitMs);
        CZQDeviceList found = scan.Run(names);

        const CZQThreadSync lock(m_lock, CZQThreadSync::kInfinite);
        m_devices = std::move(found);
    });
}

int CZQDeviceAPI::RescanDevice(ZQDEVICEINFO* record) noexcept {
    const SSourceLocation here = ZQ_HERE("CZQDeviceAPI::RescanDevice");
    return Initialised(here, [&] {
        CheckOutput(record, here);
        LogDebugOutput(IsDebugOutputLogged(m_environment.kit));
        CZQDeviceInfo device = CheckedDevice(*record);
        if (const auto scanner = CreateScanner(device.GetUsedScanner())) {
            scanner->Update(device);
            *record = device.GetRecord();
        }
    });
}

int CZQDeviceAPI::ChangeDeviceNetAddr(const ZQDEVICEINFO& record, const char* newAddress) noexcept {
    const SSourceLocation here = ZQ_HERE("CZQDeviceAPI::ChangeDeviceNetAddr");
    return Initialised(here, [&] {
        CheckInput(newAddress, here);
        ChangeNetAddress(m_environment.kit, CheckedDevice(record), newAddress);
    });
}

}  // namespace ZQAPI
