// The NI-IMAQ library's serial lines, played. Each section [imaq.N] of the play file is an interface with a
// camera of the maker's on its line:
//
//     Model=ZQSerCam-1M     the camera's device type; "none": nothing is connected; "wire": see imgPlayRead
//     Name=img0             the interface's name; imgN without the key
//     Serial=7              the last digits of the camera's serial number; N without the key
//     Silent=1              the camera never answers
//     OtherMaker=1          it is somebody else's
//     NoLineFeed=1          its answers are 200 bytes without a line feed
//     ByteDelayMs=400       each byte of an answer comes so long after the one before
#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "ZQSimSerialCamera.h"
#include "ZQStandInFile.h"

namespace {

using ZQAPI::sim::CZQSimPortFaults;
using ZQAPI::sim::CZQSimSerialCamera;
using ZQAPI::sim::EAnswerForm;
using ZQAPI::standin::CZQStandInFile;
using Clock = CZQSimSerialCamera::Clock;
using Status = std::int32_t;

constexpr Status kGood = 0;
constexpr auto kNoInterfaceFound = static_cast<Status>(0xBFF60027);
constexpr auto kInterfaceLocked = static_cast<Status>(0xBFF6002E);
constexpr auto kSerialReadTimeout = static_cast<Status>(0xBFF60093);
constexpr auto kInvalidId = static_cast<Status>(0xBFF6000D);

constexpr std::chrono::milliseconds kWirePoll{1};
constexpr std::uint64_t kFirstCamera = ZQAPI::sim::kFirstHardwareAddress + 0x20000;

std::string InterfaceName(CZQStandInFile& file, std::uint32_t index) {
    return file.Text(file.Camera(index), "Name", "img" + std::to_string(index));
}

CZQSimPortFaults FaultsOf(CZQStandInFile& file, std::uint32_t index) {
    const std::string section = file.Camera(index);
    const auto time = [&](const char* key) {
        return std::chrono::milliseconds(file.Number(section, key, 0));
    };
    CZQSimPortFaults faults;
    faults.silent = file.Text(section, "Model") == "none" || file.Number(section, "Silent", 0) != 0;
    faults.delay = {time("DelayMs"), time("DelayMs")};
    faults.byteDelay = time("ByteDelayMs");
    faults.longAnswerBytes = 200;
    if (file.Number(section, "OtherMaker", 0) != 0) {
        faults.form = EAnswerForm::kWrongAddress;
    } else if (file.Number(section, "NoLineFeed", 0) != 0) {
        faults.form = EAnswerForm::kNoLineFeed;
    }
    return faults;
}

// Null for a wire.
std::unique_ptr<CZQSimSerialCamera> MakeCamera(CZQStandInFile& file, std::uint32_t index) {
    const std::string section = file.Camera(index);
    const std::string model = file.Text(section, "Model");
    if (model == "wire") {
        return nullptr;
    }
    const auto serial = static_cast<std::uint64_t>(file.Number(section, "Serial", static_cast<int>(index)));
    return std::make_unique<CZQSimSerialCamera>(
        ZQAPI::sim::MakeCameras(1, 0, 0, model, kFirstCamera + serial).front());
}

// One interface and what is on its line. Guarded by g_mutex.
struct Interface {
    std::string name;
    std::uint32_t index = 0;                     // of its section
    std::unique_ptr<CZQSimSerialCamera> camera;  // null: the line is a wire to whoever calls imgPlay...
    std::string fromProgram;
    std::string toProgram;

    void Hear(CZQStandInFile& file, std::string_view bytes) {
        if (camera) {
            camera->SetFaults(FaultsOf(file, index));
            camera->Hear(bytes, Clock::now());
        } else {
            fromProgram += bytes;
        }
    }
    std::string Say(std::size_t maxBytes) {
        if (camera) {
            return camera->Say(Clock::now(), maxBytes);
        }
        return TakeFront(toProgram, maxBytes);
    }
    // When to ask again.
    Clock::time_point NextDue(Clock::time_point limit) const {
        const auto due = camera ? camera->NextDue().value_or(limit) : Clock::now() + kWirePoll;
        return std::min(due, limit);
    }
    static std::string TakeFront(std::string& bytes, std::size_t maxBytes) {
        std::string front = bytes.substr(0, maxBytes);
        bytes.erase(0, front.size());
        return front;
    }
};

// What is open. An interface and its session have ids of one sequence.
std::mutex g_mutex;
std::map<std::uint32_t, std::shared_ptr<Interface>> g_interfaces;
std::map<std::uint32_t, std::shared_ptr<Interface>> g_sessions;
std::uint32_t g_lastId = 0;

// The interface of a session that is open, or null; with the lock held.
Interface* InterfaceOf(std::uint32_t session) {
    const auto found = g_sessions.find(session);
    return found != g_sessions.end() ? found->second.get() : nullptr;
}

// The interface of this name that is open, or null; with the lock held.
Interface* FindOpen(std::string_view name) {
    for (const auto& [id, open] : g_interfaces) {
        if (open->name == name) {
            return open.get();
        }
    }
    return nullptr;
}

// Every function begins here: false when it is to fail with `status`.
bool Enter(CZQStandInFile& file, const char* function, Status& status) {
    status = file.Enter(function) ? kGood : file.FailingStatus();
    return status == kGood;
}

}  // namespace

