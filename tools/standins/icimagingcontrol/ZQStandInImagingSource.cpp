#include <ZQAPI/vendors/ZQImagingSource.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

void Fill(CZQStandInFile& file, std::uint32_t index, ZQIC_CAMERA_INFO& info) {
    file.CopyCameraText(index, "Model", info.model, sizeof info.model);
    info.serialNumber = file.Number(file.Camera(index), "Serial", 0);
}

}  // namespace

ZQ_WRAPPER_STANDIN("icimagingcontrol", ZQIC, Fill)
