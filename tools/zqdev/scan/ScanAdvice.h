// What to do after a scan that has found nothing.
#pragma once

#include <vector>

#include "kit/Kit.h"
#include "scan/Remark.h"
#include "scan/ScanNews.h"

namespace ZQAPI::zqdev {

// By what the scan told; one at least.
std::vector<Remark> NextSteps(const Kit& kit, const ScanNews& news);

}  // namespace ZQAPI::zqdev
