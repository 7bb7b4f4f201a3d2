#include "Session.h"

#include "Text.h"
#include "foundation/ZQSystem.h"
#include "kit/ConfigFiles.h"

namespace ZQAPI::zqdev {

Session::~Session() {
    m_library.reset();
    m_kitLibrary.reset();
    StopListening();
}

bool Session::StartListening(platform::DebugCapture::LineCallback onLine, platform::SystemErrorCode& error) {
    m_capture = platform::DebugCapture::Start(std::move(onLine), error);
    if (m_capture != nullptr) {
        m_console.SetErrorStream(m_capture->StandardError());
    }
    return m_capture != nullptr;
}

void Session::StopListening() {
    m_capture.reset();  // which hands over what is left, for the error stream that it kept
    m_console.SetErrorStream(stderr);
}

bool Session::ShowDebugOutput(platform::SystemErrorCode& error) {
    return StartListening([this](std::string_view line, bool) { m_console.PrintDebug(line); }, error);
}

ExitStatus Session::Run() {
    platform::SystemErrorCode error = 0;
    if (m_options.verbose && !ShowDebugOutput(error)) {
        throw Failure("can't listen to the debug output (" + FormatSystemError(error).str() +
                      "); leave -v out");
    }
    const ExitStatus status = m_action();
    m_console.FlushResults();
    return status;
}

std::string Session::ListenDuring(const std::function<void(std::string_view message)>& onMessage,
                                  const std::function<void()>& call) {
    platform::SystemErrorCode error = 0;
    StopListening();
    const bool isHeard = StartListening(
        [&](std::string_view line, bool isFirst) {
            if (m_options.verbose) {
                m_console.PrintDebug(line);
            }
            if (isFirst) {  // anything else can be part of some text
                onMessage(line);
            }
        },
        error);
    std::string whyNot = isHeard ? std::string() : FormatSystemError(error).str();
    call();
    StopListening();
    if (m_options.verbose) {
        ShowDebugOutput(error);
    }
    return whyNot;
}

const Kit& Session::GetKit() {
    if (!m_kit) {
        m_kit.emplace(m_options.kitFolder, m_options.program);
    }
    return *m_kit;
}

device::Library& Session::GetLibrary() {
    if (!m_library) {
        m_kitLibrary.emplace(GetKit().LibraryFile());
        std::error_code error;
        m_library.emplace(error);
        Check(error, "can't load the device list", Subject::kLoading);
    }
    return *m_library;
}

std::string Session::FileOf(Subject subject) {
    switch (subject) {
        case Subject::kLoading:
        case Subject::kSaving:
            return GetKit().DevicesIni();
        default:
            return GetKit().ApiIni();
    }
}

void Session::Check(const std::error_code& error, const std::string& what, Subject subject,
                    const std::string& file, ExitStatus status) {
    if (error) {
        const std::string advice =
            Advice(subject, error.value(), GetKit(), file.empty() ? FileOf(subject) : file);
        throw Failure(FailureLine(what, error.value(), advice), status);
    }
}

ZQDEVICEINFO Session::GetDevice(const std::string& idOrName) {
    const std::vector<ZQDEVICEINFO> devices = GetLibrary().Devices();
    const ZQDEVICEINFO* device = FindById(devices, idOrName);
    if (device == nullptr) {
        device = FindByName(devices, idOrName);
    }
    if (device == nullptr) {
        throw Failure(
            Filled("there is no device '{id}' in the list; \"{zqdev list}\" shows the identifiers and names",
                   GetKit(), {{"id", idOrName}}));
    }
    return *device;
}

void Session::Save(bool allowEmpty) {
    const std::vector<ZQDEVICEINFO> devices = GetLibrary().Devices();
    if (devices.empty()) {
        throw Failure("the list is empty and was not saved: an empty list can't be loaded again");
    }
    for (const ZQDEVICEINFO& device : devices) {
        const std::vector<std::string> empty = EmptyFields(device);
        if (!allowEmpty && !empty.empty()) {
            throw Failure("not saved: device '" + std::string(device::Text(device.DeviceID)) +
                          "' has nothing for " + Enumerate(empty) +
                          ", and a list with an empty field can't be loaded again; --allow-empty saves it "
                          "all the same");
        }
    }
    LockConfiguration();
    std::error_code error;
    GetLibrary().Save(error);
    m_lock.reset();  // nobody waits for whoever reads the results
    const std::string file = GetKit().DevicesIni();
    if (const std::string obstacle = error ? WritingObstacle(file) : std::string(); !obstacle.empty()) {
        throw Failure(Filled(
            "the device list was not saved: {why}: {file} (error {number}); see that its folder can be "
            "written to and has room, or run it as a user who may",
            GetKit(), {{"why", obstacle}, {"file", file}, {"number", std::to_string(error.value())}}));
    }
    Check(error, "can't save the device list", Subject::kSaving);
}

void Session::LockConfiguration() {
    if (!m_lock) {
        m_lock.emplace(m_console, GetKit(), std::chrono::seconds(m_options.waitSeconds));
    }
}

void Session::BeginEdit() {
    LockConfiguration();
    if (m_library) {
        std::error_code error;
        m_library->Load(error);
        Check(error, "can't load the device list", Subject::kLoading);
    }
}

void Session::ShowText(const std::string& text) {
    if (!m_options.json) {
        m_console.Print(text);
    }
}

void Session::Show(const Json& json, const std::string& text) {
    m_console.Print(m_options.json ? json.ToText() + "\n" : text);
}

}  // namespace ZQAPI::zqdev
