/* ZQDeviceAPI: which cameras are attached to this machine, how each is reached, and what it is.
 *
 * The library keeps a list of camera devices. An application scans the configured camera interfaces for devices,
 * edits the list, saves and reloads it, re-checks one device and can give a network camera a new IP address.
 *
 *     #include <ZQAPI/ZQDeviceAPI.h>
 *
 *     unsigned int i, count = 0;
 *     ZQDEVICEINFO device;
 *     if (ZQDEV_InitLibrary() == ZQ_OK && ZQDEV_ScanForDevices() == ZQ_OK) {
 *         ZQDEV_GetNofDevices(&count);
 *         for (i = 0; i < count; ++i)
 *             if (ZQDEV_GetDevice(i, &device) == ZQ_OK)
 *                 printf("%s at %s\n", device.DeviceID, device.UsedAddress);
 *     }
 *     ZQDEV_DeInitLibrary();
 *
 * Contracts that hold for every function
 *
 * - Result. ZQ_OK (1), or a negative error number of ZQErrors.h. No exception leaves the library. A function
 *   that fails leaves the device list and the caller's outputs as they were, but for ZQDEV_LoadDeviceConfig,
 *   which empties the list before it reads.
 * - Order. ZQDEV_InitLibrary first; until it has succeeded every other function returns ZQ_ERR_NOT_INITIALISED
 *   (-190006), apart from ZQDEV_DeInitLibrary and the two reserved functions, which work in any state.
 * - Null. A text or record that must be given and is absent: ZQ_ERR_NULL_INPUT (-100004). An output that is
 *   absent: ZQ_ERR_NULL_OUTPUT (-100005). Both are checked after the initialised state.
 * - Text. Single-byte characters, ended by a NUL, passed through as they are; at most 64 characters in a record.
 *   A record with a field that has no NUL in its 65 bytes is refused with ZQ_ERR_TEXT_TOO_LONG (-100014).
 * - Ownership. Everything is copied, in both directions: the library keeps no pointer of the caller's and hands
 *   out none of its own.
 * - Threads. Thread-safe: any function, from any thread, at any time. The functions wait for each other, but for
 *   the scans, which take up to 30 s and hold nothing up until they install their result. ZQDEV_RescanDevice and
 *   ZQDEV_ChangeDeviceNetAddr do hold the others up while they talk to the device.
 * - Disk. Only ZQDEV_SaveDeviceConfig writes the device list. A scan replaces the list in memory alone.
 * - Other errors. Whatever a function finds wrong below it (a file, a module, a network) comes back with that
 *   error's own number; the numbers named at a function are the ones that it is responsible for.
 */
#ifndef ZQAPI_ZQDEVICEAPI_H
#define ZQAPI_ZQDEVICEAPI_H

#include <stddef.h>

#include "ZQErrors.h"

/* How the functions are declared: imported from the library. An application that resolves them itself (with
 * dlsym or GetProcAddress) defines ZQDEV_API empty. */
#ifndef ZQDEV_API
#if defined(_WIN32) && !defined(ZQDEV_BUILDING_LIBRARY)
#define ZQDEV_API __declspec(dllimport)
#elif defined(__GNUC__) && !defined(_WIN32)
#define ZQDEV_API __attribute__((visibility("default")))
#else
#define ZQDEV_API
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Size of a record's field in bytes: 64 characters and the terminating NUL. */
#define ZQDEV_FIELD_SIZE 65

#pragma pack(push, 1)

