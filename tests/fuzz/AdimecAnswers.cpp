// Answers of an Adimec camera. Input: what arrives behind each telegram, one part each; the last part's length is that
// of the buffer for the answer.
#include "Fuzz.h"
#include "camera_link/ZQAdimecCameraControl.h"
#include "scanners/ZQScanAdimecCL.h"

using namespace ZQAPI;
using namespace ZQAPI::fuzz;

namespace {

// A read of more than has arrived fails at once, as a time-out does.
class ScriptedPort : public CZQSerialBase {
public:
    explicit ScriptedPort(std::string_view script) : m_script(script) {}

    void Open(std::uint32_t /*port*/, std::uint32_t /*baudRate*/) override {}
    void Close() override {}
    bool IsOpen() const noexcept override { return true; }
    void Flush() override { m_arrived.clear(); }
    std::uint32_t Write(const void* /*buffer*/, std::uint32_t size, std::uint32_t /*timeoutMs*/) override {
        ++nofWrites;
        m_arrived += TakePart(m_script);
        return size;
    }
    std::uint32_t Read(void* buffer, std::uint32_t size, std::uint32_t /*timeoutMs*/) override {
        if (m_arrived.size() < size) {
            throw CZQException(ZQ_HERE("ScriptedPort::Read"), ZQ_ERR_UNEXPECTED);
        }
        m_arrived.copy(static_cast<char*>(buffer), size);
        m_arrived.erase(0, size);
        return size;
    }
    std::uint32_t GetNofBytesAvail() override { return static_cast<std::uint32_t>(m_arrived.size()); }

    int nofWrites = 0;

private:
    std::string_view m_script;
    std::string m_arrived;
};

void AskWithBuffer(std::string_view script, std::size_t bufferSize) {
    ScriptedPort port(script);
    CZQAdimecSerialProtocol protocol(port);
    std::vector<char> buffer(bufferSize, 'x');  // exact: the sanitizer guards its end
    const auto size = static_cast<std::uint32_t>(buffer.size());
    if (Succeeds([&] { protocol.GetData("ID?", buffer.data(), size); })) {
        const std::string_view text(buffer.data());
        ZQ_REQUIRE(text.size() < size && text.find('\r') == std::string_view::npos);
    }
    ZQ_REQUIRE(port.nofWrites <= 3 * 2);  // three tries, each with its question for the error status
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view script = Text(data, size);
    AskWithBuffer(script, size - std::min(script.rfind(kBetweenParts), size) + 1);

    ScriptedPort port(script);
    CZQAdimecCameraControl camera(port);
    if (!Succeeds([&] { camera.Open(0); })) {
        return 0;
    }
    for (const char* const query : {"ID?", "SN?", "BS?"}) {
        const auto text = ResultOf([&] { return camera.GetString(query); });
        const auto type = ResultOf([&] { return CZQScanAdimecCL::GetZQDeviceType(text.value_or("")); });
        ZQ_REQUIRE(!type || *type == "Q-12A65" || *type == "Q-12A65-V30");
    }
    return 0;
}
