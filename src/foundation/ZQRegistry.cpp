#include "foundation/ZQRegistry.h"

#include <algorithm>
#include <new>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQRegistry::~CZQRegistry() {
    platform::CloseRegistryKey(m_rootKey);
}

void CZQRegistry::ReadKey(const CZQString& valueName, std::uint32_t type, std::vector<std::byte>* data) {
    if (data == nullptr) {
        ZQ_THROW("CZQRegistry::ReadKey", ZQ_ERR_NULL_OUTPUT);
    }
    data->clear();

    // The system texts below are those of the thread's last error, which the registry functions need not set.
    platform::SystemErrorCode error = 0;
    SubKey key(platform::OpenRegistryKey(m_rootKey, m_subKey.str(), error));
    if (!key) {
        ZQ_THROW("CZQRegistry::ReadKey", ZQ_ERR_REGISTRY_OPEN, "SubKey=%s; %s", m_subKey.c_str(),
                 FormatSystemError(error).c_str());
    }
    std::uint32_t storedType = 0;
    std::uint32_t size = 0;
    if (!platform::QueryRegistryValue(key.get(), valueName.str(), storedType, size, nullptr, error)) {
        ZQ_THROW("CZQRegistry::ReadKey", ZQ_ERR_REGISTRY_QUERY, "SubKey=%s; ValueName=%s; %s",
                 m_subKey.c_str(), valueName.c_str(), FormatSystemError(error).c_str());
    }
    if (storedType != type) {
        ZQ_THROW("CZQRegistry::ReadKey", ZQ_ERR_REGISTRY_TYPE,
                 "SubKey=%s; ValueName=%s; dwRegKeyType=%ld; dwKeyType=%ld", m_subKey.c_str(),
                 valueName.c_str(), static_cast<long>(storedType), static_cast<long>(type));
    }
    try {
        data->resize(size);
    } catch (const std::bad_alloc&) {
        ZQ_THROW("CZQRegistry::ReadKey", ZQ_ERR_OUT_OF_MEMORY,
                 "SubKey=%s; ValueName=%s; dwRegDataSize=%ld; %s", m_subKey.c_str(), valueName.c_str(),
                 static_cast<long>(size), FormatSystemError(platform::LastSystemError()).c_str());
    }
    if (!platform::QueryRegistryValue(key.get(), valueName.str(), storedType, size, data->data(), error)) {
        data->clear();
        ZQ_THROW("CZQRegistry::ReadKey", ZQ_ERR_REGISTRY_READ, "SubKey=%s; ValueName=%s; %s",
                 m_subKey.c_str(), valueName.c_str(), FormatSystemError(error).c_str());
    }
    data->resize(size);
    m_lastRead = std::move(key);
}

CZQString CZQRegistry::ReadString(const CZQString& valueName) {
    std::vector<std::byte> data;
    ReadKey(valueName, platform::kRegistryText, &data);
    // The stored text may lack its NUL.
    const auto end = std::find(data.begin(), data.end(), std::byte{0});
    return std::string(reinterpret_cast<const char*>(data.data()),
                       static_cast<std::size_t>(end - data.begin()));
}

}  // namespace ZQAPI
