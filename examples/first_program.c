/* Prints the devices of this machine; with the argument "scan" it looks for them first. */
#include <ZQAPI/ZQDeviceAPI.h>
#include <ZQAPI/ZQErrorText.h>
#include <stdio.h>
#include <string.h>

static int Failed(const char* function, int result) {
    fprintf(stderr, "%s: error %d, %s: %s\n", function, result, ZQ_ErrorName(result), ZQ_ErrorText(result));
    return 1;
}

int main(int argc, char** argv) {
    ZQDEVICEINFO device;
    unsigned int i, count = 0;
    int result = ZQDEV_InitLibrary();
    if (result != ZQ_OK) {
        return Failed("ZQDEV_InitLibrary", result);
    }
    if (argc > 1 && strcmp(argv[1], "scan") == 0) {
        result = ZQDEV_ScanForDevices();
        if (result != ZQ_OK) {
            return Failed("ZQDEV_ScanForDevices", result);
        }
    }
    result = ZQDEV_GetNofDevices(&count);
    for (i = 0; i < count && result == ZQ_OK; ++i) {
        result = ZQDEV_GetDevice(i, &device);
        if (result == ZQ_OK) {
            printf("%s: %s at %s\n", device.Name, device.DeviceID, device.UsedAddress);
        }
    }
    ZQDEV_DeInitLibrary();
    return result == ZQ_OK ? 0 : Failed("ZQDEV_GetDevice", result);
}
