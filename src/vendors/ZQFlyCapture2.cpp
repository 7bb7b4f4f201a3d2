#include "vendors/ZQFlyCapture2.h"

#include "vendors/ZQForeignRecord.h"

namespace ZQAPI {

namespace {

constexpr const char* kNames[] = {"fc2CreateContext",
                                  "fc2DestroyContext",
                                  "fc2GetNumOfCameras",
                                  "fc2GetCameraSerialNumberFromIndex",
                                  "fc2GetCameraFromSerialNumber",
                                  "fc2Connect",
                                  "fc2Disconnect",
                                  "fc2GetCameraInfo",
                                  ""};

using ContextFunction = std::int32_t (*)(void* context);
using CreateContext = std::int32_t (*)(void** context);
using GetNumOfCameras = std::int32_t (*)(void* context, std::uint32_t* count);
using GetSerialNumberFromIndex = std::int32_t (*)(void* context, std::uint32_t index, std::uint32_t* number);
using GetCameraFromSerialNumber = std::int32_t (*)(void* context, std::uint32_t number, void* guid);
using Connect = std::int32_t (*)(void* context, void* guid);
using GetCameraInfo = std::int32_t (*)(void* context, void* info);

constexpr std::size_t kGuidRoom = 64;
constexpr std::size_t kInfoRoom = 8192;
constexpr std::size_t kModelSize = 512;
// The model begins at 12 in the first versions of the record. In the later ones it begins at 16, and a truth
// value of 0 or 1 stands at 12, which no printable text begins with.
constexpr std::size_t kEarlyModel = 12;
constexpr std::size_t kModel = 16;
constexpr std::uint32_t kMaxTruthValue = 1;

}  // namespace

CZQFlyCapture2::CZQFlyCapture2(const CZQString& folder) {
    OpenFirst(
        folder,
        {"FlyCapture2_C_v100.dll", "FlyCapture2_C.dll", "FlyCapture2_C_v140.dll", "FlyCapture2_C_v120.dll",
         "FlyCapture2_C_v110.dll", "FlyCapture2_C_v90.dll", "libflycapture-c.so", "libflycapture-c.so.2"},
        kNames, m_slots.data());
    const SourceLocation here = ZQ_HERE("CZQFlyCapture2::CZQFlyCapture2");
    void* context = nullptr;
    Call<CreateContext>(here, kCreateContext, &context);
    if (context == nullptr) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "Function=%s; no context", kNames[kCreateContext]);
    }
    m_context = ReleasedBy(kDestroyContext, context);
}

template <class Function, class... Arguments>
void CZQFlyCapture2::Call(const SourceLocation& here, Slot slot, Arguments... arguments) {
    Check(here, kNames[slot], reinterpret_cast<Function>(m_slots[slot])(arguments...));
}

void CZQFlyCapture2::Release::operator()(void* context) const noexcept {
    CheckRelease(name, reinterpret_cast<ContextFunction>(function)(context));
}

CZQFlyCapture2::Context CZQFlyCapture2::ReleasedBy(Slot slot, void* context) const {
    return {context, {kNames[slot], m_slots[slot]}};
}

std::uint32_t CZQFlyCapture2::GetNofCameras() {
    const SourceLocation here = ZQ_HERE("CZQFlyCapture2::GetNofCameras");
    std::uint32_t count = 0;
    Call<GetNumOfCameras>(here, kGetNumOfCameras, m_context.get(), &count);
    return CheckCount(here, kNames[kGetNumOfCameras], count);
}

SFlyCapture2Camera CZQFlyCapture2::GetCamera(std::uint32_t index) {
    const SourceLocation here = ZQ_HERE("CZQFlyCapture2::GetCamera");
    std::uint32_t serialNumber = 0;
    Call<GetSerialNumberFromIndex>(here, kGetSerialNumberFromIndex, m_context.get(), index, &serialNumber);
    // By its number, not by the index: cameras may have been counted anew in between.
    CZQForeignRecord guid(kGuidRoom);
    Call<GetCameraFromSerialNumber>(here, kGetCameraFromSerialNumber, m_context.get(), serialNumber,
                                    guid.GetData());
    Call<Connect>(here, kConnect, m_context.get(), guid.GetData());
    const Context connected = ReleasedBy(kDisconnect, m_context.get());
    return {ReadModel(here), serialNumber};
}

CZQString CZQFlyCapture2::ReadModel(const SourceLocation& here) {
    CZQForeignRecord info(kInfoRoom);
    Call<GetCameraInfo>(here, kGetCameraInfo, m_context.get(), info.GetData());
    const bool isEarly = info.GetNumber(kEarlyModel) > kMaxTruthValue;
    return FieldText(info.GetField(isEarly ? kEarlyModel : kModel, kModelSize));
}

}  // namespace ZQAPI
