#pragma once

#include "foundation/Io/ZQConfigFile.h"

namespace ZQAPI {

// A device type's camera configuration file: which modules carry its commands and bring its images. Verified
// when it is opened. Every query fails with ZQ_ERR_INI_KEY_MISSING when its list is missing or empty.
class CZQCamConfigFile : public CZQConfigFile {
public:
    explicit CZQCamConfigFile(const CZQString& path);

    // In the file's order; the first is the default.
    CZQStringArray GetSupportedCCMs();
    CZQString GetDefaultCCM();
    CZQStringArray GetSupportedIAMs();
    CZQString GetDefaultIAM();
    bool IsSupportedIAM(const CZQString& iam);

    // The address that goes with a module when no scanner supplied one; "?" when there is no such address.
    static CZQString GetDefaultAddress(const CZQString& module);

private:
    CZQStringArray ReadModules(const CZQString& key);
};

}  // namespace ZQAPI
