/* The error numbers of the kit: one table, each number with its name and the condition it stands for.
 *
 * Plain C89 and C++. Every function of the library returns ZQ_OK (1) or one of these numbers, all of them
 * negative; command modules and other libraries of the kit take theirs from the same groups:
 *
 *   -100xxx general                          -210xxx streams
 *   -130xxx libraries loaded at run time     -220xxx sealed configuration files
 *   -190xxx the device interface             -300xxx to -330xxx communication channels
 *   -200xxx files, registry, system          -500xxx to -521xxx scanners and vendors' libraries
 */
#ifndef ZQAPI_ZQERRORS_H
#define ZQAPI_ZQERRORS_H

/* X(name, number, "condition") for every error number, in falling order of the number. */
#define ZQ_ERROR_TABLE(X)                                                                                \
    X(ZQ_ERR_UNEXPECTED, -100001, "unexpected failure inside the library")                               \
    X(ZQ_ERR_NOT_SUPPORTED, -100002, "this operation is not supported here")                             \
    X(ZQ_ERR_BAD_CAST, -100003, "a configuration of another channel kind was given")                     \
    X(ZQ_ERR_NULL_INPUT, -100004,                                                                        \
      "a text or input that must be given is absent (null), or no scanner has this number")              \
    X(ZQ_ERR_NULL_OUTPUT, -100005, "an output that must be given is absent (null)")                      \
    X(ZQ_ERR_BAD_VALUE, -100006, "a value is not one that is allowed here")                              \
    X(ZQ_ERR_OUT_OF_MEMORY, -100007, "memory could not be allocated")                                    \
    X(ZQ_ERR_BAD_INDEX, -100008, "the index is past the end, or no device has this identifier")          \
    X(ZQ_ERR_WAIT_FAILED, -100011, "a wait failed or its time limit passed")                             \
    X(ZQ_ERR_TEXT_TOO_LONG, -100014, "a text is longer than the room for it, or has no terminating NUL") \
    X(ZQ_ERR_BUFFER_TOO_SMALL, -100017, "more data arrived than the buffer holds")                       \
    X(ZQ_ERR_LIBRARY_NOT_LOADED, -130000, "a library could not be loaded")                               \
    X(ZQ_ERR_ENTRY_POINT_MISSING, -130001, "a library lacks an entry point")                             \
    X(ZQ_ERR_MODULE_NOT_OPEN, -130002, "no command module is loaded")                                    \
    X(ZQ_ERR_NOT_INITIALISED, -190006, "the library is not initialised")                                 \
    X(ZQ_ERR_FILE_DELETE, -200002, "a file could not be deleted")                                        \
    X(ZQ_ERR_FILE_MOVE, -200004, "a file could not be moved")                                            \
    X(ZQ_ERR_FILE_ATTRIBUTES, -200006, "a file's attributes could not be set")                           \
    X(ZQ_ERR_INI_WRITE, -200012, "a key could not be written to an INI file")                            \
    X(ZQ_ERR_INI_KEY_MISSING, -200013, "a key is missing from an INI file, or its value is empty")       \
    X(ZQ_ERR_INI_VALUE_TOO_LONG, -200014, "a value in an INI file has 4095 or more characters")          \
    X(ZQ_ERR_INI_DEFAULT_WRITE, -200015, "a key's default could not be written back to an INI file")     \
    X(ZQ_ERR_INI_BAD_BOOL, -200016, "a value in an INI file is neither true, false, 1 nor 0")            \
    X(ZQ_ERR_SPECIAL_FOLDER, -200022, "a special folder of the system is not available")                 \
    X(ZQ_ERR_REGISTRY_OPEN, -200030, "a registry key cannot be opened")                                  \
    X(ZQ_ERR_REGISTRY_QUERY, -200031, "a registry value cannot be queried")                              \
    X(ZQ_ERR_REGISTRY_TYPE, -200032, "a registry value has another type than asked for")                 \
    X(ZQ_ERR_REGISTRY_READ, -200033, "a registry value could not be read")                               \
    X(ZQ_ERR_STREAM_OPEN, -210001, "a file could not be opened")                                         \
    X(ZQ_ERR_STREAM_CLOSED, -210002, "the stream is not open")                                           \
    X(ZQ_ERR_STREAM_POSITION, -210003, "a file's position could not be queried")                         \
    X(ZQ_ERR_STREAM_SEEK, -210004, "a file could not be positioned")                                     \
    X(ZQ_ERR_STREAM_LENGTH, -210005, "a file's length could not be queried")                             \
    X(ZQ_ERR_STREAM_NOT_READABLE, -210006, "the stream was not opened for reading")                      \
    X(ZQ_ERR_STREAM_NOT_WRITABLE, -210007, "the stream was not opened for writing")                      \
    X(ZQ_ERR_STREAM_END, -210008, "the end of the file came before the request was met")                 \
    X(ZQ_ERR_STREAM_READ, -210009, "a file could not be read")                                           \
    X(ZQ_ERR_STREAM_WRITE, -210010, "a file could not be written")                                       \
    X(ZQ_ERR_STREAM_FLUSH, -210011, "a file could not be flushed")                                       \
    X(ZQ_ERR_SEAL_COMPUTE, -220001, "a file could not be read to compute its checksum")                  \
    X(ZQ_ERR_SEAL_READ, -220002, "a file's checksum line could not be read")                             \
    X(ZQ_ERR_SEAL_MISSING, -220003, "a file has no checksum line")                                       \
    X(ZQ_ERR_SEAL_MISMATCH, -220004, "a file's checksum does not fit its content")                       \
    X(ZQ_ERR_COM_SEND, -300000, "data could not be sent")                                                \
    X(ZQ_ERR_COM_RECV, -300001, "data could not be received")                                            \
    X(ZQ_ERR_COM_TIMEOUT, -300002, "no answer came within the time limit")                               \
    X(ZQ_ERR_COM_ABORTED, -300003, "receiving was aborted")                                              \
    X(ZQ_ERR_COM_CONFIG_LOAD, -300004, "a channel's configuration could not be read")                    \
    X(ZQ_ERR_COM_CONFIG_SAVE, -300005, "a channel's configuration could not be written")                 \
    X(ZQ_ERR_ADDRESS_TO_TEXT, -300101, "an IP address could not be turned into text")                    \
    X(ZQ_ERR_HOST_LOOKUP, -300102, "a host is not a dotted IPv4 address")                                \
    X(ZQ_ERR_BAD_NEW_ADDRESS, -300104, "the new address is not a usable IPv4 host address")              \
    X(ZQ_ERR_SOCKETS_START, -300110, "the socket library or the echo service could not be started")      \
    X(ZQ_ERR_SOCKETS_VERSION, -300111, "the socket library is of the wrong version")                     \
    X(ZQ_ERR_RS232_MODE_TEXT, -310000, "a serial port's mode text is not understood")                    \
    X(ZQ_ERR_RS232_OPEN, -310003, "a serial port could not be opened")                                   \
    X(ZQ_ERR_RS232_QUEUES, -310004, "a serial port's queue sizes were refused")                          \
    X(ZQ_ERR_RS232_SETTINGS, -310005, "a serial port's line settings were refused")                      \
    X(ZQ_ERR_RS232_READ_SETTINGS, -310006, "a serial port's line settings could not be read")            \
    X(ZQ_ERR_SERIAL_CLOSED, -310007, "using a serial port that is not open")                             \
    X(ZQ_ERR_RS232_FLUSH, -310009, "a serial port's queues could not be emptied")                        \
    X(ZQ_ERR_RS232_TIMEOUTS, -310010, "a serial port's time limits were refused")                        \
    X(ZQ_ERR_UDP_SEND_CLOSED, -320004, "sending on a UDP channel that is not open")                      \
    X(ZQ_ERR_SOCKET_CREATE, -330002, "a socket could not be created or bound")                           \
    X(ZQ_ERR_SOCKET_OPTION, -330003, "a socket option could not be set, or the interfaces not listed")   \
    X(ZQ_ERR_UDP_RECV_CLOSED, -330004, "receiving on a UDP channel that is not open")                    \
    X(ZQ_ERR_UNKNOWN_MODEL, -500000, "a camera's model is not one of the known ones")                    \
    X(ZQ_ERR_DEVICE_NOT_FOUND, -500003, "the device's scanner does not find it any more")                \
    X(ZQ_ERR_CONNECTION_NOT_OPEN, -510006, "no connection is open, or a library gave none")              \
    X(ZQ_ERR_VENDOR_LIBRARY, -521000, "a camera vendor's library failed")

#define ZQ_OK 1

/* The numbers as constants: ZQ_ERR_NOT_INITIALISED and so on. */
enum ZQ_ERROR_NUMBER {
#define ZQ_ERROR_ENUMERATOR(name, number, condition) name = (number),
    ZQ_ERROR_TABLE(ZQ_ERROR_ENUMERATOR)
#undef ZQ_ERROR_ENUMERATOR
        ZQ_ERROR_NUMBER_END = 0
};

#endif
