// What cameras and vendors' libraries say of a camera, made fit for its record: blanks at both ends come off,
// and nothing gets into a record that the device list file could not give back as itself.
#pragma once

#include "foundation/ZQException.h"

namespace ZQAPI {

// A text by which the camera is known or reached: device type, serial number, address. One that would not
// read back leaves the camera out: `errorNumber` (ZQ_ERR_VENDOR_LIBRARY for a vendor's library,
// ZQ_ERR_BAD_VALUE for a camera), thrown at `here`, "%s='%s' can't be kept" with `field`. One that is merely
// too long is left as it is, for the record to refuse.
CZQString IdentityText(CZQString text, const char* field, std::int32_t errorNumber,
                       const SSourceLocation& here);

// Texts that only tell something: what would not read back becomes "?", and "-.-". One that is merely too
// long is left as it is here, too.
CZQString DescriptionText(CZQString text);
CZQString FirmwareVersionText(CZQString text);

// For messages: cut to what a record's field holds, and what can't be shown is a dot.
CZQString ShownText(const CZQString& text);

}  // namespace ZQAPI
