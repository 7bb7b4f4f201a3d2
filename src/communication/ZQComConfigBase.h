#pragma once

#include <functional>

#include "foundation/ZQException.h"
#include "foundation/ZQICloneable.h"
#include "foundation/ZQRoot.h"

namespace ZQAPI {

class CZQIniFile;

// A channel's settings: a value that can be loaded from and saved to a section of an INI file, and prints
// itself as one line.
class CZQComConfigBase : public CZQRoot, public CZQICloneable<CZQComConfigBase> {
public:
    // A failure comes as the configuration's own number with "strFileName=%s; strSection=%s" and
    // the cause inside.
    virtual void LoadFromFile(const CZQString& fileName, const CZQString& section) = 0;
    virtual void SaveToFile(const CZQString& fileName, const CZQString& section) const = 0;

    // The name of the class, for messages.
    virtual const char* GetTypeName() const noexcept = 0;

protected:
    // Runs `access` on the file with the section selected, and throws `errorNumber` when that fails.
    static void WithSection(const CZQString& fileName, const CZQString& section, const SSourceLocation& here,
                            std::int32_t errorNumber, const std::function<void(CZQIniFile&)>& access);
};

// The configuration as the channel's own kind: ZQ_ERR_BAD_CAST, "Can't cast '%s' into '%s'".
template <class Config>
const Config& CastConfig(const CZQComConfigBase& config, const SSourceLocation& here) {
    const auto* const own = dynamic_cast<const Config*>(&config);
    if (own == nullptr) {
        throw CZQException(here, ZQ_ERR_BAD_CAST, "Can't cast '%s' into '%s'", config.GetTypeName(),
                           Config::kTypeName);
    }
    return *own;
}

}  // namespace ZQAPI
