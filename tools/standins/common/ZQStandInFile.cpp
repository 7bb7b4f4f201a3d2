#include "ZQStandInFile.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/Process.h"

namespace ZQAPI::standin {

namespace {

std::string FileOfEnvironment() {
    std::string file;
    platform::GetEnvironmentText("ZQ_STANDIN_FILE", file);
    return file;
}

}  // namespace

CZQStandInFile::CZQStandInFile(std::string library)
    : m_library(std::move(library)), m_ini(FileOfEnvironment()) {}

bool CZQStandInFile::Enter(const char* function) {
    Trace(function);
    if (Text(m_library, "BlockingCall") == function) {
        Block(Text(m_library, "BlockFile"));
        Trace(std::string(function) + " goes on");
    }
    return Text(m_library, "FailingCall") != function;
}

void CZQStandInFile::Block(const std::string& untilGone) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(Number(m_library, "BlockMs", 0));
    while (Clock::now() < end && (untilGone.empty() || std::filesystem::exists(untilGone))) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::uint32_t CZQStandInFile::NofPlayedCameras() {
    std::uint32_t count = 0;
    while (HasKey(Camera(count), "Model")) {
        ++count;
    }
    return count;
}

std::uint32_t CZQStandInFile::NofClaimedCameras() {
    const auto played = static_cast<std::int32_t>(NofPlayedCameras());
    return static_cast<std::uint32_t>(Number(m_library, "NofCameras", played));
}

bool CZQStandInFile::IsThere(std::uint32_t index) {
    return index < NofPlayedCameras() && Number(Camera(index), "Vanishes", 0) == 0;
}

void CZQStandInFile::CopyCameraText(std::uint32_t index, const char* key, char* field, std::size_t size) {
    const std::string section = Camera(index);
    CopyText(field, size, CameraText(section, key), Number(section, "FillBuffers", 0) != 0);
}

std::string CZQStandInFile::CameraText(const std::string& camera, const char* key,
                                       const std::string& defaultValue) {
    const std::string text = Text(camera, key, defaultValue);
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        unsigned char byte = 0;
        const char* const digits = text.data() + std::min(at + 2, text.size());
        const char* const end = text.data() + std::min(at + 4, text.size());
        if (text.compare(at, 2, "\\x") == 0 && end == digits + 2 &&
            std::from_chars(digits, end, byte, 16).ptr == end) {
            bytes += static_cast<char>(byte);
            at += 4;
        } else {
            bytes += text[at++];
        }
    }
    return bytes;
}

std::string CZQStandInFile::Text(const std::string& section, const char* key,
                                 const std::string& defaultValue) {
    if (!HasKey(section, key)) {
        return defaultValue;
    }
    CZQString value;
    m_ini.ReadString(key, value);
    return value.str();
}

std::int32_t CZQStandInFile::Number(const std::string& section, const char* key, std::int32_t defaultValue) {
    if (!HasKey(section, key)) {
        return defaultValue;
    }
    std::int32_t value = 0;
    m_ini.ReadLong(key, value);
    return value;
}

bool CZQStandInFile::HasKey(const std::string& section, const char* key) {
    m_ini.SetSection(section);
    return m_ini.KeyExists(key);
}

void CZQStandInFile::Trace(const std::string& line) {
    const std::string file = Text(m_library, "TraceFile");
    if (file.empty()) {
        return;
    }
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    std::ofstream(file, std::ios::app | std::ios::binary) << line + "\n";
}

void CopyText(char* field, std::size_t size, const std::string& text, bool fill) {
    for (std::size_t i = 0; fill && i < size; ++i) {
        field[i] = text.empty() ? '?' : text[i % text.size()];
    }
    if (!fill) {
        const std::size_t length = std::min(text.size(), size);
        std::copy_n(text.begin(), length, field);
        std::fill(field + length, field + size, '\0');
    }
}

}  // namespace ZQAPI::standin
