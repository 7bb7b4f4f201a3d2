#include "scanners/ZQModelTable.h"

#include <algorithm>

#include "foundation/ZQException.h"
#include "foundation/ZQLogger.h"
#include "scanners/ZQCameraText.h"

namespace ZQAPI {

bool CZQModelTable::Fits(const SModelRow& row, const CZQString& model) const {
    switch (m_match) {
        case EModelMatch::kWhole:
            return model == row.key;
        case EModelMatch::kContained:
            return model.Contains(row.key);
        case EModelMatch::kContainedNoCase:
            return CZQString(model).MakeLower().Contains(CZQString(row.key).MakeLower().view());
    }
    return false;
}

const SModelRow* CZQModelTable::Find(const CZQString& model) const {
    const CZQString trimmed = CZQString(model).Trim();
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [&](const SModelRow& candidate) { return Fits(candidate, trimmed); });
    return row == m_rows.end() ? nullptr : &*row;
}

const SModelRow& CZQModelTable::Get(const CZQString& model) const {
    const SModelRow* const row = Find(model);
    if (row == nullptr) {
        const CZQException unknown(ZQ_HERE(m_method), ZQ_ERR_UNKNOWN_MODEL, "%s=%s", m_label,
                                   ShownText(model).c_str());
        LogException(kLogLevel, unknown);
        throw CZQException(unknown);
    }
    return *row;
}

}  // namespace ZQAPI
