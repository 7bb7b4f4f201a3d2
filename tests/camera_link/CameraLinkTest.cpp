// Port, scans and re-checks through the stand-in Camera Link library, with simulated cameras behind it.
#include <gtest/gtest.h>

#include <thread>

#include "camera_link/ZQCLSerial.h"
#include "scanners/serial/ZQScanAdimecCL.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

constexpr const char* kFileName = "clseremc_x64.dll";
constexpr const char* kOpening = "clSerialInit\nclSetBaudRate\nclFlushPort\n";
constexpr const char* kId = "Q-12A65:1234";
constexpr const char* kRecord =
    "_SCANNER_ADIMEC_CL.0|SCANNER_ADIMEC_CL|0|0|0|Q-12A65:1234|Q-12A65|Valdremonix Q-12A65 camera|CCM_ADIMEC_CL|"
    "IAM_ADIMEC_CL|1.00";

const std::string kNoId = "[clseremc.0]\r\nSerialNumber=1234\r\nFirmware=1.00\r\n";
const std::string kCamera = kNoId + "Model=Q-12A65\r\n";

class CameraLink : public ::testing::Test {
protected:
    CameraLink() {
        InstallRecordingLogger();
        Play("");
    }
    void TearDown() override { DeleteGlobalLogger(); }

    // Settings of the library, then its cameras.
    void Play(const std::string& content) {
        m_standIns.Play("[clseremc]\r\nTraceFile=" + m_standIns.TraceFile() + "\r\n" + content);
    }
    // What was traced since the last time, each line ended by a line feed.
    std::string Traced() {
        const std::string all = m_standIns.Traced();
        return all.substr(std::exchange(m_seen, all.size()));
    }

    StandIns m_standIns;
    const CZQString m_library = StandIns::Folder() + kFileName;

private:
    std::size_t m_seen = 0;
};

