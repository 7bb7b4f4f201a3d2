#pragma once

#include <memory>

#include "foundation/ZQString.h"
#include "platform/Files.h"

namespace ZQAPI {

class CZQIniDocument;

// An INI file on disk as the system's private-profile functions see it: every read gives what is in the file
// now, every write is in the file when the call returns. It is parsed once and again only when it changed.
// Between BeginSnapshot and EndSnapshot it is one state in memory instead, written by Commit alone. What Hold was
// given stands for the file until something is written. Bound to one thread.
class CZQProfileFile {
public:
    explicit CZQProfileFile(CZQString path);
    CZQProfileFile(const CZQProfileFile&) = delete;
    CZQProfileFile& operator=(const CZQProfileFile&) = delete;
    ~CZQProfileFile();

    // This text was read from the file already: reads don't look at the disk any more.
    void Hold(std::string content);

    // See CZQIniDocument::GetProfileString. A file that can't be read counts as empty; `error` says
    // why, else 0.
    std::size_t Get(const char* section, const char* key, const char* defaultValue, char* buffer,
                    std::size_t size, platform::SystemErrorCode& error);

    // See CZQIniDocument::GetWholeValue.
    std::string GetWhole(const char* section, const char* key, platform::SystemErrorCode& error);

    // See CZQIniDocument::GetNames.
    std::string GetNames(const char* section, platform::SystemErrorCode& error);

    // See CZQIniDocument::SetProfileString. Creates the file if there is none. A file that has the value
    // already is left alone. False with `error`: nothing was changed.
    bool Set(const char* section, const char* key, const char* value, platform::SystemErrorCode& error);

    // Whether the last read found no file there; whatever else kept it from reading is a fault.
    bool IsMissing() const noexcept { return m_isMissing; }

    void BeginSnapshot();
    // Of this text instead of the file's.
    void BeginSnapshot(std::string content);
    std::string SnapshotText() const;
    // Writes what was set since BeginSnapshot, if that changed anything.
    bool Commit(platform::SystemErrorCode& error);
    // Drops what was set and not committed.
    void EndSnapshot() noexcept;

private:
    bool Refresh(platform::SystemErrorCode& error);
    bool Load(platform::SystemErrorCode& error);
    bool Write(platform::SystemErrorCode& error);

    CZQString m_path;
    std::unique_ptr<CZQIniDocument> m_document;  // none: to be read
    platform::FileStamp m_stamp;                 // the file's when it was read
    bool m_isStampTrusted = false;
    bool m_isMissing = false;
    bool m_isHeld = false;  // what Hold was given is the document
    bool m_isSnapshot = false;
    bool m_isModified = false;  // the snapshot differs from the file
    platform::SystemErrorCode m_snapshotError = 0;
};

}  // namespace ZQAPI
