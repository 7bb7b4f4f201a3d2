// Which of the maker's cameras stands behind a vendor's model text.
#pragma once

#include <span>

#include "foundation/ZQString.h"

namespace ZQAPI {

// One product: the vendor's model key, the device type that names its camera configuration file, and the
// description in its record.
struct SModelRow {
    const char* key;
    const char* deviceType;
    const char* description;
};

// The rows of one scanner and how a model text is held against their keys. A constant.
class CZQModelTable {
public:
    enum class Match {
        kWhole,            // the model is the key
        kContained,        // the key stands anywhere in the model
        kContainedNoCase,  // the same, upper and lower case being alike
    };

    // `method` and `label` are for the error: the name under which the lookup reports itself, and the word
    // before the model in its text ("IDSDeviceType").
    constexpr CZQModelTable(std::span<const SModelRow> rows, Match match, const char* method,
                            const char* label)
        : m_rows(rows), m_match(match), m_method(method), m_label(label) {}

    // The first row that fits the model, white space at its ends left aside; null when none does.
    const SModelRow* Find(const CZQString& model) const;
    // The same; no row: ZQ_ERR_UNKNOWN_MODEL, "<label>=%s" with the model, logged as well.
    const SModelRow& Get(const CZQString& model) const;

    std::span<const SModelRow> Rows() const noexcept { return m_rows; }

private:
    bool Fits(const SModelRow& row, const CZQString& model) const;

    std::span<const SModelRow> m_rows;
    Match m_match;
    const char* m_method;
    const char* m_label;
};

// The product data, one table for each scanner that goes by models.
extern const CZQModelTable kBoFXModels;
extern const CZQModelTable kImagingSourceModels;
extern const CZQModelTable kUEyeModels;
extern const CZQModelTable kFlyCapture2Models;
extern const CZQModelTable kGigEModels;
extern const CZQModelTable kMatrixVisionModels;

}  // namespace ZQAPI
