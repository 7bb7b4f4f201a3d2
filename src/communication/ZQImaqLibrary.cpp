#include "communication/ZQImaqLibrary.h"

#include <algorithm>

namespace ZQAPI {

namespace {

using Status = CZQImaqLibrary::Status;

// The functions and numbers as in the library's C interface (niimaq.h). All of them are stdcall, which makes
// a difference in 32-bit programs alone.
using QueryNamesFunction = Status (*)(std::uint32_t index, char* name);
using InterfaceOpenFunction = Status (*)(const char* name, std::uint32_t* interfaceId);
using SessionOpenFunction = Status (*)(std::uint32_t interfaceId, std::uint32_t* sessionId);
using CloseFunction = Status (*)(std::uint32_t id, std::uint32_t freeResources);
using TransferFunction = Status (*)(std::uint32_t sessionId, char* buffer, std::uint32_t* size,
                                    std::uint32_t timeoutMs);
using FlushFunction = Status (*)(std::uint32_t sessionId);
using ShowErrorFunction = Status (*)(Status status, char* text);

constexpr const char* kFile = "imaq.dll";
constexpr const char* kNames[] = {"imgInterfaceQueryNames",
                                  "imgInterfaceOpen",
                                  "imgSessionOpen",
                                  "imgClose",
                                  "imgSessionSerialWrite",
                                  "imgSessionSerialReadBytes",
                                  "imgSessionSerialFlush",
                                  "imgShowError",
                                  ""};

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
        OpenLibrary(kFile, kNames, m_functions.data());
        return;
    }
    try {
        OpenLibrary(kitFolder + kFile, kNames, m_functions.data());
    } catch (const CZQException& kits) {
        if (kits.GetErrorNumber() != ZQ_ERR_LIBRARY_NOT_LOADED) {
            throw;
        }
        OpenSystems(kits);
    }
}

void CZQImaqLibrary::OpenSystems(const CZQException& afterKits) {
    try {
        OpenLibrary(kFile, kNames, m_functions.data());
    } catch (CZQException& failure) {
        failure.SetInnerException(afterKits);
        throw;
    }
}

CZQStringArray CZQImaqLibrary::QueryInterfaceNames() const {
    const auto query = reinterpret_cast<QueryNamesFunction>(m_functions[kQueryNames]);
    CZQStringArray names;
    Text name{};
    // Any error is the end of the list.
    for (std::uint32_t index = 0; index < kMaxInterfaces && query(index, name.data()) == 0; ++index) {
        names.Add(UntilNul(name));
        name.fill('\0');
    }
    return names;
}

Status CZQImaqLibrary::OpenInterface(const CZQString& name, Id& interfaceId) const {
    return reinterpret_cast<InterfaceOpenFunction>(m_functions[kInterfaceOpen])(name.c_str(), &interfaceId);
}

Status CZQImaqLibrary::OpenSession(Id interfaceId, Id& sessionId) const {
    return reinterpret_cast<SessionOpenFunction>(m_functions[kSessionOpen])(interfaceId, &sessionId);
}

Status CZQImaqLibrary::CloseId(Id id) const {
    return reinterpret_cast<CloseFunction>(m_functions[kClose])(id, kFreeResources);
}

Status CZQImaqLibrary::Write(Id sessionId, std::span<const char> data, std::uint32_t& size,
                             std::uint32_t timeoutMs) const {
    std::string copy(data.begin(), data.end());  // the library asks for a buffer that it may write to
    size = static_cast<std::uint32_t>(data.size());
    return reinterpret_cast<TransferFunction>(m_functions[kWrite])(sessionId, copy.data(), &size, timeoutMs);
}

Status CZQImaqLibrary::ReadByte(Id sessionId, char& byte, std::uint32_t timeoutMs) const {
    std::uint32_t size = 1;
    return reinterpret_cast<TransferFunction>(m_functions[kReadBytes])(sessionId, &byte, &size, timeoutMs);
}

Status CZQImaqLibrary::Flush(Id sessionId) const {
    return reinterpret_cast<FlushFunction>(m_functions[kFlush])(sessionId);
}

CZQString CZQImaqLibrary::FormatStatus(Status status) const {
    Text text{};
    reinterpret_cast<ShowErrorFunction>(m_functions[kShowError])(status, text.data());
    return CZQString::Formatted("ImaqError (0x%08X): %s", static_cast<std::uint32_t>(status),
                                UntilNul(text).c_str());
}

bool CZQImaqLibrary::IsReadTimeout(Status status) noexcept {
    return status == kSerialReadTimeout || status == kSerialTimeoutOfOldLibraries;
}

}  // namespace ZQAPI
