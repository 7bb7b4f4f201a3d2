/* The maker's library for GigE cameras: "ZQGigE.x64.dll" (".so" elsewhere). What holds for every function of
 * a wrapper library is told in ZQVendorLibrary.h; this one has no Init and DeInit, and stays loaded between
 * scans. Like the others, it may be unloaded when no container is left.
 *
 *     CameraContainer_create          a container of one kind
 *     CameraContainer_discovery         looks for cameras; they live as long as the container
 *     CameraContainer_getCamera           one of them: its texts, and a connection to it
 *     CameraContainer_delete
 *
 * Containers are independent of each other, also two of one kind. A container and its cameras are used by one
 * thread at a time.
 */
#ifndef ZQAPI_VENDORS_ZQGIGE_H
#define ZQAPI_VENDORS_ZQGIGE_H

#include "ZQVendorLibrary.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The interface told here. It is another one as soon as a function changes or goes. */
#define ZQGIGE_INTERFACE_VERSION 1

/* How a container reaches its cameras. Some are seen both ways. */
#define ZQGIGE_KIND_FILTER 1 /* through the library's filter driver */
#define ZQGIGE_KIND_SOCKET 2 /* through the system's sockets */

/* Null is none. */
typedef struct ZQGIGE_CONTAINER_STATE* ZQGIGE_CONTAINER;
typedef struct ZQGIGE_CAMERA_STATE* ZQGIGE_CAMERA;

/* Whether the library has this interface (ZQGIGE_INTERFACE_VERSION): 1 or 0. The caller uses no other
 * function when it has not. */
ZQVENDOR_API int32_t isVersionCompliantDLL(uint32_t interfaceVersion);
/* Whether the driver under the library is installed and runs now: 1 or 0. Without it there are no containers.
 */
ZQVENDOR_API int32_t isDriverAvailable(void);

/* A new container of the kind, without cameras; null on failure. */
ZQVENDOR_API ZQGIGE_CONTAINER CameraContainer_create(int32_t kind);
/* Ends the container and its cameras; null is allowed. */
ZQVENDOR_API void CameraContainer_delete(ZQGIGE_CONTAINER container);
/* Looks for cameras. Once for a container. */
ZQVENDOR_API int32_t CameraContainer_discovery(ZQGIGE_CONTAINER container);
ZQVENDOR_API int32_t CameraContainer_getNumberOfCameras(ZQGIGE_CONTAINER container, uint32_t* count);
/* A camera of the container, counted from 0; null when it has gone since. */
ZQVENDOR_API ZQGIGE_CAMERA CameraContainer_getCamera(ZQGIGE_CONTAINER container, uint32_t index);

/* The camera's texts, copied to `text`, which has room for `size` bytes: a text that is longer is cut, one
 * that is shorter gets a NUL. The kit gives the sizes of ZQVendorLibrary.h. The MAC address is
 * "00:11:22:33:44:55", the same through containers of both kinds; the IP address is dotted IPv4, "0.0.0.0"
 * while the camera has none. The device version alone may be empty. */
ZQVENDOR_API int32_t Camera_getModelName(ZQGIGE_CAMERA camera, char* text, uint32_t size);
ZQVENDOR_API int32_t Camera_getDeviceVersion(ZQGIGE_CAMERA camera, char* text, uint32_t size);
ZQVENDOR_API int32_t Camera_getSerialNumber(ZQGIGE_CAMERA camera, char* text, uint32_t size);
ZQVENDOR_API int32_t Camera_getMacAddress(ZQGIGE_CAMERA camera, char* text, uint32_t size);
ZQVENDOR_API int32_t Camera_getIPAddress(ZQGIGE_CAMERA camera, char* text, uint32_t size);

/* Gives a camera that can't be reached at its address a temporary one that can be, in the subnet of the
 * interface that heard it. A camera that can be reached keeps its own. */
ZQVENDOR_API int32_t Camera_forceValidNetworkAddress(ZQGIGE_CAMERA camera);
/* Opens the control connection; no other program has one to this camera meanwhile. */
ZQVENDOR_API int32_t Camera_open(ZQGIGE_CAMERA camera);
/* Gives the camera a new address and subnet mask, dotted IPv4 texts, which it keeps when switched off. Needs
 * the connection. */
ZQVENDOR_API int32_t Camera_setIPAddress(ZQGIGE_CAMERA camera, const char* ipAddress, const char* subnetMask);
/* Closes the connection: once for each that was opened, before the container is deleted. */
ZQVENDOR_API int32_t Camera_close(ZQGIGE_CAMERA camera);

#ifdef __cplusplus
}
#endif

#endif
