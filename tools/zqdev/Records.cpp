#include "Records.h"

#include <algorithm>

#include "Text.h"
#include "foundation/ZQString.h"

namespace ZQAPI::zqdev {

namespace {

std::string Latin1ToUtf8(std::string_view text) {
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0U | (byte >> 6U));
            utf8 += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return utf8;
}

constexpr std::string_view kScannerPrefix = "SCANNER_";

// As the command line takes it, too.
std::string ShortScannerName(const std::string& name) {
    return name.starts_with(kScannerPrefix) ? name.substr(kScannerPrefix.size()) : name;
}

const ZQDEVICEINFO* FindFirst(const std::vector<ZQDEVICEINFO>& devices, device::Field ZQDEVICEINFO::*member,
                              std::string_view text) {
    const auto found = std::find_if(devices.begin(), devices.end(), [&](const ZQDEVICEINFO& device) {
        return device::Text(device.*member) == text;
    });
    return found == devices.end() ? nullptr : &*found;
}

}  // namespace

const std::vector<FieldInfo>& Fields() {
    static const std::vector<FieldInfo> fields = {
        {"Name", "Name", "--name", "Name in the list, unique in it", &ZQDEVICEINFO::Name},
        {"DeviceID", "Identifier", "--id", "Identifier, unique in the list", &ZQDEVICEINFO::DeviceID},
        {"DeviceTypeByName", "Type", "--type", "Device type", &ZQDEVICEINFO::DeviceTypeByName},
        {"DeviceDesc", "Description", "--desc", "Description", &ZQDEVICEINFO::DeviceDesc},
        {"UsedScanner", "Scanner", "--scanner", "Scanner that finds the device", &ZQDEVICEINFO::UsedScanner},
        {"UsedAddress", "Address", "--address", "Address under which the scanner finds it",
         &ZQDEVICEINFO::UsedAddress},
        {"CCM", "Control module", "--ccm", "Camera control module", &ZQDEVICEINFO::CCM},
        {"CCMAddress", "  its address", "--ccm-address", "Address for that module",
         &ZQDEVICEINFO::CCMAddress},
        {"IAM", "Image module", "--iam", "Image acquisition module", &ZQDEVICEINFO::IAM},
        {"IAMAddress", "  its address", "--iam-address", "Address for that module",
         &ZQDEVICEINFO::IAMAddress},
        {"FirmwareVersion", "Firmware", "--firmware", "Firmware version", &ZQDEVICEINFO::FirmwareVersion},
    };
    return fields;
}

std::string AnyToUtf8(std::string_view text) {
    std::string utf8 = Utf8(text);
    return IsUtf8(utf8) ? utf8 : Latin1ToUtf8(text);
}

Json ToJson(std::string_view text) {
    return std::string(text);
}

Json ToJson(const ZQDEVICEINFO& device) {
    Json json = Json::Object();
    for (const FieldInfo& field : Fields()) {
        json.Set(field.name, ToJson(device::Text(device.*field.member)));
    }
    return json;
}

Json ToJson(const std::vector<ZQDEVICEINFO>& devices) {
    Json json = Json::Array();
    for (const ZQDEVICEINFO& device : devices) {
        json.Add(ToJson(device));
    }
    return json;
}

std::string ToTable(const std::vector<ZQDEVICEINFO>& devices, std::size_t terminalColumns) {
    const std::vector<Table::Column> columns = {{"NAME"},    {"ID", true}, {"TYPE"},
                                                {"SCANNER"}, {"ADDRESS"},  {"FIRMWARE"}};
    Table table(columns);
    Table withShortNames(columns);
    Table narrow({{"NAME"}, {"ID", true}, {"ADDRESS"}});
    for (const ZQDEVICEINFO& device : devices) {
        const std::string name = Printable(device::Text(device.Name));
        const std::string id = Printable(device::Text(device.DeviceID));
        const std::string type = Printable(device::Text(device.DeviceTypeByName));
        const std::string scanner = Printable(device::Text(device.UsedScanner));
        const std::string address = Printable(device::Text(device.UsedAddress));
        const std::string firmware = Printable(device::Text(device.FirmwareVersion));
        table.AddRow({name, id, type, scanner, address, firmware});
        withShortNames.AddRow({name, id, type, ShortScannerName(scanner), address, firmware});
        narrow.AddRow(
            {name, id, address},
            std::string(type).append(", by ").append(scanner).append(", firmware ").append(firmware));
    }
    if (terminalColumns == 0) {
        return table.ToText();
    }
    for (const Table* const one : {&table, &withShortNames}) {
        if (one->Columns() <= terminalColumns) {
            return one->ToText(terminalColumns);
        }
    }
    return narrow.ToText(terminalColumns);
}

std::string ToText(const ZQDEVICEINFO& device) {
    constexpr std::size_t kTitleWidth = 16;
    std::string text;
    for (const FieldInfo& field : Fields()) {
        std::string title = field.title;
        title.resize(kTitleWidth, ' ');
        text += title + Printable(device::Text(device.*field.member)) + "\n";
    }
    return text;
}

std::string CountText(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " device" : " devices");
}

const ZQDEVICEINFO* FindById(const std::vector<ZQDEVICEINFO>& devices, std::string_view id) {
    return FindFirst(devices, &ZQDEVICEINFO::DeviceID, id);
}

const ZQDEVICEINFO* FindByName(const std::vector<ZQDEVICEINFO>& devices, std::string_view name) {
    return FindFirst(devices, &ZQDEVICEINFO::Name, name);
}

std::vector<std::string> EmptyFields(const ZQDEVICEINFO& device) {
    std::vector<std::string> options;
    for (const FieldInfo& field : Fields()) {
        if (device::Text(device.*field.member).empty()) {
            options.emplace_back(field.option);
        }
    }
    return options;
}

std::optional<device::Scanner> ParseScanner(const std::string& text) {
    for (int number = 0; number < ZQDEV_NOF_SCANNERS; ++number) {
        if (text == std::to_string(number)) {
            return static_cast<device::Scanner>(number);
        }
    }
    const CZQString name = CZQString(text).MakeUpper();
    const auto scanner = device::ScannerFromName(name.view());
    return scanner ? scanner : device::ScannerFromName(std::string(kScannerPrefix) + name.str());
}

std::string CheckScanner(const std::string& text) {
    return ParseScanner(text) ? std::string() : "there is no scanner '" + text + "'";
}

}  // namespace ZQAPI::zqdev
