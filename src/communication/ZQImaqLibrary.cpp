#include "communication/ZQImaqLibrary.h"

#include <algorithm>
#include <array>

namespace ZQAPI {

namespace {

using Status = CZQImaqLibrary::Status;

constexpr std::uint32_t kMaxInterfaces = 64;
// Names and error texts have no published limit; callers have always given this much.
constexpr std::size_t kTextSize = 512;
constexpr std::uint32_t kFreeResources = 1;

constexpr auto kSerialReadTimeout = static_cast<Status>(0xBFF60093);
constexpr auto kSerialTimeoutOfOldLibraries = static_cast<Status>(0xBFF6003F);

using Text = std::array<char, kTextSize>;

CZQString UntilNul(const Text& text) {
    return std::string(text.begin(), std::find(text.begin(), text.end(), '\0'));
}

}  // namespace

CZQImaqLibrary::CZQImaqLibrary(const CZQString& kitFolder) {
    if (kitFolder.IsEmpty()) {
        OpenLibrary(kFile);
        return;
    }
    try {
        OpenLibrary(kitFolder + kFile);
    } catch (const CZQException& kits) {
        if (kits.GetErrorNumber() != ZQ_ERR_LIBRARY_NOT_LOADED) {
            throw;
        }
        OpenSystems(kits);
    }
}

void CZQImaqLibrary::OpenSystems(const CZQException& afterKits) {
    try {
        OpenLibrary(kFile);
    } catch (CZQException& failure) {
        failure.SetInnerException(afterKits);
        throw;
    }
}

CZQStringArray CZQImaqLibrary::QueryInterfaceNames() const {
    CZQStringArray names;
    Text name{};
    // Any error is the end of the list.
    for (std::uint32_t index = 0; index < kMaxInterfaces && m_queryNames(index, name.data()) == 0; ++index) {
        names.Add(UntilNul(name));
        name.fill('\0');
    }
    return names;
}

Status CZQImaqLibrary::OpenInterface(const CZQString& name, Id& interfaceId) const {
    return m_openInterface(name.c_str(), &interfaceId);
}

Status CZQImaqLibrary::OpenSession(Id interfaceId, Id& sessionId) const {
    return m_openSession(interfaceId, &sessionId);
}

Status CZQImaqLibrary::CloseId(Id id) const {
    return m_close(id, kFreeResources);
}

Status CZQImaqLibrary::Write(Id sessionId, std::span<const char> data, std::uint32_t& size,
                             std::uint32_t timeoutMs) const {
    std::string copy(data.begin(), data.end());  // the library asks for a buffer that it may write to
    size = static_cast<std::uint32_t>(data.size());
    return m_write(sessionId, copy.data(), &size, timeoutMs);
}

Status CZQImaqLibrary::ReadByte(Id sessionId, char& byte, std::uint32_t timeoutMs) const {
    std::uint32_t size = 1;
    return m_readBytes(sessionId, &byte, &size, timeoutMs);
}

Status CZQImaqLibrary::Flush(Id sessionId) const {
    return m_flush(sessionId);
}

CZQString CZQImaqLibrary::FormatStatus(Status status) const {
    Text text{};
    m_showError(status, text.data());
    return CZQString::Formatted("ImaqError (0x%08X): %s", static_cast<std::uint32_t>(status),
                                UntilNul(text).c_str());
}

bool CZQImaqLibrary::IsReadTimeout(Status status) noexcept {
    return status == kSerialReadTimeout || status == kSerialTimeoutOfOldLibraries;
}

}  // namespace ZQAPI