TEST_F(CameraLink, PortOpensClosesAndChecksItsArguments) {
    CZQCLSerial port(m_library);
    char byte = 0;
    port.Open(0, 57600);
    port.Open(0, 921600);
    EXPECT_EQ(Traced(), std::string(kOpening) + "clSerialClose\n" + kOpening);
    EXPECT_ZQ_ERROR(port.Write(nullptr, 1, 1), ZQ_ERR_NULL_INPUT);
    EXPECT_ZQ_ERROR(port.Read(nullptr, 1, 1), ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(port.Write(&byte, 0, 1), 0U);
    EXPECT_EQ(Traced(), "");
    EXPECT_EQ(port.Read(&byte, 0, 1), 0U);
    EXPECT_EQ(Traced(), "clSerialRead\n");

    EXPECT_ZQ_ERROR(port.Open(0, 14400), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(Traced(), "clSerialClose\n");
    EXPECT_ZQ_ERROR(port.Flush(), ZQ_ERR_SERIAL_CLOSED);
    EXPECT_ZQ_ERROR(port.Write(&byte, 0, 1), ZQ_ERR_SERIAL_CLOSED);
    EXPECT_ZQ_ERROR(port.Read(&byte, 1, 1), ZQ_ERR_SERIAL_CLOSED);
    EXPECT_ZQ_ERROR(port.GetNofBytesAvail(), ZQ_ERR_SERIAL_CLOSED);
    EXPECT_EQ(Traced(), "");
}

TEST_F(CameraLink, AFailingCloseLeavesThePortClosedAndNeverLeavesTheDestructor) {
    CZQCLSerial port(m_library);
    port.Open(0, 57600);
    Play("FailingCall=clSerialClose\r\nFailingStatus=77\r\nNofPorts=2\r\n");
    EXPECT_EQ(FailureOf([&] { port.Close(); }).second, "clError=77");
    port.Close();
    CZQCLSerial(m_library).Open(1, 57600);
}

TEST_F(CameraLink, ScansCamerasOfEveryKind) {
    struct Case {
        std::string play;
        const char* found;         // null: none
        std::int32_t failure = 0;  // which the scan goes on after
        const char* firmwareVersion = "1.00";
    };
    const Case cases[] = {
        {kCamera, kId},
        {kNoId + "Model=XQ-12A65-V30b\r\n", "Q-12A65-V30:1234"},
        {kNoId + "Model=q-12a65\r\n", nullptr, ZQ_ERR_UNKNOWN_MODEL},
        {kCamera + "Silences=-1\r\n", nullptr, ZQ_ERR_COM_RECV},
        {kCamera + "Noise=#??#\r\n", kId},
        {kCamera + "LongAnswerBytes=70\r\n", nullptr, ZQ_ERR_TEXT_TOO_LONG},
        {kCamera + "ControlCharacters=1\r\n", nullptr, ZQ_ERR_BAD_VALUE},
        {"[clseremc.0]\r\nModel=Q-12A65\r\nSerialNumber=1234\r\nFirmware=\\x20\r\n", kId, 0, "-.-"},
        {"[clseremc.0]\r\nModel=Q-12A65\r\nSerialNumber=Emp\r\n", nullptr, ZQ_ERR_BAD_VALUE},
        {"", nullptr, ZQ_ERR_COM_RECV},
        {"NofPorts=0\r\n", nullptr, ZQ_ERR_UNEXPECTED},
        {"FailingCall=clSerialInit\r\n" + kCamera, nullptr, ZQ_ERR_UNEXPECTED},
        {"NullReference=1\r\n" + kCamera, nullptr, ZQ_ERR_CONNECTION_NOT_OPEN},
        {"FailingCall=clSetBaudRate\r\n" + kCamera, nullptr, ZQ_ERR_UNEXPECTED},
        {"FailingCall=clSerialClose\r\n" + kCamera, kId, ZQ_ERR_UNEXPECTED},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.play);
        Play(test.play);
        CZQScanAdimecCL scanner(m_library);
        CZQDeviceList found;
        scanner.Scan(found);
        EXPECT_EQ(found.GetCount(), test.found != nullptr ? 1U : 0U);
        if (test.play == kCamera) {
            EXPECT_EQ(Describe(found.GetDevice(0)), kRecord);
        }
        const std::vector<CZQException> logged = Logged().Take();
        ASSERT_EQ(logged.size(), test.failure != 0 ? 1U : 0U);
        EXPECT_EQ(logged.empty() ? 0 : logged[0].GetErrorNumber(), test.failure);

        CZQDeviceInfo device = SampleDevice(test.found != nullptr ? test.found : kId);
        const std::int32_t error = ErrorOf([&] { scanner.Update(device); });
        EXPECT_EQ(error, test.found != nullptr ? 0 : ZQ_ERR_DEVICE_NOT_FOUND);
        EXPECT_EQ(device.GetFirmwareVersion(), test.found != nullptr ? test.firmwareVersion : "1.2.3");
        EXPECT_EQ(device.GetCCMAddress(), test.found != nullptr ? "0" : "192.168.1.20");
        Logged().Take();
    }
}

// The library allows one user for each port.
TEST_F(CameraLink, ReChecksDuringScansFindTheCamera) {
    Play(kCamera);
    std::jthread scans([this] {
        for (int i = 0; i < 10; ++i) {
            CZQDeviceList found;
            CZQScanAdimecCL(m_library).Scan(found);
            EXPECT_EQ(found.GetCount(), 1U);
        }
    });
    for (int i = 0; i < 10; ++i) {
        CZQDeviceInfo device = SampleDevice(kId);
        EXPECT_ZQ_ERROR(CZQScanAdimecCL(m_library).Update(device), 0);
    }
}

TEST_F(CameraLink, WithoutAWorkingLibraryTheScanFails) {
    const auto expect = [](const CZQString& library, std::int32_t number) {
        CZQScanAdimecCL scanner(library);
        CZQDeviceList found;
        CZQDeviceInfo device = SampleDevice(kId);
        EXPECT_ZQ_ERROR(scanner.Scan(found), number);
        EXPECT_ZQ_ERROR(scanner.Update(device), number);
    };
    const TempFolder folder;
    expect(folder.File(kFileName), ZQ_ERR_LIBRARY_NOT_LOADED);
    std::filesystem::copy_file(ZQ_TEST_OTHER_LIBRARY, folder.Path() / ZQ_TEST_CLSEREMC);
    expect(folder.File(kFileName), ZQ_ERR_ENTRY_POINT_MISSING);
    Play("FailingCall=clGetNumSerialPorts\r\n");
    expect(m_library, ZQ_ERR_UNEXPECTED);
}

}  // namespace
}  // namespace ZQAPI::test
