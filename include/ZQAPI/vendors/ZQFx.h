/* The library of the FX cameras on IEEE 1394: "FxLib_64.v2.0.dll" (".so" elsewhere). What holds for its
 * functions is told in ZQVendorLibrary.h. */
#ifndef ZQAPI_VENDORS_ZQFX_H
#define ZQAPI_VENDORS_ZQFX_H

#include "ZQVendorLibrary.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What the library tells of one camera. */
typedef struct ZQFX_CAMERA_INFO {
    uint32_t size;    /* of the record, in bytes */
    int32_t vendorId; /* as in the camera's configuration ROM */
    int32_t modelId;
    int32_t serialNumber;
    char model[ZQVENDOR_MODEL_SIZE];
} ZQFX_CAMERA_INFO;

ZQVENDOR_API int32_t ZQFX_Init(void);
ZQVENDOR_API int32_t ZQFX_GetNofCameras(uint32_t* count);
ZQVENDOR_API int32_t ZQFX_GetCameraInfo(uint32_t index, ZQFX_CAMERA_INFO* info);
ZQVENDOR_API int32_t ZQFX_DeInit(void);

#ifdef __cplusplus
}
#endif

#endif
