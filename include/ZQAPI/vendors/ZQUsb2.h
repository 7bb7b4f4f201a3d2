/* The library of the USB 2 cameras: "ZQUSB2Core_x64.v2.0.dll" (".so" elsewhere). What holds for its functions
 * is told in ZQVendorLibrary.h.
 *
 * USB itself tells only where a camera is; what it is stands in the registers behind its SPI bus. All are 16
 * bits wide:
 *
 *     address                          holds
 *     ZQUSB2_REG_TYPE                  the camera type (ZQUSB2_TYPE_...)
 *     ZQUSB2_REG_SERIAL_NUMBER_HIGH    the upper 16 bits of the serial number
 *     ZQUSB2_REG_SERIAL_NUMBER_LOW     the lower 16 bits
 *
 * A camera whose identity was never written has 0xFFFF in each. */
#ifndef ZQAPI_VENDORS_ZQUSB2_H
#define ZQAPI_VENDORS_ZQUSB2_H

#include "ZQVendorLibrary.h"

#define ZQUSB2_REG_TYPE 0x0000
#define ZQUSB2_REG_SERIAL_NUMBER_HIGH 0x0001
#define ZQUSB2_REG_SERIAL_NUMBER_LOW 0x0002

#define ZQUSB2_TYPE_13M 0x0013 /* 1.3 megapixels, monochrome */
#define ZQUSB2_TYPE_13C 0x0113 /* 1.3 megapixels, colour */
#define ZQUSB2_TYPE_50C 0x0150 /* 5 megapixels, colour */

#ifdef __cplusplus
extern "C" {
#endif

/* What the library tells of one camera. */
typedef struct ZQUSB2_CAMERA_INFO {
    uint32_t size;                        /* of the record, in bytes */
    char location[ZQVENDOR_ADDRESS_SIZE]; /* place on the bus, "1-2.3": bus, then the ports on the way */
} ZQUSB2_CAMERA_INFO;

ZQVENDOR_API int32_t ZQUSB2_Init(void);
ZQVENDOR_API int32_t ZQUSB2_GetNofCameras(uint32_t* count);
ZQVENDOR_API int32_t ZQUSB2_GetCameraInfo(uint32_t index, ZQUSB2_CAMERA_INFO* info);
ZQVENDOR_API int32_t ZQUSB2_DeInit(void);

/* An open camera; null is none. */
typedef struct ZQUSB2_CAMERA_STATE* ZQUSB2_CAMERA;

/* Opens the camera of this index in the latest listing for its registers; that another program takes images
 * from it does not matter. */
ZQVENDOR_API int32_t ZQUSB2_OpenCamera(uint32_t index, ZQUSB2_CAMERA* camera);
/* Closes the camera: once for each that was opened, before DeInit. */
ZQVENDOR_API int32_t ZQUSB2_CloseCamera(ZQUSB2_CAMERA camera);
/* Reads one register. */
ZQVENDOR_API int32_t ZQUSB2_ReadSpiRegister(ZQUSB2_CAMERA camera, uint16_t address, uint16_t* value);

#ifdef __cplusplus
}

using ZQUSB2_OpenCamera_Function = decltype(&ZQUSB2_OpenCamera);
using ZQUSB2_CloseCamera_Function = decltype(&ZQUSB2_CloseCamera);
using ZQUSB2_ReadSpiRegister_Function = decltype(&ZQUSB2_ReadSpiRegister);
#endif

#endif