/* One camera device: eleven texts, 715 bytes, no padding. */
typedef struct ZQDEVICEINFO {
    char Name[ZQDEV_FIELD_SIZE];             /* name in the list, "Camera1" ..., given by the library */
    char DeviceDesc[ZQDEV_FIELD_SIZE];       /* description for people */
    char DeviceTypeByName[ZQDEV_FIELD_SIZE]; /* device type; selects the camera configuration file */
    char DeviceID[ZQDEV_FIELD_SIZE];         /* identity: the key of find, modify and remove; case counts */
    char UsedScanner[ZQDEV_FIELD_SIZE];      /* the ZQDEV_SCANNER_NAME_* that found the device */
    char UsedAddress[ZQDEV_FIELD_SIZE];      /* the address under which that scanner reached it */
    char CCM[ZQDEV_FIELD_SIZE];              /* camera control module: carries commands (ZQDEV_CCM_*) */
    char CCMAddress[ZQDEV_FIELD_SIZE];       /* the device's address for that module */
    char IAM[ZQDEV_FIELD_SIZE];              /* image acquisition module: brings images (ZQDEV_IAM_*) */
    char IAMAddress[ZQDEV_FIELD_SIZE];       /* the device's address for that module */
    char FirmwareVersion[ZQDEV_FIELD_SIZE];  /* firmware version text */
} ZQDEVICEINFO;

#pragma pack(pop)

/* The record's layout is the interface format: a compiler that lays it out otherwise stops here. */
#define ZQDEV_OFFSET_(number) ((size_t)(number) * (size_t)ZQDEV_FIELD_SIZE)
#define ZQDEV_CHECK_OFFSET_(field, number) \
    typedef char ZQDEV_Check_##field[(offsetof(ZQDEVICEINFO, field) == ZQDEV_OFFSET_(number)) ? 1 : -1]
typedef char ZQDEV_CheckSize[(sizeof(ZQDEVICEINFO) == 715) ? 1 : -1];
typedef char ZQDEV_CheckInt[(sizeof(int) == 4) ? 1 : -1];
ZQDEV_CHECK_OFFSET_(Name, 0);
ZQDEV_CHECK_OFFSET_(DeviceDesc, 1);
ZQDEV_CHECK_OFFSET_(DeviceTypeByName, 2);
ZQDEV_CHECK_OFFSET_(DeviceID, 3);
ZQDEV_CHECK_OFFSET_(UsedScanner, 4);
ZQDEV_CHECK_OFFSET_(UsedAddress, 5);
ZQDEV_CHECK_OFFSET_(CCM, 6);
ZQDEV_CHECK_OFFSET_(CCMAddress, 7);
ZQDEV_CHECK_OFFSET_(IAM, 8);
ZQDEV_CHECK_OFFSET_(IAMAddress, 9);
ZQDEV_CHECK_OFFSET_(FirmwareVersion, 10);
#undef ZQDEV_CHECK_OFFSET_
#undef ZQDEV_OFFSET_

/* Every scanner: X(name, number, name in C++, camera control module and image acquisition module of its cameras).
 * An empty module is chosen by the camera's type. The numbers are the interface's: a new scanner is a row at the end,
 * and its name below. Scanning with MANUAL, which stands for devices entered by hand, finds nothing.
 */
#define ZQDEV_SCANNER_TABLE(X)                                                       \
    X(MANUAL, 0, kManual, "", "")                                                    \
    X(ZQ_UDP, 1, kZqUdp, ZQDEV_CCM_ZQ_TCPIP, "")                                     \
    X(ZQ_RS232, 2, kZqRs232, ZQDEV_CCM_ZQ_RS232, "")                                 \
    X(ZQ_IMAQ_RS232, 3, kZqImaqRs232, ZQDEV_CCM_ZQ_IMAQ_RS232, ZQDEV_IAM_ZQ_FG_IMAQ) \
    X(SISO_USB2, 4, kSisoUsb2, ZQDEV_CCM_SI_USB2, ZQDEV_IAM_SI_USB2)                 \
    X(PLEORA_IPORT, 5, kPleoraIport, ZQDEV_CCM_PLEORA_IPORT, ZQDEV_IAM_PLEORA_IPORT) \
    X(BO_FX, 6, kBoFx, ZQDEV_CCM_FX_IEEE1394, ZQDEV_IAM_FX_IEEE1394)                 \
    X(PGR_FLY, 7, kPgrFly, ZQDEV_CCM_PGR_FLY, ZQDEV_IAM_PGR_FLY)                     \
    X(TAVI, 8, kTavi, ZQDEV_CCM_TAVI, ZQDEV_IAM_TAVI)                                \
    X(IDS_UEYE, 9, kIdsUeye, ZQDEV_CCM_IDS_UEYE, ZQDEV_IAM_IDS_UEYE)                 \
    X(ZQ_GIGE, 10, kZqGige, ZQDEV_CCM_ZQ_GIGE, ZQDEV_IAM_ZQ_GIGE)                    \
    X(ZQ_IC, 11, kZqIc, ZQDEV_CCM_ZQ_IC, ZQDEV_IAM_ZQ_IC)                            \
    X(ADIMEC_CL, 12, kAdimecCl, ZQDEV_CCM_ADIMEC_CL, ZQDEV_IAM_ADIMEC_CL)            \
    X(MV, 13, kMv, ZQDEV_CCM_MV, ZQDEV_IAM_MV)

