/* Compiled for MSVC's interface with nothing but the public header: reads the list that the zip brings along. */
#include <ZQAPI/ZQDeviceAPI.h>

__declspec(dllimport) void __stdcall ExitProcess(unsigned int status);

void start(void) {
    static ZQDEVICEINFO device;
    unsigned int count = 0;
    unsigned int status = 1;
    if (ZQDEV_InitLibrary() == ZQ_OK && ZQDEV_GetNofDevices(&count) == ZQ_OK && count > 0) {
        status = ZQDEV_GetDevice(0, &device) == ZQ_OK && device.DeviceID[0] != '\0' ? 0 : 2;
    }
    ZQDEV_DeInitLibrary();
    ExitProcess(status);
}
