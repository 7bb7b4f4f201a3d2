/* What the kit's wrapper libraries have in common.
 *
 * A wrapper library stands between the kit and the library of a camera vendor: it has a C interface that
 * stays the same when the vendor's changes. Each lies beside the kit's library, is loaded at run time under
 * the file name that its header tells, and is searched for its functions by name; a machine without that
 * vendor's cameras does without it. A wrapper library includes its header to have the compiler hold it
 * against the contract; on Windows it lists its functions in a .def file, or defines ZQVENDOR_API as
 * __declspec(dllexport). Plain C89 and C++.
 *
 * Contracts that hold for every function of every wrapper library
 *
 * - Result. 0: done. Any other number is a failure and the library's own; the kit hands it to the user in the
 *   text "Function=...; Status=...". Outputs mean nothing then. No exception leaves a library. Every
 *   call ends in bounded time.
 * - Null. A pointer that is absent is a failure, not a crash.
 * - Threads. Any function from any thread, several at a time.
 * - Ownership. A library keeps no pointer of the caller's; what it gives out itself (a handle) its header
 *   tells how to give back.
 *
 * and for the four that all but the GigE library begin with, here of the prefix ZQXX:
 *
 *     int32_t ZQXX_Init(void);
 *     int32_t ZQXX_GetNofCameras(uint32_t* count);
 *     int32_t ZQXX_GetCameraInfo(uint32_t index, ZQXX_CAMERA_INFO* info);
 *     int32_t ZQXX_DeInit(void);
 *
 * - Use. Init comes first and DeInit last, once for each Init that succeeded; users are counted. After the
 *   last DeInit the library has no thread, no open camera and no memory left, for it may be unloaded next.
 * - Listing. GetNofCameras looks for cameras anew and keeps what it found; GetCameraInfo goes by the latest
 *   listing, whichever thread made it, indices counted from 0. More than ZQVENDOR_MAX_CAMERAS are taken
 *   for a failure. A camera that has gone since, or an index past the end, makes GetCameraInfo fail; it
 *   disturbs no other camera's.
 * - Records. A record begins with its size in bytes. The caller sets it to what it has room for and
 *   clears the rest; the library fills at most that many bytes and sets it to the number that it filled,
 *   `size` itself included. A record only ever grows at its end: a library and a kit of different age
 *   understand each other. What an older library leaves unfilled is zero to the kit, an empty text for
 *   instance.
 * - Texts. Single-byte characters without control characters; in a field of fixed size, ended by a NUL where
 *   the text is shorter than the field. Not empty, no white space at either end, no quotes around it. A
 *   camera whose serial number or address is none of that sort is left out.
 */
#ifndef ZQAPI_VENDORS_ZQVENDORLIBRARY_H
#define ZQAPI_VENDORS_ZQVENDORLIBRARY_H

#include <stdint.h>

#ifndef ZQVENDOR_API
#if defined(__GNUC__) && !defined(_WIN32)
#define ZQVENDOR_API __attribute__((visibility("default")))
#else
#define ZQVENDOR_API
#endif
#endif

#define ZQVENDOR_OK 0

#define ZQVENDOR_MAX_CAMERAS 1024

/* Sizes of text fields in bytes. A model and a serial number with a colon between them fit the DeviceID of a
 * device record. */
#define ZQVENDOR_MODEL_SIZE 40
#define ZQVENDOR_SERIAL_NUMBER_SIZE 20
#define ZQVENDOR_ADDRESS_SIZE 40

#endif
