#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "devices/ZQDeviceInfo.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQException.h"
#include "scanners/ZQTextCommandCamera.h"
#include "scanners/udp/ZQIdentificationWorkers.h"
#include "scanners/udp/ZQUdpDiscovery.h"

namespace ZQAPI {

// What the kit's files say to one search, looked up once. Thread-safe.
class CZQUdpKitFiles {
public:
    explicit CZQUdpKitFiles(const CZQSdkPaths& kit) : m_kit(kit) {}

    const CZQString& CommandModule() const noexcept { return m_commandModule; }
    bool HasConfigFileOf(const CZQString& deviceType) const;
    // Of a file that is there and was not read: whether that may have been for want of a free handle. Not time and again:
    // a file that nobody can read must not hold up whoever is asked beside a camera that says it is of that type.
    bool IsWorthAnotherTry(const CZQString& deviceType);
    // Sets IAM and IAMAddress of a record whose device type is known; `ipAddress` where images come over the
    // network. Errors of the type's camera configuration file.
    void ChooseImagePath(CZQDeviceInfo& device, const CZQString& ipAddress);

private:
    CZQString IamOf(const CZQString& deviceType);

    const CZQSdkPaths m_kit;
    const CZQString m_commandModule = m_kit.GetCcmPath() + "ZQCCMUdpAPI.dll";
    std::mutex m_mutex;
    std::map<std::string, CZQString> m_iams;           // by device type
    std::map<std::string, unsigned> m_nofFailedReads;  // the same
};

// Of one search: whether its cameras may be spoken to alone. Each that is takes an entry of the table of neighbours, which
// all programs of the machine share and made-up cameras would fill: 1,024 on Linux where nobody has changed that, 256 on
// Windows. So these are only the first ones, and no further ones once so many have been silent; the others are asked by
// broadcast. Thread-safe.
class CZQUdpNeighbours {
public:
    static constexpr std::size_t kMaxAlone = 256;
    static constexpr std::size_t kMaxSilent = 64;

    // Once for each camera.
    bool Admit() noexcept { return m_nofAdmitted++ < kMaxAlone; }
    void CountSilent() noexcept { ++m_nofSilent; }
    bool AreMostlySilent() const noexcept { return m_nofSilent >= kMaxSilent; }

private:
    std::atomic<std::size_t> m_nofAdmitted{0};
    std::atomic<std::size_t> m_nofSilent{0};
};

// A camera that was heard, and what it says of itself once it has been asked.
class CZQUdpCamera : public CZQIdentificationTask {
public:
    // Called on the thread that asked, at once.
    using IdentifiedCallback = std::function<void(const CZQDeviceInfo& device)>;

    CZQUdpCamera(SUdpDeviceConnInfo answer, std::shared_ptr<CZQUdpKitFiles> kitFiles,
                 std::shared_ptr<CZQUdpNeighbours> neighbours, IdentifiedCallback onIdentified);

    EEnd Ask() noexcept override;
    void Abort(bool forGood) noexcept override;
    Clock::time_point LastAnswer() const noexcept override;

    // The record, or nothing when identification failed or the time was over before it was done.
    std::optional<CZQDeviceInfo> GetDevice() const;
    // Throws what identification failed with, if it did.
    void RethrowFailure() const;
    // The device type, if that is what it failed with: the kit has no camera configuration file for it.
    CZQString GetUnknownType() const;
    // For messages: "Address=192.168.1.117, HardwareAddress=00A1B2C3D4E5".
    CZQString ToText() const;

private:
    using Connection = std::shared_ptr<CZQTextCommandCamera>;

    Connection BeginAttempt();
    EEnd Identify(CZQTextCommandCamera& camera);
    void ReadDevice(CZQTextCommandCamera& camera, CZQDeviceInfo& device);
    EEnd Fail(bool isForWantOfMeans) noexcept;
    EEnd FailToIdentify(const CZQException& exception, const CZQString& deviceType);
    bool IsAborted() const noexcept;

    const SUdpDeviceConnInfo m_answer;
    const std::shared_ptr<CZQUdpKitFiles> m_kitFiles;
    const std::shared_ptr<CZQUdpNeighbours> m_neighbours;
    const bool m_isAdmitted;  // may be spoken to alone
    const IdentifiedCallback m_onIdentified;

    mutable std::mutex m_mutex;  // for what follows
    Connection m_connection;     // of the attempt under way
    bool m_isAborted = false;    // the attempt under way
    bool m_isOver = false;       // aborted for good
    std::optional<CZQDeviceInfo> m_device;
    std::exception_ptr m_failure;
    CZQString m_unknownType;
};

}  // namespace ZQAPI
