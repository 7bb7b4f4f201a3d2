// What a scan has to tell beside the devices that it found.
#pragma once

#include <ZQAPI/ZQDevice.hpp>
#include <string>
#include <vector>

#include "Failure.h"
#include "Json.h"
#include "kit/Kit.h"
#include "scan/ScanNews.h"

namespace ZQAPI::zqdev {

struct ScanReport {
    std::string text;  // printable; nothing of cameras and network cards with which all is well
    Json scanners;
    Json heard;  // every camera
    Json cards;
    Json
        advice;  // the calls that mend what is not as it should be, and, where nothing was found, what to do next
};

// `listed`: the devices in the saved list as it is in the end; `width`: the text's.
ScanReport MakeScanReport(const Kit& kit, const ScanNews& news, bool isAnythingFound,
                          const std::vector<ZQDEVICEINFO>& listed, std::size_t width);

// How a scan ends that has found nothing: as failed when every scanner that ran failed.
Failure NothingFound(const ScanNews& news, bool wasToBeSaved);

}  // namespace ZQAPI::zqdev
