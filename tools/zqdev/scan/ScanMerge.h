// What a scan has found, beside the list that is saved.
#pragma once

#include <string>
#include <vector>

#include "Session.h"

namespace ZQAPI::zqdev {

// Whether a device has this name, other than the one with this identifier.
bool IsNameUsed(const std::vector<ZQDEVICEINFO>& devices, std::string_view name, std::string_view exceptId);

// Adds the device under a name that no other one has; as it is in the list then. Throws Failure.
ZQDEVICEINFO AddUnderFreeName(Session& session, const ZQDEVICEINFO& device);

// "'Front door' of ZQNetCam-2M:00012345" for each saved device that has been given a name of its own and does not have
// it among those that were found.
std::vector<std::string> LostNames(const std::vector<ZQDEVICEINFO>& saved,
                                   const std::vector<ZQDEVICEINFO>& found);

// Gives the devices that are in the list the names that they have there.
void KeepNames(std::vector<ZQDEVICEINFO>& found, const std::vector<ZQDEVICEINFO>& saved);

struct MergeResult {
    std::size_t nofNew = 0;
    std::vector<std::string> notFound;  // their identifiers
};
// Makes the library's list the saved one with what was found put in: a known device keeps its place and its name, a
// new one comes after them, and one that was not found, as those added by hand, stays. Ready to be saved. Throws
// Failure.
MergeResult MergeIntoSaved(Session& session, const std::vector<ZQDEVICEINFO>& found);

}  // namespace ZQAPI::zqdev
