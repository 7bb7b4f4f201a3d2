#include "devices/ZQDeviceList.h"

#include <algorithm>

#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/ZQException.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

constexpr char kNameSeparator = ';';
constexpr const char* kListSection = "General";
constexpr const char* kListKey = "Devices";

// A file beside `path` that is gone when this is, unless it was moved away.
class TemporaryFile {
public:
    explicit TemporaryFile(const CZQString& path)
        : m_path(CZQString::Formatted("%s.%lu.tmp", path.c_str(), platform::ProcessId())) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        platform::SystemErrorCode ignored = 0;
        platform::RemoveFile(m_path.str(), ignored);
    }

    const CZQString& Path() const noexcept { return m_path; }

private:
    CZQString m_path;
};

}  // namespace

CZQDeviceInfo CZQDeviceList::GetDevice(std::uint32_t index) const {
    if (index >= GetCount()) {
        throw CZQException(ZQ_HERE("CZQDeviceList::GetDevice"), ZQ_ERR_BAD_INDEX, "dwIdx=%s, ArraySize=%ld",
                           std::to_string(index).c_str(), static_cast<long>(GetCount()));
    }
    return m_devices[index];
}

std::int32_t CZQDeviceList::FindDeviceByID(const CZQString& id) const noexcept {
    const auto found = std::find_if(m_devices.begin(), m_devices.end(), [&](const CZQDeviceInfo& device) {
        return device.DeviceIDView() == id.view();
    });
    return found == m_devices.end() ? -1 : static_cast<std::int32_t>(found - m_devices.begin());
}

void CZQDeviceList::AddDevice(const CZQDeviceInfo& device, bool rename) {
    m_devices.push_back(device);
    if (rename) {
        m_devices.back().SetName(CZQString::Formatted("Camera%d", static_cast<int>(m_devices.size())));
    }
}

void CZQDeviceList::ModifyDevice(const CZQDeviceInfo& device) {
    const std::int32_t index = FindDeviceByID(device.GetDeviceID());
    if (index < 0) {
        throw CZQException(ZQ_HERE("CZQDeviceList::ModifyDevice"), ZQ_ERR_BAD_INDEX, "DeviceID=%s",
                           device.GetDeviceID().c_str());
    }
    m_devices[static_cast<std::size_t>(index)] = device;
}

void CZQDeviceList::RemoveDevice(const CZQString& id) {
    const std::int32_t index = FindDeviceByID(id);
    if (index >= 0) {
        m_devices.erase(m_devices.begin() + index);
    }
}

void CZQDeviceList::LoadFromFile(const CZQString& path) {
    Clear();
    CZQConfigFile file(path, CZQConfigFile::Mode::kRead, true);
    const CZQIniBatch snapshot(file);

    CZQStringArray names;
    file.SetSection(kListSection);
    file.ReadLongStringArray(kListKey, names, kNameSeparator);
    m_devices.reserve(names.GetSize());
    for (const CZQString& name : names) {
        CZQDeviceInfo device;
        device.LoadFromIni(file, name);
        AddDevice(device, false);
    }
}

void CZQDeviceList::SaveToFile(const CZQString& path) const {
    const TemporaryFile temporary(path);
    {
        CZQConfigFile file(temporary.Path(), CZQConfigFile::Mode::kWrite, true);
        CZQIniBatch batch(file);

        // Written first so that it stands first.
        file.SetSection(kListSection);
        file.WriteVerbatim(kListKey, "");
        CZQString names;
        for (const CZQDeviceInfo& device : m_devices) {
            device.SaveToIni(file);
            if (!names.IsEmpty()) {
                names += kNameSeparator;
            }
            names += device.GetName();
        }
        file.SetSection(kListSection);
        file.WriteVerbatim(kListKey, names);
        batch.Commit();
        file.SealAndSync();
    }
    CZQFile::Move(path, temporary.Path(), true);
}

}  // namespace ZQAPI
