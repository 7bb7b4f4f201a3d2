/* The public headers in plain C89: they compile, and the layout they promise is this compiler's. */
#include <ZQAPI/ZQDeviceAPI.h>
#include <ZQAPI/ZQErrorText.h>

#include <string.h>

int RecordSizeInC(void);
int RecordSizeInC(void) {
    ZQDEVICEINFO record;
    memset(&record, 0, sizeof record);
    return (int)sizeof record;
}

int AreErrorsToldInC(void);
int AreErrorsToldInC(void) {
    return strcmp(ZQ_ErrorName(-190006), "ZQ_ERR_NOT_INITIALISED") == 0 &&
           strcmp(ZQ_ErrorName(ZQ_OK), "ZQ_OK") == 0 &&
           strcmp(ZQ_ErrorText(ZQ_ERR_NOT_INITIALISED), "the library is not initialised") == 0 &&
           strcmp(ZQ_ErrorName(0), "unknown") == 0;
}
