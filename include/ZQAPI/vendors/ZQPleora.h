/* The wrapper over the Pleora library for iPORT cameras: "ZQPleoraEbusVisionCore_x64.v2.0.dll" (".so"
 * elsewhere). What holds for its functions is told in ZQVendorLibrary.h. */
#ifndef ZQAPI_VENDORS_ZQPLEORA_H
#define ZQAPI_VENDORS_ZQPLEORA_H

#include "ZQVendorLibrary.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What the library tells of one camera. */
typedef struct ZQPLEORA_CAMERA_INFO {
    uint32_t size; /* of the record, in bytes */
    char model[ZQVENDOR_MODEL_SIZE];
    char serialNumber[ZQVENDOR_SERIAL_NUMBER_SIZE];
    char ipAddress[ZQVENDOR_ADDRESS_SIZE]; /* dotted IPv4; "0.0.0.0" while the camera has none */
} ZQPLEORA_CAMERA_INFO;

ZQVENDOR_API int32_t ZQPLEORA_Init(void);
ZQVENDOR_API int32_t ZQPLEORA_GetNofCameras(uint32_t* count);
ZQVENDOR_API int32_t ZQPLEORA_GetCameraInfo(uint32_t index, ZQPLEORA_CAMERA_INFO* info);
ZQVENDOR_API int32_t ZQPLEORA_DeInit(void);

/* Gives a camera a new address, which it keeps when switched off. `deviceId` is its model, a colon and its
 * serial number: an index could mean another camera since the last listing. `ipAddress` is a dotted IPv4
 * text, checked by the caller; the subnet mask becomes that of its class. The call ends when the camera has
 * taken the address, and fails when there is no such camera. */
ZQVENDOR_API int32_t ZQPLEORA_SetIpAddress(const char* deviceId, const char* ipAddress);

#ifdef __cplusplus
}

using ZQPLEORA_SetIpAddress_Function = decltype(&ZQPLEORA_SetIpAddress);
#endif

#endif
