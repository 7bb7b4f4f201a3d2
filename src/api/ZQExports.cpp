// The exported functions: each only forwards to the one device interface.
#include <ZQAPI/ZQDeviceAPI.h>

#include "api/ZQApplication.h"

using ZQAPI::Library;

int ZQDEV_InitLibrary(void) {
    return Library().InitCameraLibrary();
}

int ZQDEV_DeInitLibrary(void) {
    return Library().DeInitCameraLibrary();
}

int ZQDEV_GetNofDevices(unsigned int* count) {
    return Library().GetNofDevices(count);
}

int ZQDEV_GetDevice(unsigned int index, ZQDEVICEINFO* device) {
    return Library().GetDevice(index, device);
}

int ZQDEV_AddDevice(ZQDEVICEINFO device) {
    return Library().AddDevice(device);
}

int ZQDEV_RemoveDevice(const char* deviceId) {
    return Library().RemoveDevice(deviceId);
}

int ZQDEV_ModifyDevice(ZQDEVICEINFO device) {
    return Library().ModifyDevice(device);
}

int ZQDEV_SaveDeviceConfig(void) {
    return Library().SaveDeviceConfig();
}

int ZQDEV_LoadDeviceConfig(void) {
    return Library().LoadDeviceConfig();
}

int ZQDEV_GetDefaultCCM(const char* deviceType, char* buffer, unsigned int bufferSize) {
    return Library().GetDefaultCCM(deviceType, buffer, bufferSize);
}

int ZQDEV_GetDefaultIAM(const char* deviceType, char* buffer, unsigned int bufferSize) {
    return Library().GetDefaultIAM(deviceType, buffer, bufferSize);
}

int ZQDEV_GetNofSupportedCCMs(const char* deviceType, unsigned int* count) {
    return Library().GetNofSupportedCCMs(deviceType, count);
}

int ZQDEV_GetSupportedCCM(const char* deviceType, unsigned int index, char* buffer, unsigned int bufferSize) {
    return Library().GetSupportedCCM(deviceType, index, buffer, bufferSize);
}

int ZQDEV_GetNofSupportedIAMs(const char* deviceType, unsigned int* count) {
    return Library().GetNofSupportedIAMs(deviceType, count);
}

int ZQDEV_GetSupportedIAM(const char* deviceType, unsigned int index, char* buffer, unsigned int bufferSize) {
    return Library().GetSupportedIAM(deviceType, index, buffer, bufferSize);
}

int ZQDEV_GetNofSupportedDeviceTypes(unsigned int* count) {
    return Library().GetNofSupportedDeviceTypes(count);
}

int ZQDEV_GetSupportedDevice(unsigned int index, char* buffer, unsigned int bufferSize) {
    return Library().GetSupportedDevice(index, buffer, bufferSize);
}

int ZQDEV_ScanForDevices(void) {
    return Library().ScanForDevices({});
}

int ZQDEV_ScanForDevicesWithScanner(int scanner) {
    return Library().ScanForDevices({&scanner, 1});
}

int ZQDEV_RescanDevice(ZQDEVICEINFO* device) {
    return Library().RescanDevice(device);
}

int ZQDEV_ChangeDeviceNetAddr(ZQDEVICEINFO device, const char* newAddress) {
    return Library().ChangeDeviceNetAddr(device, newAddress);
}
