// What is done to one serial line: asked for its identification, and the camera on it identified.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "communication/ZQComBase.h"
#include "devices/ZQDeviceInfo.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQStringArray.h"
#include "scanners/ZQScannerNames.h"

namespace ZQAPI {

// One kind of scanner over serial lines. Its functions are called by the threads that probe, each line by one of them at
// a time.
struct SSerialLineKind {
    SScannerNames names = {};
    CZQSdkPaths kit;
    const char* commandModule = "";   // by its file in the kit's module folder
    std::uint32_t byteTimeoutMs = 0;  // how long each byte of a line's answer may take
    std::size_t maxLinesAtOnce = 1;
    // The lines to try, as they are written in a record's addresses.
    std::function<CZQStringArray()> listLines;
    // The channel to a line, open. Whatever it throws passes the line over.
    std::function<std::unique_ptr<CZQComBase>(const CZQString& line)> openLine;
    // Sets IAM and IAMAddress of a record whose device type is known.
    std::function<void(CZQDeviceInfo& device, const CZQString& line)> chooseIAM;
};

// The camera on the line, the one at `index` in the list of lines; none when the line can't be opened, stays silent or
// belongs to another maker, which is worth no more than a word on the debug output. A camera that can't be identified,
// or whose answer does not end, is logged with its line and handed to the error reporter.
std::optional<CZQDeviceInfo> ProbeSerialLine(const SSerialLineKind& kind, const CZQString& line,
                                             std::uint32_t index);

}  // namespace ZQAPI
