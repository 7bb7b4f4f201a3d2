#include "devices/ZQCamConfigFile.h"

#include <ZQAPI/ZQDeviceAPI.h>

namespace ZQAPI {

namespace {

struct DefaultAddress {
    const char* module;
    const char* address;
};

constexpr const char* kNetworkAddress = "192.168.1.117";

constexpr DefaultAddress kDefaultAddresses[] = {
    {ZQDEV_CCM_ZQ_UDP, kNetworkAddress}, {ZQDEV_CCM_ZQ_TCPIP, kNetworkAddress},
    {ZQDEV_IAM_ZQ_UDP, kNetworkAddress}, {ZQDEV_IAM_ZQ_TCPIP, kNetworkAddress},
    {ZQDEV_CCM_ZQ_RS232, "1"},           {ZQDEV_IAM_ZQ_FG_IMAQ, "img0"},
};

}  // namespace

CZQCamConfigFile::CZQCamConfigFile(const CZQString& path) : CZQConfigFile(path, Mode::kRead, true) {
    SetSection("Interfaces");
}

CZQStringArray CZQCamConfigFile::ReadModules(const CZQString& key) {
    CZQStringArray modules;
    ReadStringArray(key, modules, ';');
    return modules;
}

CZQStringArray CZQCamConfigFile::GetSupportedCCMs() {
    return ReadModules("CCMs");
}

CZQString CZQCamConfigFile::GetDefaultCCM() {
    return GetSupportedCCMs().GetAt(0);
}

CZQStringArray CZQCamConfigFile::GetSupportedIAMs() {
    return ReadModules("IAMs");
}

CZQString CZQCamConfigFile::GetDefaultIAM() {
    return GetSupportedIAMs().GetAt(0);
}

bool CZQCamConfigFile::IsSupportedIAM(const CZQString& iam) {
    return GetSupportedIAMs().Contains(iam);
}

CZQString CZQCamConfigFile::GetDefaultAddress(const CZQString& module) {
    for (const DefaultAddress& entry : kDefaultAddresses) {
        if (module == entry.module) {
            return entry.address;
        }
    }
    return "?";
}

}  // namespace ZQAPI
