// Which of the maker's cameras stands behind a vendor's model text.
#pragma once

#include <span>

#include "foundation/ZQString.h"

namespace ZQAPI {

// What kind of camera it is, in its record: the device type also names its camera configuration file.
struct SVendorProduct {
    CZQString deviceType;
    CZQString description;
};

// One product, with the vendor's model key.
struct SModelRow {
    const char* key;
    const char* deviceType;
    const char* description;

    operator SVendorProduct() const { return {deviceType, description}; }
};

// How a model text is held against the keys.
enum class EModelMatch {
    kWhole,            // the model is the key
    kContained,        // the key stands anywhere in the model
    kContainedNoCase,  // the same, upper and lower case being alike
};

// The rows of one scanner that goes by models. A constant.
class CZQModelTable {
public:
    // `method` and `label` are for the error: the name under which the lookup reports itself, and the word
    // before the model in its text ("IDSDeviceType").
    constexpr CZQModelTable(std::span<const SModelRow> rows, EModelMatch match, const char* method,
                            const char* label)
        : m_rows(rows), m_match(match), m_method(method), m_label(label) {}

    // The first row that fits the model, white space at its ends left aside; null when none does.
    const SModelRow* Find(const CZQString& model) const;
    // The same; no row: ZQ_ERR_UNKNOWN_MODEL, "<label>=%s" with the model, logged as well.
    const SModelRow& Get(const CZQString& model) const;

private:
    bool Fits(const SModelRow& row, const CZQString& model) const;

    std::span<const SModelRow> m_rows;
    EModelMatch m_match;
    const char* m_method;
    const char* m_label;
};

}  // namespace ZQAPI