/* Scanner numbers, as ZQDEV_ScanForDevicesWithScanner takes them: ZQDEV_SCANNER_MANUAL, ZQDEV_SCANNER_ZQ_UDP, ... */
#define ZQDEV_SCANNER_NUMBER_(name, number, cppName, ccm, iam) ZQDEV_SCANNER_##name = (number),
enum ZQDEV_SCANNER_NUMBER { ZQDEV_SCANNER_TABLE(ZQDEV_SCANNER_NUMBER_) ZQDEV_NOF_SCANNERS };
#undef ZQDEV_SCANNER_NUMBER_

/* Scanner names, as they stand in a record's UsedScanner and in ZQAPI.ini. */
#define ZQDEV_SCANNER_NAME_MANUAL "SCANNER_MANUAL"
#define ZQDEV_SCANNER_NAME_ZQ_UDP "SCANNER_ZQ_UDP"
#define ZQDEV_SCANNER_NAME_ZQ_RS232 "SCANNER_ZQ_RS232"
#define ZQDEV_SCANNER_NAME_ZQ_IMAQ_RS232 "SCANNER_ZQ_IMAQ_RS232"
#define ZQDEV_SCANNER_NAME_SISO_USB2 "SCANNER_SISO_USB2"
#define ZQDEV_SCANNER_NAME_PLEORA_IPORT "SCANNER_PLEORA_IPORT"
#define ZQDEV_SCANNER_NAME_BO_FX "SCANNER_BO_FX"
#define ZQDEV_SCANNER_NAME_PGR_FLY "SCANNER_PGR_FLY"
#define ZQDEV_SCANNER_NAME_TAVI "SCANNER_TAVI"
#define ZQDEV_SCANNER_NAME_IDS_UEYE "SCANNER_IDS_UEYE"
#define ZQDEV_SCANNER_NAME_ZQ_GIGE "SCANNER_ZQ_GIGE"
#define ZQDEV_SCANNER_NAME_ZQ_IC "SCANNER_ZQ_IC"
#define ZQDEV_SCANNER_NAME_ADIMEC_CL "SCANNER_ADIMEC_CL"
#define ZQDEV_SCANNER_NAME_MV "SCANNER_MV"

/* Camera control modules, as they stand in a record's CCM. */
#define ZQDEV_CCM_ADIMEC_CL "CCM_ADIMEC_CL"
#define ZQDEV_CCM_FX_IEEE1394 "CCM_FX_IEEE1394"
#define ZQDEV_CCM_IDS_UEYE "CCM_IDS_UEYE"
#define ZQDEV_CCM_MV "CCM_MV"
#define ZQDEV_CCM_PGR_FLY "CCM_PGR_FLY"
#define ZQDEV_CCM_PLEORA_IPORT "CCM_PLEORA_IPORT"
#define ZQDEV_CCM_SI_USB2 "CCM_SI_USB2"
#define ZQDEV_CCM_TAVI "CCM_TAVI"
#define ZQDEV_CCM_ZQ_GIGE "CCM_ZQ_GIGE"
#define ZQDEV_CCM_ZQ_IC "CCM_ZQ_IC"
#define ZQDEV_CCM_ZQ_IMAQ_RS232 "CCM_ZQ_IMAQ_RS232"
#define ZQDEV_CCM_ZQ_RS232 "CCM_ZQ_RS232"
#define ZQDEV_CCM_ZQ_TCPIP "CCM_ZQ_TCPIP"
#define ZQDEV_CCM_ZQ_UDP "CCM_ZQ_UDP"
#define ZQDEV_CCM_ZQ_VIRTUAL "CCM_ZQ_VIRTUAL"

