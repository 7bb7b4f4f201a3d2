// What to do after a scan that has found nothing.
#pragma once

#include <vector>

#include "Kit.h"
#include "Remark.h"
#include "ScanNews.h"

namespace ZQAPI::zqdev {

// By what the scan told; one at least.
std::vector<Remark> NextSteps(const Kit& kit, const ScanNews& news);

}  // namespace ZQAPI::zqdev
