/* The public header in plain C89: it compiles, and the layout it promises is this compiler's. */
#include <ZQAPI/ZQDeviceAPI.h>

#include <string.h>

int RecordSizeInC(void);
int RecordSizeInC(void) {
    ZQDEVICEINFO record;
    memset(&record, 0, sizeof record);
    return (int)sizeof record;
}
