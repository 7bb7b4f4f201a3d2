#include "devices/ZQDeviceList.h"

#include <algorithm>
#include <utility>

#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/ZQDebugLine.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

constexpr char kNameSeparator = ';';
constexpr std::string_view kSeparatorText(&kNameSeparator, 1);
constexpr const char* kListSection = "General";
constexpr const char* kListKey = "Devices";
constexpr std::size_t kUsualDeviceSize = 512;  // in the file
constexpr std::size_t kLeastDeviceSize = 128;

// A name that stands in the list again is another record. So many may, that the records take no more than a few times
// the memory that the file does.
constexpr std::size_t kMostRepeated = 4096;

// The list as text, not sealed.
std::string TextOf(const CZQDeviceList& list, const CZQString& path) {
    CZQIniFile file(path);  // for the rules of the text alone
    std::string empty;
    empty.reserve(list.GetCount() * kUsualDeviceSize);
    const CZQIniBatch text(file, std::move(empty));

    // Written first so that it stands first.
    file.SetSection(kListSection);
    file.WriteVerbatim(kListKey, "");
    CZQString names;
    for (const CZQDeviceInfo& device : list) {
        device.SaveToIni(file);
        if (!names.IsEmpty()) {
            names += kNameSeparator;
        }
        names += device.GetName();
    }
    file.SetSection(kListSection);
    file.WriteVerbatim(kListKey, names);
    return text.Text();
}

}  // namespace

CZQDeviceInfo CZQDeviceList::GetDevice(std::uint32_t index) const {
    if (index >= GetCount()) {
        ZQ_THROW("CZQDeviceList::GetDevice", ZQ_ERR_BAD_INDEX, "dwIdx=%s, ArraySize=%ld",
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
        ZQ_THROW("CZQDeviceList::ModifyDevice", ZQ_ERR_BAD_INDEX, "DeviceID=%s",
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

    file.SetSection(kListSection);
    const std::string value = file.ReadLongString(kListKey);
    const auto count = static_cast<std::size_t>(std::count(value.begin(), value.end(), kNameSeparator)) + 1;
    if (count > kMostRepeated + file.GetSize() / kLeastDeviceSize) {
        ZQ_THROW("CZQDeviceList::LoadFromFile", ZQ_ERR_INI_VALUE_TOO_LONG, "%s; Names=%zu",
                 file.Where(kListKey).c_str(), count);
    }
    m_devices.reserve(count);
    for (std::string_view names = value; !names.empty();) {
        CZQString name = TakeUntil(kSeparatorText, names);
        CZQDeviceInfo device;
        device.LoadFromIni(file, name.Trim());
        AddDevice(device, false);
    }
}

void CZQDeviceList::SaveToFile(const CZQString& path) const {
    const std::string content = CZQConfigFile::Sealed(TextOf(*this, path));
    try {
        CZQFile::Replace(path, content);
    } catch (CZQException& exception) {
        if (exception.GetErrorNumber() == ZQ_ERR_FILE_MOVE) {
            throw;
        }
        exception.AddCatchLocation(ZQ_HERE("CZQDeviceList::SaveToFile"));
        ZQ_THROW("CZQDeviceList::SaveToFile", ZQ_ERR_INI_WRITE, "%s", exception.GetExtraText().c_str())
            .CausedBy(exception);
    }
}

}  // namespace ZQAPI
