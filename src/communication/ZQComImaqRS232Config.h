#pragma once

#include "communication/ZQComConfigBase.h"

namespace ZQAPI {

// The serial line of one NI-IMAQ frame grabber interface. A value.
class CZQComImaqRS232Config : public CZQComConfigBase {
public:
    // The first interface, without a camera file.
    CZQComImaqRS232Config() = default;
    CZQComImaqRS232Config(CZQString interfaceName, CZQString cameraFile)
        : m_interfaceName(std::move(interfaceName)), m_cameraFile(std::move(cameraFile)) {}

    // "img0", or "img0::1" for the second port of a board.
    const CZQString& GetInterfaceName() const noexcept { return m_interfaceName; }
    // Says which camera file the interface is set up with. Line settings such as the baud rate come from
    // there; the library has no call to choose the file, so that this is for those who read it.
    const CZQString& GetCameraFile() const noexcept { return m_cameraFile; }

    // Keys "InterfaceName" and, if there is one, "CameraFile". ZQ_ERR_COM_CONFIG_LOAD,
    // ZQ_ERR_COM_CONFIG_SAVE.
    void LoadFromFile(const CZQString& fileName, const CZQString& section) override;
    void SaveToFile(const CZQString& fileName, const CZQString& section) const override;

    // "(IMAQ RS232) %s"
    CZQString ToString() const override;
    std::unique_ptr<CZQComConfigBase> Clone() const override;
    const char* GetTypeName() const noexcept override { return kTypeName; }

    static constexpr const char* kTypeName = "CZQComImaqRS232Config";

private:
    CZQString m_interfaceName = "img0";
    CZQString m_cameraFile;
};

}  // namespace ZQAPI