/* Image acquisition modules, as they stand in a record's IAM. */
#define ZQDEV_IAM_ADIMEC_CL "IAM_ADIMEC_CL"
#define ZQDEV_IAM_CUSTOM_FG "IAM_CUSTOM_FG"
#define ZQDEV_IAM_FX_IEEE1394 "IAM_FX_IEEE1394"
#define ZQDEV_IAM_IDS_UEYE "IAM_IDS_UEYE"
#define ZQDEV_IAM_MV "IAM_MV"
#define ZQDEV_IAM_PGR_FLY "IAM_PGR_FLY"
#define ZQDEV_IAM_PLEORA_IPORT "IAM_PLEORA_IPORT"
#define ZQDEV_IAM_SI_USB2 "IAM_SI_USB2"
#define ZQDEV_IAM_TAVI "IAM_TAVI"
#define ZQDEV_IAM_ZQ_FG_IMAQ "IAM_ZQ_FG_IMAQ"
#define ZQDEV_IAM_ZQ_GIGE "IAM_ZQ_GIGE"
#define ZQDEV_IAM_ZQ_IC "IAM_ZQ_IC"
#define ZQDEV_IAM_ZQ_TCPIP "IAM_ZQ_TCPIP"
#define ZQDEV_IAM_ZQ_UDP "IAM_ZQ_UDP"
#define ZQDEV_IAM_ZQ_VIRTUAL "IAM_ZQ_VIRTUAL"

/* ---- lifecycle ------------------------------------------------------------------------------- */

/* Initialises the library; counted. The first call reads the device list file into the list; if that fails,
 * its number is returned, nothing is counted, and the next call tries again. A file that was saved from an
 * empty list can't be read back (ZQ_ERR_INI_KEY_MISSING): an installation always keeps at least one device.
 */
ZQDEV_API int ZQDEV_InitLibrary(void);

/* Counts down, once for each successful ZQDEV_InitLibrary; a surplus call is harmless. Saves nothing. Always
 * ZQ_OK. */
ZQDEV_API int ZQDEV_DeInitLibrary(void);

/* ---- device list ----------------------------------------------------------------------------- */

/* Number of devices in the list. */
ZQDEV_API int ZQDEV_GetNofDevices(unsigned int* count);

/* Copies the device at the index, counted from 0. Past the end: ZQ_ERR_BAD_INDEX. */
ZQDEV_API int ZQDEV_GetDevice(unsigned int index, ZQDEVICEINFO* device);

/* Appends the device under a new name, "Camera" and its place in the list; its Name is ignored. Identifiers
 * are not checked for duplicates. A field with a control character: ZQ_ERR_BAD_VALUE. */
ZQDEV_API int ZQDEV_AddDevice(ZQDEVICEINFO device);

/* Removes the first device with this identifier; none: still ZQ_OK. The others keep their names. */
ZQDEV_API int ZQDEV_RemoveDevice(const char* deviceId);

/* Replaces the first device that has the record's DeviceID, its Name included. None has it: ZQ_ERR_BAD_INDEX.
 * A control character in a field, or a Name that the device list file could not give back (empty, over 63
 * characters, with ';' or ']' or a blank at an end): ZQ_ERR_BAD_VALUE. */
ZQDEV_API int ZQDEV_ModifyDevice(ZQDEVICEINFO device);

/* Writes the list to the device list file. The file is replaced whole or not at all, also when the machine
 * stops in between. A device with an empty field, or an empty list, is written but can't be read back. */
ZQDEV_API int ZQDEV_SaveDeviceConfig(void);

/* Replaces the list by the device list file's content. If that fails, the list is empty. */
ZQDEV_API int ZQDEV_LoadDeviceConfig(void);

