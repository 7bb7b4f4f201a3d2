#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/ZQRoot.h"
#include "platform/Registry.h"

namespace ZQAPI {

// Reads values of one registry key. Where there is no registry, no key exists.
class CZQRegistry : public CZQRoot {
public:
    // Takes over the open root key.
    explicit CZQRegistry(platform::RegistryKey rootKey) noexcept : m_rootKey(rootKey) {}
    CZQRegistry(const CZQRegistry&) = delete;
    CZQRegistry& operator=(const CZQRegistry&) = delete;
    ~CZQRegistry() override;

    void SetSubKey(CZQString path) { m_subKey = std::move(path); }

    // The value's bytes. `data` null: ZQ_ERR_NULL_OUTPUT; key not opened: ZQ_ERR_REGISTRY_OPEN; no such
    // value: ZQ_ERR_REGISTRY_QUERY; another type than `type`: ZQ_ERR_REGISTRY_TYPE; no memory:
    // ZQ_ERR_OUT_OF_MEMORY; ZQ_ERR_REGISTRY_READ.
    void ReadKey(const CZQString& valueName, std::uint32_t type, std::vector<std::byte>* data);
    CZQString ReadString(const CZQString& valueName);

private:
    struct KeyCloser {
        void operator()(void* key) const noexcept { platform::CloseRegistryKey(key); }
    };
    using SubKey = std::unique_ptr<void, KeyCloser>;

    platform::RegistryKey m_rootKey;
    CZQString m_subKey;
    SubKey m_lastRead;  // a key that a value was read from stays open until the next one or the end
};

}  // namespace ZQAPI
