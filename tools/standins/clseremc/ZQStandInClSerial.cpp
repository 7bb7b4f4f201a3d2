// Plays a frame grabber maker's Camera Link serial library, with Adimec cameras on its ports.
//
//     [clseremc]
//     NofPorts=4               ports with and without a camera; 1 when it is not there
//     NullReference=1          clSerialInit succeeds, but gives no reference
//     RealTime=1               a read that can't be satisfied takes its time before it times out
//     [clseremc.2]             the camera on port 2
//     Model=Q-12A65            what it says to "ID?"; without it there is no camera
//     SerialNumber=1234        to "SN?"
//     Firmware=1.00;2.00       to "BS?"
//     Silences=3               so many telegrams get no answer, -1: none does
//     Refusals=3               so many are refused, -1: all
//     LateAnswers=1            so many are answered when the read has timed out, -1: all
//     Noise=??                 comes before each acknowledgement and each data answer
//     LongAnswerBytes=2000     texts are filled up to this length
//     ErrorStatus=7            its status after each command
//     ControlCharacters=1      in every text
//
// Each telegram that a camera hears is traced as "telegram <text>". A camera is made, with its faults, when
// its port is opened, and hears nothing but noise unless the baud rate is its own.
#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "ZQSimAdimecCamera.h"
#include "ZQStandInFile.h"

namespace {

using ZQAPI::sim::CZQSimAdimecCamera;
using ZQAPI::sim::CZQSimAdimecFaults;
using ZQAPI::sim::CZQSimAdimecIdentity;
using ZQAPI::standin::CZQStandInFile;

constexpr const char* kName = "clseremc";
constexpr std::string_view kRead = "clSerialRead";

enum Status : std::int32_t {
    kNoError = 0,
    kBufferTooSmall = -10001,
    kPortInUse = -10003,
    kTimeout = -10004,
    kInvalidIndex = -10005,
    kInvalidReference = -10006,
    kBaudRateNotSupported = -10008,
};

constexpr std::uint32_t kBaud9600 = 1;
constexpr std::uint32_t kBaud57600 = 8;
constexpr std::uint32_t kAllBaudRates = 0xFF;  // one bit each
constexpr std::uint32_t kInterfaceVersion = 3;

struct Port {
    std::mutex mutex;  // guards the rest
    std::uint32_t index = 0;
    std::optional<CZQSimAdimecCamera> camera;
    std::string arrived;  // and not read
    std::uint32_t baudRate = kBaud9600;
    bool isBeingRead = false;  // the last call was a read that went well
};

std::mutex g_mutex;  // guards the list
std::vector<std::shared_ptr<Port>> g_openPorts;

std::uint32_t NofPorts(CZQStandInFile& play) {
    return static_cast<std::uint32_t>(play.Number(kName, "NofPorts", 1));
}

std::optional<CZQSimAdimecCamera> MakeCamera(CZQStandInFile& play, std::uint32_t port) {
    const std::string section = play.Camera(port);
    if (!play.HasKey(section, "Model")) {
        return std::nullopt;
    }
    const auto count = [&](const char* key) {
        return static_cast<std::uint32_t>(play.Number(section, key, 0));  // -1 is always
    };
    CZQSimAdimecIdentity identity;
    identity.id = play.CameraText(section, "Model");
    identity.serialNumber = play.CameraText(section, "SerialNumber", "1");
    identity.buildState = play.CameraText(section, "Firmware", "1.00");
    CZQSimAdimecFaults faults;
    faults.silences = count("Silences");
    faults.refusals = count("Refusals");
    faults.lateAnswers = count("LateAnswers");
    faults.noise = play.Text(section, "Noise");
    faults.longAnswerBytes = count("LongAnswerBytes");
    faults.errorStatus = play.Number(section, "ErrorStatus", 0);
    faults.controlCharacters = play.Number(section, "ControlCharacters", 0) != 0;
    return CZQSimAdimecCamera(identity, faults);
}

// One call of the library, which its callers may make on several threads.
template <class Body>
std::int32_t Call(const char* function, Body&& body) {
    CZQStandInFile play(kName);
    return play.Enter(function) ? body(play) : play.FailingStatus();
}

std::shared_ptr<Port> FindPort(const void* reference) {
    const std::lock_guard lock(g_mutex);
    const auto port = std::find_if(g_openPorts.begin(), g_openPorts.end(),
                                   [&](const auto& open) { return open.get() == reference; });
    return port != g_openPorts.end() ? *port : nullptr;
}

// The same for a port that is open. A call that blocks holds up its own port alone. A row of reads is one
// call to the file, which would cost each byte more time than a line does.
template <class Body>
std::int32_t PortCall(const char* function, const void* reference, Body&& body) {
    const std::shared_ptr<Port> port = FindPort(reference);
    if (port == nullptr) {
        return kInvalidReference;
    }
    const std::lock_guard lock(port->mutex);
    if (!std::exchange(port->isBeingRead, false) || std::string_view(function) != kRead) {
        CZQStandInFile play(kName);
        if (!play.Enter(function)) {
            return play.FailingStatus();
        }
    }
    return body(*port);
}

std::int32_t CopyOut(const std::string& text, char* target, std::uint32_t* size) {
    const std::uint32_t room = *size;
    *size = static_cast<std::uint32_t>(text.size() + 1);
    if (room < *size) {
        return kBufferTooSmall;
    }
    std::memcpy(target, text.c_str(), *size);
    return kNoError;
}

}  // namespace

