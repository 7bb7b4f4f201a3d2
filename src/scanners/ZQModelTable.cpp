#include "scanners/ZQModelTable.h"

#include <algorithm>

#include "foundation/ZQException.h"
#include "foundation/ZQLogger.h"
#include "scanners/ZQCameraText.h"

namespace ZQAPI {

namespace {

constexpr SModelRow kBoFXRows[] = {
    {"Valdremonix FX-0640M", "ZQFX-0640M", "Valdremonix FX 0640 monochrome camera"},
    {"Valdremonix FX-0640C", "ZQFX-0640C", "Valdremonix FX 0640 colour camera"},
    {"Valdremonix FX-1024M", "ZQFX-1024M", "Valdremonix FX 1024 monochrome camera"},
    {"Valdremonix FX-1024C", "ZQFX-1024C", "Valdremonix FX 1024 colour camera"},
    {"Valdremonix FX-1280M", "ZQFX-1280M", "Valdremonix FX 1280 monochrome camera"},
    {"Valdremonix FX-1280C", "ZQFX-1280C", "Valdremonix FX 1280 colour camera"},
    {"Valdremonix FX-1600M", "ZQFX-1600M", "Valdremonix FX 1600 monochrome camera"},
    {"Valdremonix FX-1600C", "ZQFX-1600C", "Valdremonix FX 1600 colour camera"},
    {"Valdremonix FX-2448M", "ZQFX-2448M", "Valdremonix FX 2448 monochrome camera"},
};

constexpr SModelRow kImagingSourceRows[] = {
    {"Valdremonix IC-72", "ZQIC-72", "Valdremonix IC 72 camera"},
    {"Valdremonix IC-274", "ZQIC-274", "Valdremonix IC 274 camera"},
};

// The library's model text has 15 characters at most.
constexpr SModelRow kUEyeRows[] = {
    {"VX-UE13M", "ZQUE-13M", "Valdremonix UE 1.3M camera"},
    {"VX-UE50C", "ZQUE-50C", "Valdremonix UE 5.0C camera"},
};

constexpr SModelRow kFlyCapture2Rows[] = {
    {"Valdremonix FLY-20M", "ZQFLY-20M", "Valdremonix FLY 2.0M camera"},
    {"Valdremonix FLY-50C", "ZQFLY-50C", "Valdremonix FLY 5.0C camera"},
};

constexpr SModelRow kGigERows[] = {
    {"Valdremonix GE-40", "ZQGE-40", "Valdremonix GE 4.0 camera"},
};

constexpr SModelRow kMatrixVisionRows[] = {
    {"Valdremonix MV-12", "ZQMV-12", "Valdremonix MV 1.2 camera"},
};

}  // namespace

using Match = CZQModelTable::Match;

constexpr CZQModelTable kBoFXModels(kBoFXRows, Match::kWhole, "CZQScanIFBoFX::FindBoDeviceType",
                                    "BoDeviceType");
// Reports itself under the uEye scanner's name, so that the logs of both read alike.
constexpr CZQModelTable kImagingSourceModels(kImagingSourceRows, Match::kContained,
                                             "CZQScanIFIDSUEye::FindZQDeviceType", "IDSDeviceType");
constexpr CZQModelTable kUEyeModels(kUEyeRows, Match::kContained, "CZQScanIFIDSUEye::FindZQDeviceType",
                                    "IDSDeviceType");
constexpr CZQModelTable kFlyCapture2Models(kFlyCapture2Rows, Match::kContained,
                                           "CZQScanIFPGRFly::FindPGRDeviceType", "PGRDeviceType");
constexpr CZQModelTable kGigEModels(kGigERows, Match::kContainedNoCase, "CZQScanIFZQGigE::FindZQDeviceType",
                                    "ZQDeviceType");
constexpr CZQModelTable kMatrixVisionModels(kMatrixVisionRows, Match::kContained,
                                            "CZQScanIFMatrixVision::FindMVDeviceType", "MVDeviceType");

bool CZQModelTable::Fits(const SModelRow& row, const CZQString& model) const {
    switch (m_match) {
        case Match::kWhole:
            return model == row.key;
        case Match::kContained:
            return model.Contains(row.key);
        case Match::kContainedNoCase:
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
