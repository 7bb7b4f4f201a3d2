#include "scan/ScanMerge.h"

#include <algorithm>

namespace ZQAPI::zqdev {

namespace {

// As the library names devices, after their place in the list.
bool IsGivenName(std::string_view name) {
    constexpr std::string_view kPrefix = "Camera";
    const std::string_view number = name.substr(std::min(kPrefix.size(), name.size()));
    return !name.starts_with(kPrefix) || number.empty() ||
           number.find_first_not_of("0123456789") != std::string_view::npos;
}

}  // namespace

bool IsNameUsed(const std::vector<ZQDEVICEINFO>& devices, std::string_view name, std::string_view exceptId) {
    return std::any_of(devices.begin(), devices.end(), [&](const ZQDEVICEINFO& device) {
        return device::Text(device.Name) == name && device::Text(device.DeviceID) != exceptId;
    });
}

// The library names a new device after its place in the list, which after a removal can be a name that is in
// use. Two devices of one name share their place in the file, so the new one gets the first free name.
ZQDEVICEINFO AddUnderFreeName(Session& session, const ZQDEVICEINFO& device) {
    const std::string id(device::Text(device.DeviceID));
    std::error_code error;
    session.GetLibrary().Add(device, error);
    session.Check(error, "can't add device '" + id + "'", Subject::kRecord);
    const std::vector<ZQDEVICEINFO> devices = session.GetLibrary().Devices();
    ZQDEVICEINFO added = *FindById(devices, id);
    for (unsigned number = 1; IsNameUsed(devices, device::Text(added.Name), id); ++number) {
        device::SetText(added.Name, "Camera" + std::to_string(number));
    }
    session.GetLibrary().Modify(added);
    return added;
}

std::vector<std::string> LostNames(const std::vector<ZQDEVICEINFO>& saved,
                                   const std::vector<ZQDEVICEINFO>& found) {
    std::vector<std::string> lost;
    for (const ZQDEVICEINFO& device : saved) {
        const std::string name(device::Text(device.Name));
        const std::string id(device::Text(device.DeviceID));
        const ZQDEVICEINFO* const now = FindById(found, id);
        if (IsGivenName(name) && (now == nullptr || device::Text(now->Name) != name)) {
            std::string what = "'" + name;
            lost.push_back(what.append("' of ").append(id));
        }
    }
    return lost;
}

void KeepNames(std::vector<ZQDEVICEINFO>& found, const std::vector<ZQDEVICEINFO>& saved) {
    for (ZQDEVICEINFO& device : found) {
        if (const ZQDEVICEINFO* const known = FindById(saved, device::Text(device.DeviceID))) {
            device::SetText(device.Name, device::Text(known->Name));
        }
    }
}

MergeResult MergeIntoSaved(Session& session, const std::vector<ZQDEVICEINFO>& found) {
    session.BeginEdit();  // the list is the saved one again
    const std::vector<ZQDEVICEINFO> saved = session.GetLibrary().Devices();
    MergeResult result;
    for (const ZQDEVICEINFO& device : saved) {
        if (FindById(found, device::Text(device.DeviceID)) == nullptr) {
            result.notFound.emplace_back(device::Text(device.DeviceID));
        }
    }
    for (ZQDEVICEINFO device : found) {
        const std::string id(device::Text(device.DeviceID));
        const ZQDEVICEINFO* const known = FindById(saved, id);
        if (known == nullptr) {
            AddUnderFreeName(session, device);
            ++result.nofNew;
            continue;
        }
        device::SetText(device.Name, device::Text(known->Name));
        std::error_code error;
        session.GetLibrary().Modify(device, error);
        session.Check(error, "can't change device '" + id + "'", Subject::kRecord);
    }
    return result;
}

}  // namespace ZQAPI::zqdev
