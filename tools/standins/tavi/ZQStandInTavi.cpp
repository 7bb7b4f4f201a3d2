#include <ZQAPI/vendors/ZQTavi.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

void Fill(CZQStandInFile& file, std::uint32_t index, ZQTAVI_CAMERA_INFO& info) {
    info.boardNumber = file.Number(file.Camera(index), "Board", 0);
    file.CopyCameraText(index, "Serial", info.serialNumber, sizeof info.serialNumber);
}

}  // namespace

ZQ_WRAPPER_STANDIN("tavi", ZQTAVI, Fill)
