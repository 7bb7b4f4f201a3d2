#include "foundation/Io/ZQProfileFile.h"

#include "foundation/Io/ZQIniDocument.h"

namespace ZQAPI {

namespace {

// What the private-profile functions say to a missing section name; the same number on every system.
constexpr platform::SystemErrorCode kNoSuchFile = 2;

}  // namespace

CZQProfileFile::CZQProfileFile(CZQString path) : m_path(std::move(path)) {}

CZQProfileFile::~CZQProfileFile() = default;

void CZQProfileFile::Hold(std::string content) {
    m_document = std::make_unique<CZQIniDocument>(std::move(content));
    m_isMissing = false;
    m_isHeld = true;
}

std::size_t CZQProfileFile::Get(const char* section, const char* key, const char* defaultValue, char* buffer,
                                std::size_t size, platform::SystemErrorCode& error) {
    Refresh(error);
    return m_document->GetProfileString(section, key, defaultValue, buffer, size);
}

std::string CZQProfileFile::GetWhole(const char* section, const char* key, platform::SystemErrorCode& error) {
    Refresh(error);
    return m_document->GetWholeValue(section, key);
}

std::string CZQProfileFile::GetNames(const char* section, platform::SystemErrorCode& error) {
    Refresh(error);
    return m_document->GetNames(section);
}

bool CZQProfileFile::Set(const char* section, const char* key, const char* value,
                         platform::SystemErrorCode& error) {
    if (section == nullptr) {
        error = kNoSuchFile;
        return false;
    }
    m_isHeld = m_isHeld && m_isSnapshot;
    if (!Refresh(error) && !m_isMissing) {
        return false;
    }
    error = 0;
    const bool isChanged = m_document->SetProfileString(section, key, value) || m_isMissing;
    if (m_isSnapshot) {
        m_isModified = m_isModified || isChanged;
        return true;
    }
    return isChanged ? Write(error) : platform::CanWriteFile(m_path.str(), error);
}

void CZQProfileFile::BeginSnapshot() {
    Refresh(m_snapshotError);
    m_isSnapshot = true;
    m_isModified = false;
}

void CZQProfileFile::BeginSnapshot(std::string content) {
    Hold(std::move(content));
    m_snapshotError = 0;
    m_isSnapshot = true;
    m_isModified = true;
}

std::string CZQProfileFile::SnapshotText() const {
    return m_document->Bytes();
}

bool CZQProfileFile::Commit(platform::SystemErrorCode& error) {
    error = 0;
    return !m_isModified || Write(error);
}

void CZQProfileFile::EndSnapshot() noexcept {
    m_isSnapshot = false;
    if (m_isModified) {
        m_document.reset();
        m_isHeld = false;
    }
}

bool CZQProfileFile::Refresh(platform::SystemErrorCode& error) {
    if (m_isSnapshot) {
        error = m_snapshotError;
        return error == 0;
    }
    if (m_isHeld) {
        error = 0;
        return true;
    }
    return Load(error);
}

// The stamp is taken before the content, so that a write in between shows at the next call.
bool CZQProfileFile::Load(platform::SystemErrorCode& error) {
    platform::FileStamp stamp;
    std::string content;
    const bool hasStamp = platform::GetFileStamp(m_path.str(), stamp, error);
    if (hasStamp && m_document && m_isStampTrusted && stamp == m_stamp) {
        return true;
    }
    m_stamp = stamp;
    m_isStampTrusted = hasStamp && !platform::IsStampTooYoungToTrust(stamp);
    const bool isRead = hasStamp && platform::ReadWholeFile(m_path.str(), content, error);
    if (!isRead) {
        content.clear();
        m_isStampTrusted = false;
    }
    m_isMissing = !isRead && !platform::PathExists(m_path.str());
    if (!m_document || !m_document->HasBytes(content)) {
        m_document = std::make_unique<CZQIniDocument>(std::move(content));
    }
    return isRead;
}

// The stamp of what this writes is never trusted: somebody else may write before it could be taken.
bool CZQProfileFile::Write(platform::SystemErrorCode& error) {
    m_isStampTrusted = false;
    m_isHeld = false;
    if (!platform::WriteWholeFile(m_path.str(), m_document->Bytes(), error)) {
        if (!m_isSnapshot) {
            m_document.reset();
        }
        return false;
    }
    m_isMissing = false;
    m_isModified = false;
    m_snapshotError = 0;
    return true;
}

}  // namespace ZQAPI