extern "C" {

std::int32_t clGetManufacturerInfo(char* name, std::uint32_t* size, std::uint32_t* version) {
    return Call("clGetManufacturerInfo", [&](CZQStandInFile& /*play*/) {
        *version = kInterfaceVersion;
        return CopyOut("Stand-in", name, size);
    });
}

std::int32_t clGetNumSerialPorts(std::uint32_t* count) {
    return Call("clGetNumSerialPorts", [&](CZQStandInFile& play) {
        *count = NofPorts(play);
        return kNoError;
    });
}

std::int32_t clGetSerialPortIdentifier(std::uint32_t index, char* identifier, std::uint32_t* size) {
    return Call("clGetSerialPortIdentifier", [&](CZQStandInFile& play) -> std::int32_t {
        return index < NofPorts(play) ? CopyOut("Port #" + std::to_string(index), identifier, size)
                                      : kInvalidIndex;
    });
}

std::int32_t clGetErrorText(std::int32_t code, char* text, std::uint32_t* size) {
    return Call("clGetErrorText", [&](CZQStandInFile& /*play*/) {
        return CopyOut("Error " + std::to_string(code), text, size);
    });
}

std::int32_t clSerialInit(std::uint32_t index, void** reference) {
    return Call("clSerialInit", [&](CZQStandInFile& play) {
        const std::lock_guard lock(g_mutex);
        if (index >= NofPorts(play)) {
            return kInvalidIndex;
        }
        if (std::any_of(g_openPorts.begin(), g_openPorts.end(),
                        [&](const auto& open) { return open->index == index; })) {
            return kPortInUse;
        }
        if (play.Number(kName, "NullReference", 0) != 0) {
            *reference = nullptr;
            return kNoError;
        }
        const auto port = std::make_shared<Port>();
        port->index = index;
        port->camera = MakeCamera(play, index);
        *reference = port.get();
        g_openPorts.push_back(port);
        return kNoError;
    });
}

std::int32_t clSerialClose(void* reference) {
    return PortCall("clSerialClose", reference, [](const Port& port) {
        const std::lock_guard lock(g_mutex);
        std::erase_if(g_openPorts, [&](const auto& open) { return open.get() == &port; });
        return kNoError;
    });
}

std::int32_t clGetSupportedBaudRates(void* reference, std::uint32_t* codes) {
    return PortCall("clGetSupportedBaudRates", reference, [&](const Port& /*port*/) {
        *codes = kAllBaudRates;
        return kNoError;
    });
}

std::int32_t clSetBaudRate(void* reference, std::uint32_t code) {
    return PortCall("clSetBaudRate", reference, [&](Port& port) {
        if (!std::has_single_bit(code & kAllBaudRates) || (code & ~kAllBaudRates) != 0) {
            return kBaudRateNotSupported;
        }
        port.baudRate = code;
        return kNoError;
    });
}

std::int32_t clFlushPort(void* reference) {
    return PortCall("clFlushPort", reference, [](Port& port) {
        port.arrived.clear();
        return kNoError;
    });
}

std::int32_t clGetNumBytesAvail(void* reference, std::uint32_t* count) {
    return PortCall("clGetNumBytesAvail", reference, [&](const Port& port) {
        *count = static_cast<std::uint32_t>(port.arrived.size());
        return kNoError;
    });
}

std::int32_t clSerialWrite(void* reference, const char* buffer, std::uint32_t* size,
                           std::uint32_t /*timeoutMs*/) {
    return PortCall("clSerialWrite", reference, [&](Port& port) {
        if (port.camera && port.baudRate == kBaud57600) {
            CZQStandInFile play(kName);
            const std::vector<std::string>& telegrams = port.camera->GetTelegrams();
            const std::size_t heard = telegrams.size();
            port.arrived += port.camera->Receive({buffer, *size});
            for (std::size_t i = heard; i < telegrams.size(); ++i) {
                play.Trace("telegram " + telegrams[i]);
            }
        }
        return kNoError;
    });
}

// Exactly the bytes asked for, or none. A camera sends at once or never: there is nothing to wait for.
std::int32_t clSerialRead(void* reference, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) {
    return PortCall("clSerialRead", reference, [&](Port& port) {
        if (port.arrived.size() >= *size) {
            port.arrived.copy(buffer, *size);
            port.arrived.erase(0, *size);
            port.isBeingRead = true;
            return kNoError;
        }
        if (CZQStandInFile(kName).Number(kName, "RealTime", 0) != 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(timeoutMs));
        }
        if (port.camera) {
            port.arrived += port.camera->TakeLateAnswers();
        }
        return kTimeout;
    });
}

}  // extern "C"
