#pragma once

#include <ZQAPI/ZQDeviceAPI.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "devices/ZQDeviceList.h"
#include "devices/ZQDeviceScan.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/Threading/ZQThreadSync.h"
#include "foundation/ZQExceptionLocationInfo.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI {

// What the device interface takes from around it: its own kit and scanners, or others in a test.
struct SDeviceAPIEnvironment {
    CZQSdkPaths kit = CZQSdkPaths::OfOwnKit();
    std::function<std::unique_ptr<CZQScanIFBase>(const CZQString& name, const CZQSdkPaths& kit)>
        createScanner = CreateScanner;
    std::uint32_t scanTimeLimitMs = CZQDeviceScan::kTimeLimitMs;
};

// What lies behind the exported functions: the one device list, its lock and the count of initialisations.
// Every method does what the exported function of that name promises (see ZQAPI/ZQDeviceAPI.h) and never
// throws: it logs a failure and returns its number. Thread-safe.
class CZQDeviceAPI {
public:
    explicit CZQDeviceAPI(SDeviceAPIEnvironment environment);

    int InitCameraLibrary() noexcept;
    int DeInitCameraLibrary() noexcept;

    int GetNofDevices(unsigned int* count) noexcept;
    int GetDevice(unsigned int index, ZQDEVICEINFO* record) noexcept;
    int AddDevice(const ZQDEVICEINFO& record) noexcept;
    int RemoveDevice(const char* deviceId) noexcept;
    int ModifyDevice(const ZQDEVICEINFO& record) noexcept;
    int SaveDeviceConfig() noexcept;
    int LoadDeviceConfig() noexcept;

    int GetDefaultCCM(const char* deviceType, char* buffer, unsigned int size) noexcept;
    int GetDefaultIAM(const char* deviceType, char* buffer, unsigned int size) noexcept;
    int GetNofSupportedCCMs(const char* deviceType, unsigned int* count) noexcept;
    int GetSupportedCCM(const char* deviceType, unsigned int index, char* buffer, unsigned int size) noexcept;
    int GetNofSupportedIAMs(const char* deviceType, unsigned int* count) noexcept;
    int GetSupportedIAM(const char* deviceType, unsigned int index, char* buffer, unsigned int size) noexcept;
    int GetNofSupportedDeviceTypes(unsigned int* count) noexcept;
    int GetSupportedDevice(unsigned int index, char* buffer, unsigned int size) noexcept;

    // An empty list of numbers: the scanners configured as active.
    int ScanForDevices(std::span<const std::int32_t> scannerNumbers) noexcept;
    int RescanDevice(ZQDEVICEINFO* record) noexcept;
    int ChangeDeviceNetAddr(const ZQDEVICEINFO& record, const char* newAddress) noexcept;

    // Forces the count to 0, for the library's unloading.
    void Reset() noexcept;

private:
    template <class Body>
    int Initialised(const SSourceLocation& here, Body&& body) noexcept;
    template <class Query>
    int QueryText(const SSourceLocation& here, const char* deviceType, char* buffer, unsigned int size,
                  Query&& query) noexcept;
    template <class Query>
    int QueryCount(const SSourceLocation& here, const char* deviceType, unsigned int* count,
                   Query&& query) noexcept;

    void CheckInitialised(const SSourceLocation& here) const;
    void LoadList();
    std::unique_ptr<CZQScanIFBase> CreateScanner(const CZQString& name) const;
    CZQStringArray SelectScanners(std::span<const std::int32_t> scannerNumbers) const;

    SDeviceAPIEnvironment m_environment;
    CZQCriticalSection m_lock;
    CZQDeviceList m_devices;
    std::atomic<std::int32_t> m_initCount{0};  // written under the lock; a scan reads it without
};

}  // namespace ZQAPI
