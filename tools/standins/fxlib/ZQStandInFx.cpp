#include <ZQAPI/vendors/ZQFx.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

void Fill(CZQStandInFile& file, std::uint32_t index, ZQFX_CAMERA_INFO& info) {
    file.CopyCameraText(index, "Model", info.model, sizeof info.model);
    info.vendorId = file.Number(file.Camera(index), "VendorId", 0);
    info.modelId = file.Number(file.Camera(index), "ModelId", 0);
    info.serialNumber = file.Number(file.Camera(index), "Serial", 0);
}

}  // namespace

ZQ_WRAPPER_STANDIN("fxlib", ZQFX, Fill)
