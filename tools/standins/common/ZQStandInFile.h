// What a stand-in library plays: the text file that the environment variable ZQ_STANDIN_FILE names. One file
// serves all stand-ins; docs/stand-ins.md tells its format.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/Io/ZQIniFile.h"

namespace ZQAPI::standin {

// The file as it is now, seen from one library. Made anew for each call of the library, so that a test may
// change cameras and faults between two calls. Bound to one thread.
//
//     [ueye]                             the library's section
//     FailingCall=is_GetCameraList       this function does nothing and returns
//     FailingStatus=-1                     this number
//     BlockingCall=is_GetCameraList      this function first waits
//     BlockMs=60000                        so many milliseconds,
//     BlockFile=/tmp/block                 or until this file is gone; it is traced again then
//     NofCameras=5                       the count that the library claims, when it lies
//     TraceFile=/tmp/calls               each call's name is appended here, one line each
//     [ueye.0]                           its cameras, counted from 0 without a gap; \x41 in a text is an A
//     Model=VX-UE13M                       each has a model, the other keys are the library's
//     Vanishes=1                           counted, but not there when it is read
//     FillBuffers=1                        its texts fill their fields, without a NUL
class CZQStandInFile {
public:
    // Without the variable, or without the file: a library without cameras and faults.
    explicit CZQStandInFile(std::string library);

    // A call of `function` begins: it is traced and waits if it is to. False when it is to fail with
    // FailingStatus().
    bool Enter(const char* function);
    std::int32_t FailingStatus() { return Number(m_library, "FailingStatus", -1); }

    // The cameras that have a section.
    std::uint32_t NofPlayedCameras();
    // The same, unless the library is to lie.
    std::uint32_t NofClaimedCameras();
    // The section of one camera, "ueye.0".
    std::string Camera(std::uint32_t index) const { return m_library + "." + std::to_string(index); }

    // Whether the camera is there when it is read.
    bool IsThere(std::uint32_t index);
    // A text of the camera into a field, as the camera is to give it.
    void CopyCameraText(std::uint32_t index, const char* key, char* field, std::size_t size);
    // The same as a text of any length: as in the file, but for bytes written as \x and two hexadecimal
    // digits, which an INI file could not give back.
    std::string CameraText(const std::string& camera, const char* key, const std::string& defaultValue = {});

    std::string Text(const std::string& section, const char* key, const std::string& defaultValue = {});
    std::int32_t Number(const std::string& section, const char* key, std::int32_t defaultValue);
    bool HasKey(const std::string& section, const char* key);

    // One line to the trace file, when there is one; whole also when several threads write.
    void Trace(const std::string& line);

    const std::string& Library() const noexcept { return m_library; }

private:
    void Block(const std::string& untilGone);

    const std::string m_library;
    CZQIniFile m_ini;
};

// One call of a function whose status 0 is success: `body`, given the file, does it and returns the status.
template <class Body>
std::int32_t PlayCall(const char* library, const char* function, Body&& body) {
    CZQStandInFile play(library);
    return play.Enter(function) ? body(play) : play.FailingStatus();
}

// Copies a text into a field as vendors' libraries do: cut to the field, with a NUL when there is room for
// one. `fill` repeats the text until the field is full, without a NUL.
void CopyText(char* field, std::size_t size, const std::string& text, bool fill = false);

}  // namespace ZQAPI::standin
