/* The wrapper over the library of The Imaging Source: "ZQICImagingControlCore_x64.v2.0.dll" (".so"
 * elsewhere). What holds for its functions is told in ZQVendorLibrary.h. */
#ifndef ZQAPI_VENDORS_ZQIMAGINGSOURCE_H
#define ZQAPI_VENDORS_ZQIMAGINGSOURCE_H

#include "ZQVendorLibrary.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What the library tells of one camera. */
typedef struct ZQIC_CAMERA_INFO {
    uint32_t size; /* of the record, in bytes */
    int32_t serialNumber;
    char model[ZQVENDOR_MODEL_SIZE]; /* the model as the vendor names it */
} ZQIC_CAMERA_INFO;

ZQVENDOR_API int32_t ZQIC_Init(void);
ZQVENDOR_API int32_t ZQIC_GetNofCameras(uint32_t* count);
ZQVENDOR_API int32_t ZQIC_GetCameraInfo(uint32_t index, ZQIC_CAMERA_INFO* info);
ZQVENDOR_API int32_t ZQIC_DeInit(void);

#ifdef __cplusplus
}
#endif

#endif
