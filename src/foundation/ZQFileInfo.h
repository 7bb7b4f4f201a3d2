#pragma once

#include "foundation/ZQRoot.h"

namespace ZQAPI {

// The four parts of a path: drive ("c:"), folder with its last separator, name, extension with its dot.
class CZQFileInfo : public CZQRoot {
public:
    explicit CZQFileInfo(const CZQString& path);

    const CZQString& GetDrive() const noexcept { return m_drive; }
    const CZQString& GetDir() const noexcept { return m_dir; }
    const CZQString& GetName() const noexcept { return m_name; }
    const CZQString& GetExtension() const noexcept { return m_extension; }

    // The path again.
    CZQString ToString() const override { return m_drive + m_dir + m_name + m_extension; }

private:
    CZQString m_drive;
    CZQString m_dir;
    CZQString m_name;
    CZQString m_extension;
};

}  // namespace ZQAPI
