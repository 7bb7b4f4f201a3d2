// Answers to the commands of the serial command modules, through the modules' functions. Input: what arrives behind
// each command, one part each; the first part's length is the size of the buffer for the answers.
#include "Fuzz.h"
#include "ZQAPI/ZQCommandModule.h"
#include "ZQSerialConnection.h"
#include "communication/ZQComRS232Config.h"

namespace ZQAPI::fuzz {

namespace {

std::string_view g_script;

// Waits for nothing: what has not arrived does not come in time.
class ScriptedLine : public CZQComBase {
public:
    void Open(const CZQString& /*fileName*/, const CZQString& /*section*/) override {}
    void Open(const CZQComConfigBase& /*config*/) override {}
    void Close() noexcept override {}
    void Flush() override { m_arrived.clear(); }
    std::uint32_t Send(const void* /*buffer*/, std::uint32_t length) override {
        m_arrived += TakePart(g_script);
        return length;
    }
    std::uint32_t Recv(void* buffer, std::uint32_t size, std::uint32_t /*timeoutMs*/,
                       bool returnOnFirstData) override {
        if (m_arrived.empty() || (m_arrived.size() < size && !returnOnFirstData)) {
            throw CZQException(ZQ_HERE("ScriptedLine::Recv"), ZQ_ERR_COM_TIMEOUT);
        }
        const std::size_t count = m_arrived.copy(static_cast<char*>(buffer), size);
        m_arrived.erase(0, count);
        return static_cast<std::uint32_t>(count);
    }
    bool IsOpen() const noexcept override { return true; }
    bool IsDatagram() const noexcept override { return false; }
    CZQComConfigBase& GetConfig() noexcept override { std::abort(); }
    void Abort() noexcept override {}

private:
    std::string m_arrived;
};

}  // namespace

void CheckInput(std::string_view input) {
    g_script = input;
    std::vector<char> buffer(TakePart(g_script).size() + 1, 'x');  // exact: the sanitizer guards its end
    ZQCCM_HANDLE handle = 0;
    ZQ_REQUIRE(ZQCCM_OpenCCM("", "1", &handle) == ZQ_OK);
    while (!g_script.empty()) {
        const std::string_view arrives = g_script;
        const auto result =
            ZQCCM_SendCmd(handle, "SYST:ID?\n", buffer.data(), static_cast<std::uint32_t>(buffer.size()));
        const std::string_view answer(buffer.data());
        // The line that came behind this command and no other, or nothing.
        ZQ_REQUIRE(result == ZQ_OK ? answer.find('\n') + 1 == answer.size() && arrives.starts_with(answer)
                                   : answer.empty());
        ZQ_REQUIRE(answer.size() <= 1023);
    }
    ZQ_REQUIRE(ZQCCM_CloseCCM(handle) == ZQ_OK);
}

}  // namespace ZQAPI::fuzz

std::shared_ptr<ZQAPI::CZQCommandConnection> ZQAPI::OpenCommandConnection(
    const CZQString& /*commandAddress*/) {
    return std::make_shared<CZQSerialConnection>(std::make_unique<fuzz::ScriptedLine>(), CZQComRS232Config());
}
