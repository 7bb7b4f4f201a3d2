#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "communication/ZQComBase.h"
#include "devices/ZQScanIFBase.h"
#include "foundation/ZQStringArray.h"
#include "scanners/ZQScannerNames.h"

namespace ZQAPI {

// Finds the maker's cameras on serial lines: asks each line for its identification in turn, takes those whose
// answer names the maker, and identifies the camera through the line's command module.
class CZQSerialLineScanner : public CZQScanIFBase {
public:
    // A line that can't be opened or stays silent is passed over without a word; a camera that can't be
    // identified, or whose answer does not end, is logged with its line, handed to the error reporter
    // and left out.
    void Scan(CZQDeviceList& found) final;
    // As UpdateByScan; the IAMAddress of the scanner's own image module follows the line.
    void Update(CZQDeviceInfo& device) final;

protected:
    // The module is named by its file in the kit's module folder; `byteTimeoutMs`: how long each byte of a line's
    // answer may take.
    CZQSerialLineScanner(const SScannerNames& names, const char* commandModule, std::uint32_t byteTimeoutMs)
        : m_names(names), m_commandModule(commandModule), m_byteTimeoutMs(byteTimeoutMs) {}

    // The lines to try, as they are written in a record's addresses.
    virtual CZQStringArray ListLines() = 0;
    // The channel to a line, open. Whatever it throws passes the line over.
    virtual std::unique_ptr<CZQComBase> OpenLine(const CZQString& line) = 0;
    // Sets IAM and IAMAddress of a record whose device type is known.
    virtual void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const = 0;

private:
    bool IsCameraOn(const CZQString& line);
    std::string ReadAnswer(CZQComBase& channel) const;
    void SkipRest(CZQComBase& channel) const;
    CZQDeviceInfo Identify(const CZQString& line, std::uint32_t index) const;

    const SScannerNames m_names;
    const char* const m_commandModule;
    const std::uint32_t m_byteTimeoutMs;
};

}  // namespace ZQAPI
