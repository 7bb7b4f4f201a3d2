/* What a command module (camera control module, CCM) offers to whoever loads it.
 *
 * A command module is a library in the kit's folder CCMs that carries text commands to one kind of camera
 * connection and brings the answers back. It exports the three functions below, which are found by name at run
 * time, and nothing else: symbols of a language's run-time that are exported, too, can keep it from ever being
 * unloaded. A module includes this header to have the compiler hold it against the contract; on Windows it lists
 * the three names in a .def file, or defines ZQCCM_API as __declspec(dllexport).
 *
 * Contracts that hold for every function
 *
 * - Result. ZQ_OK (1) or another number above 0: done. Else a negative error number, best one of ZQErrors.h.
 *   No exception leaves a module. A function that fails leaves the caller's handle as it was.
 * - Text. Single-byte characters, ended by a NUL.
 * - Ownership. The module keeps no pointer of the caller's.
 * - Threads. Any function from any thread, also while another one is at work on the same connection: commands
 *   on one connection may wait for each other, and each gets its own answer. Connections are independent: a
 *   command on one does not wait for a command on another. Closing a connection does not wait for the answer
 *   to a command that is under way; see ZQCCM_CloseCCM.
 * - Time. Every call ends in bounded time.
 * - Null. A text that must be given and is absent: ZQ_ERR_NULL_INPUT. An output that is absent:
 *   ZQ_ERR_NULL_OUTPUT.
 */
#ifndef ZQAPI_ZQCOMMANDMODULE_H
#define ZQAPI_ZQCOMMANDMODULE_H

#include <stdint.h>

#include "ZQErrors.h"

#ifndef ZQCCM_API
#if defined(__GNUC__) && !defined(_WIN32)
#define ZQCCM_API __attribute__((visibility("default")))
#else
#define ZQCCM_API
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* One open connection; 0 is none. */
typedef uint64_t ZQCCM_HANDLE;

/* Opens a connection to one camera and stores its handle.
 *
 * `parameter` is a text for the module to use as it likes, often empty; it must not be null. `address` says
 * which camera, in the module's own form, for example "192.168.1.117" for a network camera. A module need not
 * talk to the camera here: that the call succeeds does not mean that there is one. */
ZQCCM_API int32_t ZQCCM_OpenCCM(const char* parameter, const char* address, ZQCCM_HANDLE* handle);

/* Closes a connection. A handle that is not open: ZQ_ERR_CONNECTION_NOT_OPEN.
 *
 * A command that another thread has under way on the connection: the kit's own modules end it at once with
 * ZQ_ERR_COM_ABORTED, and send nothing more once this function has returned. Other modules should do the same,
 * for that is how a scan gives up a silent camera in favour of others; one that lets the command finish
 * undisturbed only holds such a scan up. Either way the handle is not given out again soon: a command may be
 * on its way to it. */
ZQCCM_API int32_t ZQCCM_CloseCCM(ZQCCM_HANDLE handle);

/* Sends one command and waits for its answer.
 *
 * `command` is one line, its line feed included: "SERV:ID?\n". `answer` has room for `answerSize` bytes and
 * gets the answer as the camera gave it, line feed included, and a NUL. An answer that does not fit with its
 * NUL is not cut: ZQ_ERR_BUFFER_TOO_SMALL. No answer in time: ZQ_ERR_COM_TIMEOUT; should it come later, it is
 * never taken for that of another command. A command that is not one line: ZQ_ERR_BAD_VALUE. A handle that is
 * not open: ZQ_ERR_CONNECTION_NOT_OPEN. On failure `answer` is an empty text. */
ZQCCM_API int32_t ZQCCM_SendCmd(ZQCCM_HANDLE handle, const char* command, char* answer, uint32_t answerSize);

#ifdef __cplusplus
}

/* The types under which the functions are called once they are found by name. */
using ZQCCM_OpenCCM_Function = decltype(&ZQCCM_OpenCCM);
using ZQCCM_CloseCCM_Function = decltype(&ZQCCM_CloseCCM);
using ZQCCM_SendCmd_Function = decltype(&ZQCCM_SendCmd);
#endif

#endif
