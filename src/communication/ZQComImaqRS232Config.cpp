#include "communication/ZQComImaqRS232Config.h"

#include "foundation/Io/ZQIniFile.h"

namespace ZQAPI {

void CZQComImaqRS232Config::LoadFromFile(const CZQString& fileName, const CZQString& section) {
    WithSection(fileName, section, ZQ_HERE("CZQComImaqRS232Config::LoadFromFile"), ZQ_ERR_COM_CONFIG_LOAD,
                [this](CZQIniFile& file) {
                    CZQComImaqRS232Config loaded;
                    file.ReadString("InterfaceName", loaded.m_interfaceName);
                    if (file.KeyExists("CameraFile")) {
                        file.ReadString("CameraFile", loaded.m_cameraFile);
                    }
                    *this = loaded;
                });
}

void CZQComImaqRS232Config::SaveToFile(const CZQString& fileName, const CZQString& section) const {
    WithSection(fileName, section, ZQ_HERE("CZQComImaqRS232Config::SaveToFile"), ZQ_ERR_COM_CONFIG_SAVE,
                [this](CZQIniFile& file) {
                    file.WriteString("InterfaceName", m_interfaceName);
                    file.WriteString("CameraFile", m_cameraFile);
                });
}

CZQString CZQComImaqRS232Config::ToString() const {
    return CZQString::Formatted("(IMAQ RS232) %s", m_interfaceName.c_str());
}

std::unique_ptr<CZQComConfigBase> CZQComImaqRS232Config::Clone() const {
    return std::make_unique<CZQComImaqRS232Config>(*this);
}

}  // namespace ZQAPI