extern "C" {

Status imgInterfaceQueryNames(std::uint32_t index, char* name) {
    CZQStandInFile file("imaq");
    Status status = kGood;
    if (!Enter(file, "imgInterfaceQueryNames", status)) {
        return status;
    }
    if (index >= file.NofClaimedCameras()) {
        return kNoInterfaceFound;
    }
    const std::string text = InterfaceName(file, index);
    ZQAPI::standin::CopyText(name, text.size() + 1, text);
    return kGood;
}

Status imgInterfaceOpen(const char* name, std::uint32_t* id) {
    CZQStandInFile file("imaq");
    Status status = kGood;
    if (!Enter(file, "imgInterfaceOpen", status)) {
        return status;
    }
    const std::lock_guard lock(g_mutex);
    if (FindOpen(name) != nullptr) {
        return kInterfaceLocked;
    }
    for (std::uint32_t i = 0; i < file.NofPlayedCameras(); ++i) {
        if (InterfaceName(file, i) == name) {
            *id = ++g_lastId;
            g_interfaces[*id] = std::make_shared<Interface>(Interface{name, i, MakeCamera(file, i), {}, {}});
            return kGood;
        }
    }
    return kNoInterfaceFound;
}

Status imgSessionOpen(std::uint32_t interfaceId, std::uint32_t* id) {
    CZQStandInFile file("imaq");
    Status status = kGood;
    if (!Enter(file, "imgSessionOpen", status)) {
        return status;
    }
    const std::lock_guard lock(g_mutex);
    const auto found = g_interfaces.find(interfaceId);
    if (found == g_interfaces.end()) {
        return kInvalidId;
    }
    *id = ++g_lastId;
    g_sessions[*id] = found->second;
    return kGood;
}

Status imgClose(std::uint32_t id, std::uint32_t /*freeResources*/) {
    CZQStandInFile file("imaq");
    const std::lock_guard lock(g_mutex);
    const bool isSession = g_sessions.erase(id) > 0;
    const bool isInterface = g_interfaces.erase(id) > 0;
    Status status = kGood;
    if (!Enter(file, isSession ? "imgClose session" : "imgClose interface", status)) {
        return status;
    }
    return isSession || isInterface ? kGood : kInvalidId;
}

Status imgSessionSerialWrite(std::uint32_t session, char* buffer, std::uint32_t* size,
                             std::uint32_t /*timeoutMs*/) {
    CZQStandInFile file("imaq");
    Status status = kGood;
    if (!Enter(file, "imgSessionSerialWrite", status)) {
        return status;
    }
    const std::lock_guard lock(g_mutex);
    Interface* const line = InterfaceOf(session);
    if (line == nullptr) {
        return kInvalidId;
    }
    line->Hear(file, {buffer, *size});
    return kGood;
}

// The bytes asked for, or a time-out and none.
Status imgSessionSerialReadBytes(std::uint32_t session, char* buffer, std::uint32_t* size,
                                 std::uint32_t timeoutMs) {
    CZQStandInFile file("imaq");
    Status status = kGood;
    if (!Enter(file, "imgSessionSerialReadBytes", status)) {
        return status;
    }
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    std::string bytes;
    for (;;) {
        auto next = deadline;
        {
            const std::lock_guard lock(g_mutex);
            Interface* const line = InterfaceOf(session);
            if (line == nullptr) {
                return kInvalidId;
            }
            bytes += line->Say(*size - bytes.size());
            next = line->NextDue(deadline);
        }
        if (bytes.size() == *size) {
            std::copy(bytes.begin(), bytes.end(), buffer);
            return kGood;
        }
        if (Clock::now() >= deadline) {
            return kSerialReadTimeout;
        }
        std::this_thread::sleep_until(next);
    }
}

Status imgSessionSerialFlush(std::uint32_t session) {
    CZQStandInFile file("imaq");
    Status status = kGood;
    if (!Enter(file, "imgSessionSerialFlush", status)) {
        return status;
    }
    const std::lock_guard lock(g_mutex);
    Interface* const line = InterfaceOf(session);
    if (line == nullptr) {
        return kInvalidId;
    }
    line->Say(std::string::npos);  // what has arrived; not what is under way
    return kGood;
}

Status imgShowError(Status status, char* text) {
    const std::string words = status == kSerialReadTimeout  ? "Serial read time-out"
                              : status == kInterfaceLocked  ? "The interface is in use"
                              : status == kNoInterfaceFound ? "There is no such interface"
                                                            : "Failed as asked";
    ZQAPI::standin::CopyText(text, words.size() + 1, words);
    return kGood;
}

// The device's end of a line that is a wire: the bytes that the program has written, waited for 10 s at most,
// and bytes for it to read.
std::uint32_t imgPlayRead(const char* name, char* buffer, std::uint32_t size) {
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    std::string bytes;
    while (bytes.size() < size && Clock::now() < deadline) {
        {
            const std::lock_guard lock(g_mutex);
            if (Interface* const line = FindOpen(name)) {
                bytes += Interface::TakeFront(line->fromProgram, size - bytes.size());
            }
        }
        std::this_thread::sleep_for(kWirePoll);
    }
    std::copy(bytes.begin(), bytes.end(), buffer);
    return static_cast<std::uint32_t>(bytes.size());
}

void imgPlayWrite(const char* name, const char* bytes, std::uint32_t size) {
    const std::lock_guard lock(g_mutex);
    if (Interface* const line = FindOpen(name)) {
        line->toProgram.append(bytes, size);
    }
}

}  // extern "C"
