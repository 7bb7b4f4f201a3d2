// What became of each network camera that a scan heard, and what is wrong with its address.
#pragma once

#include <ZQAPI/ZQDevice.hpp>
#include <vector>

#include "Json.h"
#include "kit/Kit.h"
#include "scan/Remark.h"
#include "scan/ScanNews.h"

namespace ZQAPI::zqdev {

struct HeardCameras {
    std::vector<Remark> leftOut;
    std::vector<Remark> addresses;  // of cameras that want another one, with the calls that give it to them
    Json json;                      // all that were heard
};

// `listed`: the devices in the saved list as it is in the end; set-ip knows no others.
HeardCameras ExplainCameras(const Kit& kit, const ScanNews& news, const std::vector<ZQDEVICEINFO>& listed);

}  // namespace ZQAPI::zqdev
