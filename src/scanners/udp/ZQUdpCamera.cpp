#include "scanners/udp/ZQUdpCamera.h"

#include <new>
#include <utility>

#include "devices/ZQCamConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/ZQException.h"
#include "scanners/ZQScannerNames.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kUdpNames = ZQ_SCANNER_NAMES(ZQ_UDP, "CZQScanIFZqUDP");

// Whether a camera configuration file was not read.
bool IsOfConfigFile(std::int32_t errorNumber) {
    switch (errorNumber) {
        case ZQ_ERR_SEAL_READ:
        case ZQ_ERR_SEAL_COMPUTE:
        case ZQ_ERR_STREAM_OPEN:
        case ZQ_ERR_INI_KEY_MISSING:
            return true;
        default:
            return false;
    }
}

// Whether this machine may have lacked the means for the moment: a socket, memory, a free file handle for the
// module.
bool IsOfMeans(std::int32_t errorNumber) {
    switch (errorNumber) {
        case ZQ_ERR_SOCKET_CREATE:
        case ZQ_ERR_OUT_OF_MEMORY:
        case ZQ_ERR_LIBRARY_NOT_LOADED:
            return true;
        default:
            return false;
    }
}

// The module reaches a camera in a foreign subnet only through the interface that heard it, by broadcast; without the
// bits of the interface's subnet any other, too.
CZQString CommandAddress(const SUdpDeviceConnInfo& camera, bool maySpeakAlone) {
    if (camera.localAddress.IsEmpty()) {
        return camera.ipAddress;
    }
    const std::string_view local = camera.localAddress.view();
    const std::string through(maySpeakAlone ? local : local.substr(0, local.find('/')));
    return CZQString::Formatted("%s:%s@%s", camera.ipAddress.c_str(), camera.hardwareAddress.c_str(),
                                through.c_str());
}

bool IsNetworkIam(const CZQString& iam) {
    return iam == ZQDEV_IAM_ZQ_UDP || iam == ZQDEV_IAM_ZQ_TCPIP;
}

CZQString ReadIam(const CZQString& path) {
    CZQCamConfigFile config(path);
    const CZQStringArray iams = config.GetSupportedIAMs();
    for (const char* iam : {ZQDEV_IAM_ZQ_UDP, ZQDEV_IAM_ZQ_TCPIP}) {
        if (iams.Contains(iam)) {
            return iam;
        }
    }
    return iams.GetAt(0);
}

}  // namespace

void CZQUdpKitFiles::ChooseImagePath(CZQDeviceInfo& device, const CZQString& ipAddress) {
    const CZQString iam = IamOf(device.GetDeviceTypeByName());
    device.SetIAM(iam);
    device.SetIAMAddress(IsNetworkIam(iam) ? ipAddress : CZQCamConfigFile::GetDefaultAddress(iam));
}

bool CZQUdpKitFiles::HasConfigFileOf(const CZQString& deviceType) const {
    return CZQFile::Exists(m_kit.GetCameraConfigFile(deviceType));
}

bool CZQUdpKitFiles::IsWorthAnotherTry(const CZQString& deviceType) {
    constexpr unsigned kMaxFailedReads = 64;
    const std::lock_guard lock(m_mutex);
    return ++m_nofFailedReads[deviceType.str()] < kMaxFailedReads;
}

CZQString CZQUdpKitFiles::IamOf(const CZQString& deviceType) {
    const std::lock_guard lock(m_mutex);
    const auto known = m_iams.find(deviceType.str());
    if (known != m_iams.end()) {
        return known->second;
    }
    CZQString iam = ReadIam(m_kit.GetCameraConfigFile(deviceType));
    m_iams.emplace(deviceType.str(), iam);
    return iam;
}

CZQUdpCamera::CZQUdpCamera(SUdpDeviceConnInfo answer, std::shared_ptr<CZQUdpKitFiles> kitFiles,
                           std::shared_ptr<CZQUdpNeighbours> neighbours, IdentifiedCallback onIdentified)
    : m_answer(std::move(answer)),
      m_kitFiles(std::move(kitFiles)),
      m_neighbours(std::move(neighbours)),
      m_isAdmitted(m_neighbours->Admit()),
      m_onIdentified(std::move(onIdentified)) {}

