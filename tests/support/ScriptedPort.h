// A serial port with a script in the place of the camera.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "camera_link/ZQSerialBase.h"
#include "foundation/ZQException.h"

namespace ZQAPI::test {

class ScriptedPort : public CZQSerialBase {
public:
    // What arrives behind each telegram.
    using Script = std::function<std::string(const std::string& telegram)>;
    explicit ScriptedPort(Script script) : m_script(std::move(script)) {}

    std::string arrived;     // and not read
    char endless = '\0';     // comes for ever behind what has arrived
    std::uint32_t lost = 0;  // of the bytes of each write
    bool fails = true;  // when there is too little to read, as after a time-out; else it gives what there is
    bool isOpen = true;
    std::vector<std::string> written;

    void Open(std::uint32_t /*port*/, std::uint32_t /*baudRate*/) override {}
    void Close() override {}
    bool IsOpen() const noexcept override { return isOpen; }
    void Flush() override { arrived.clear(); }
    std::uint32_t Write(const void* buffer, std::uint32_t size, std::uint32_t /*timeoutMs*/) override {
        written.emplace_back(static_cast<const char*>(buffer), size);
        arrived += m_script(written.back());
        return size - lost;
    }
    std::uint32_t Read(void* buffer, std::uint32_t size, std::uint32_t /*timeoutMs*/) override {
        if (arrived.size() < size && endless != '\0') {
            arrived.resize(size, endless);
        }
        if (arrived.size() < size && fails) {
            throw CZQException(ZQ_HERE("ScriptedPort::Read"), ZQ_ERR_UNEXPECTED);
        }
        const std::size_t count = arrived.copy(static_cast<char*>(buffer), size);
        arrived.erase(0, count);
        return static_cast<std::uint32_t>(count);
    }
    std::uint32_t GetNofBytesAvail() override {
        return endless != '\0' ? 0xFFFFFFFF : static_cast<std::uint32_t>(arrived.size());
    }

private:
    const Script m_script;
};

}  // namespace ZQAPI::test
