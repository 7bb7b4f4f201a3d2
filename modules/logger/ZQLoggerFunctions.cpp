// The four functions of the logger library. Thread-safe, and from any process: nothing is left behind by a call but the
// file. They neither fail nor throw.
#include <ZQAPI/ZQErrorText.h>

#include <memory>
#include <string_view>

#include "ZQLog.h"
#include "foundation/Threading/ZQSharedSlot.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"
#include "platform/ModuleUnload.h"

namespace ZQAPI {

namespace {

// Left alone when the process ends, and empty when the library is unloaded as it should be.
CZQSharedSlot<CZQLog>& Slot() {
    static CZQNoDestructor<CZQSharedSlot<CZQLog>> slot;
    return slot.Get();
}

}  // namespace

}  // namespace ZQAPI

extern "C" void ZQLOG_InitLibrary() {
    // Called while the device library is being loaded: nothing else is done that can wait.
    ZQAPI::platform::KeepModuleIfUnloadingLeaks();
}

extern "C" void ZQLOG_DeInitLibrary() {
    ZQAPI::Slot().Exchange(nullptr);
}

extern "C" void ZQLOG_LogException(std::uint32_t level, const ZQAPI::CZQException* exception) {
    if (exception == nullptr) {
        return;
    }
    try {
        const auto log = ZQAPI::Slot().GetOrMake([] { return std::make_shared<ZQAPI::CZQLog>(); });
        log->Write(level, *exception);
    } catch (...) {
        ZQAPI::DebugOutput("ZQSDK: !! no memory for the log");
    }
}

// Empty for a number that is none of the table's.
extern "C" void ZQLOG_FormatError(std::int32_t errorNumber, ZQAPI::CZQString* text) {
    if (text == nullptr) {
        return;
    }
    try {
        const bool isKnown = std::string_view(ZQ_ErrorName(errorNumber)) != "unknown";
        *text = isKnown ? ZQ_ErrorText(errorNumber) : "";
    } catch (...) {
        ZQAPI::DebugOutput("ZQSDK: !! no memory for a text");
    }
}