/* ---- modules of a device type ---------------------------------------------------------------- */

/* The modules come from the device type's camera configuration file. In all four text queries bufferSize is
 * the size of the buffer in bytes LESS ONE: a text of exactly bufferSize characters is accepted, and its NUL
 * is put behind it. A longer text: ZQ_ERR_TEXT_TOO_LONG. A device type that can be no file name:
 * ZQ_ERR_BAD_VALUE. */

ZQDEV_API int ZQDEV_GetDefaultCCM(const char* deviceType, char* buffer, unsigned int bufferSize);
ZQDEV_API int ZQDEV_GetDefaultIAM(const char* deviceType, char* buffer, unsigned int bufferSize);

/* Number of modules, and the name of the one at the index, counted from 0. Past the end: ZQ_ERR_BAD_INDEX. */
ZQDEV_API int ZQDEV_GetNofSupportedCCMs(const char* deviceType, unsigned int* count);
ZQDEV_API int ZQDEV_GetSupportedCCM(const char* deviceType, unsigned int index, char* buffer,
                                    unsigned int bufferSize);
ZQDEV_API int ZQDEV_GetNofSupportedIAMs(const char* deviceType, unsigned int* count);
ZQDEV_API int ZQDEV_GetSupportedIAM(const char* deviceType, unsigned int index, char* buffer,
                                    unsigned int bufferSize);

/* Reserved: return ZQ_OK in any state and write nothing. */
ZQDEV_API int ZQDEV_GetNofSupportedDeviceTypes(unsigned int* count);
ZQDEV_API int ZQDEV_GetSupportedDevice(unsigned int index, char* buffer, unsigned int bufferSize);

/* ---- scanning -------------------------------------------------------------------------------- */

/* Scans with the scanners that ZQAPI.ini names as active, all at once, for at most 30000 ms, and replaces the
 * list by what they found: each identifier once, named Camera1, Camera2 and so on. Devices that were added by
 * hand are gone from the list in memory afterwards. A scanner's failure does not fail the scan. No active
 * scanner configured: ZQ_ERR_INI_KEY_MISSING; an unknown one: ZQ_ERR_BAD_VALUE; the list is then as it was.
 */
ZQDEV_API int ZQDEV_ScanForDevices(void);

/* The same with one scanner (ZQDEV_SCANNER_NUMBER). A number that is no scanner's: ZQ_ERR_NULL_INPUT. */
ZQDEV_API int ZQDEV_ScanForDevicesWithScanner(int scanner);

/* Asks the device's scanner (UsedScanner) for the device anew and refreshes addresses and firmware version in
 * the caller's record; the list is not changed. Not found any more: ZQ_ERR_DEVICE_NOT_FOUND.
 *
 * For a network camera it ends as soon as the camera has said who it is; one that is gone costs the scanner's
 * whole listening time, and never more than 30 s. Of two cameras with one identifier the one that answers
 * first counts. */
ZQDEV_API int ZQDEV_RescanDevice(ZQDEVICEINFO* device);

/* Gives a network camera a new IPv4 address (dotted decimal; the subnet mask is that of its address class)
 * and waits for it there; at least 2 s. The list is not changed. No usable host address:
 * ZQ_ERR_BAD_NEW_ADDRESS, and nothing has been sent.
 *
 * A network camera is commanded at the record's CCMAddress, whoever answers there now. To be sure whom that is, either
 * ask with ZQDEV_RescanDevice first, or give the address as "IP:HWADDR@LOCAL" (10.0.0.7:00A1B2C3D4E5@192.168.1.1): the
 * command then goes out through the network card with the last address, and only the camera with that hardware address
 * obeys it. ZQ_OK says that the commands were answered, not that the camera has moved: one that refuses, or that never
 * appears at the new address, gives it as well. A camera may also have moved when its answer did not come in time
 * (ZQ_ERR_COM_TIMEOUT). Look for it afterwards. */
ZQDEV_API int ZQDEV_ChangeDeviceNetAddr(ZQDEVICEINFO device, const char* newAddress);

#ifdef __cplusplus
}
#endif

#endif
