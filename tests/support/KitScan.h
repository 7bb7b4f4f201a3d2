// Scans through the exported functions of a copied kit.
#pragma once

#include <string>
#include <vector>

#include "support/FileBytes.h"
#include "support/KitCopy.h"

namespace ZQAPI::test {

class KitScan {
public:
    KitScan() { EXPECT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK); }
    KitScan(const KitScan&) = delete;
    KitScan& operator=(const KitScan&) = delete;
    ~KitScan() { EXPECT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK); }

    // The settings of further scans: the active scanners, and what follows in ZQAPI.ini.
    void Configure(const std::string& activeScanners, const std::string& sections) {
        WriteSealed(kit.ApiIni(), "[DeviceScanner]\r\nActiveScanners=" + activeScanners + "\r\n" + sections);
    }

    std::vector<ZQDEVICEINFO> Devices() {
        unsigned count = 0;
        EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
        std::vector<ZQDEVICEINFO> devices(count);
        for (unsigned i = 0; i < count; ++i) {
            EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetDevice, i, &devices[i]), ZQ_OK);
        }
        return devices;
    }
    std::vector<ZQDEVICEINFO> Scan() {
        EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevices), ZQ_OK);
        return Devices();
    }
    // What a scan finds: "<UsedAddress>=<DeviceID>;..." in the order of the list.
    std::string ScanForAddresses() {
        std::string text;
        for (const ZQDEVICEINFO& device : Scan()) {
            text += std::string(device.UsedAddress) + "=" + device.DeviceID + ";";
        }
        return text;
    }

    KitCopy kit;
};

}  // namespace ZQAPI::test
