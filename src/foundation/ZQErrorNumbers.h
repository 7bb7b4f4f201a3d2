// The error numbers (ZQ_ERR_...), one table for the whole kit.
#pragma once

#include <ZQAPI/ZQErrors.h>
