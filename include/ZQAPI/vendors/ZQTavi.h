/* The library of the Tavi cameras: "ZQTaviCore_64.v2.0.dll" (".so" elsewhere). What holds for its functions
 * is told in ZQVendorLibrary.h. */
#ifndef ZQAPI_VENDORS_ZQTAVI_H
#define ZQAPI_VENDORS_ZQTAVI_H

#include "ZQVendorLibrary.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What the library tells of one camera. */
typedef struct ZQTAVI_CAMERA_INFO {
    uint32_t size;       /* of the record, in bytes */
    int32_t boardNumber; /* of the board that the camera is connected to, counted from 0 */
    char serialNumber[ZQVENDOR_SERIAL_NUMBER_SIZE];
} ZQTAVI_CAMERA_INFO;

ZQVENDOR_API int32_t ZQTAVI_Init(void);
ZQVENDOR_API int32_t ZQTAVI_GetNofCameras(uint32_t* count);
ZQVENDOR_API int32_t ZQTAVI_GetCameraInfo(uint32_t index, ZQTAVI_CAMERA_INFO* info);
ZQVENDOR_API int32_t ZQTAVI_DeInit(void);

#ifdef __cplusplus
}
#endif

#endif