CZQUdpCamera::EEnd CZQUdpCamera::Ask() noexcept {
    EEnd end = EEnd::kFailed;
    try {
        if (const Connection connection = BeginAttempt()) {
            end = Identify(*connection);
        }
    } catch (const std::bad_alloc&) {
        end = Fail(true);
    } catch (...) {
        end = Fail(false);
    }
    if (end != EEnd::kDone) {
        m_neighbours->CountSilent();
    }
    const std::lock_guard lock(m_mutex);
    m_connection.reset();
    return end;
}

// None once it is over for good.
CZQUdpCamera::Connection CZQUdpCamera::BeginAttempt() {
    auto connection = std::make_shared<CZQTextCommandCamera>();
    const std::lock_guard lock(m_mutex);
    if (m_isOver) {
        return nullptr;
    }
    m_isAborted = false;
    m_connection = connection;
    return connection;
}

CZQUdpCamera::EEnd CZQUdpCamera::Identify(CZQTextCommandCamera& camera) {
    CZQDeviceInfo device;
    try {
        ReadDevice(camera, device);
    } catch (const CZQException& exception) {
        if (exception.GetErrorNumber() == ZQ_ERR_COM_ABORTED && IsAborted()) {
            return EEnd::kSilent;
        }
        return FailToIdentify(exception, device.GetDeviceTypeByName());
    }
    {
        const std::lock_guard lock(m_mutex);
        m_device = device;
    }
    m_onIdentified(device);
    return EEnd::kDone;
}

void CZQUdpCamera::ReadDevice(CZQTextCommandCamera& camera, CZQDeviceInfo& device) {
    camera.Open(m_kitFiles->CommandModule(),
                CommandAddress(m_answer, m_isAdmitted && !m_neighbours->AreMostlySilent()));
    camera.ReadRecord(device, m_answer.ipAddress,
                      [&] { m_kitFiles->ChooseImagePath(device, m_answer.ipAddress); });
    SetFinder(device, kUdpNames, device.GetDeviceID());
}

// To be called while the exception is handled, as what follows.
CZQUdpCamera::EEnd CZQUdpCamera::FailToIdentify(const CZQException& exception, const CZQString& deviceType) {
    if (!IsOfConfigFile(exception.GetErrorNumber())) {
        return Fail(IsOfMeans(exception.GetErrorNumber()));
    }
    // A file that is there could not be opened for want of a free handle.
    const bool isFileThere = m_kitFiles->HasConfigFileOf(deviceType);
    if (!isFileThere) {
        const std::lock_guard lock(m_mutex);
        m_unknownType = deviceType;
    }
    const bool isIncomplete = exception.GetErrorNumber() == ZQ_ERR_INI_KEY_MISSING;
    return Fail(isFileThere && !isIncomplete && m_kitFiles->IsWorthAnotherTry(deviceType));
}

CZQUdpCamera::EEnd CZQUdpCamera::Fail(bool isForWantOfMeans) noexcept {
    const std::lock_guard lock(m_mutex);
    m_failure = std::current_exception();
    return isForWantOfMeans ? EEnd::kScarce : EEnd::kFailed;
}

bool CZQUdpCamera::IsAborted() const noexcept {
    const std::lock_guard lock(m_mutex);
    return m_isAborted || m_isOver;
}

void CZQUdpCamera::Abort(bool forGood) noexcept {
    const std::lock_guard lock(m_mutex);
    m_isAborted = true;
    m_isOver = m_isOver || forGood;
    if (m_connection) {
        m_connection->Abort();
    }
}

CZQUdpCamera::Clock::time_point CZQUdpCamera::LastAnswer() const noexcept {
    const std::lock_guard lock(m_mutex);
    return m_connection ? m_connection->LastAnswer() : Clock::time_point::min();
}

std::optional<CZQDeviceInfo> CZQUdpCamera::GetDevice() const {
    const std::lock_guard lock(m_mutex);
    return m_device;
}

void CZQUdpCamera::RethrowFailure() const {
    const std::lock_guard lock(m_mutex);
    if (!m_device && m_failure) {
        std::rethrow_exception(m_failure);
    }
}

CZQString CZQUdpCamera::GetUnknownType() const {
    const std::lock_guard lock(m_mutex);
    return m_unknownType;
}

CZQString CZQUdpCamera::ToText() const {
    return CZQString::Formatted("Address=%s, HardwareAddress=%s", m_answer.ipAddress.c_str(),
                                m_answer.hardwareAddress.c_str());
}

}  // namespace ZQAPI
