/* The wrapper libraries' headers compile in plain C89, as a library's author may need them. */
#include <ZQAPI/vendors/ZQFx.h>
#include <ZQAPI/vendors/ZQGigE.h>
#include <ZQAPI/vendors/ZQImagingSource.h>
#include <ZQAPI/vendors/ZQPleora.h>
#include <ZQAPI/vendors/ZQTavi.h>
#include <ZQAPI/vendors/ZQUsb2.h>
