// Device records on the screen, in JSON and on the command line.
#pragma once

#include <ZQAPI/ZQDevice.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Json.h"

namespace ZQAPI::zqdev {

// One of a record's fields.
struct FieldInfo {
    const char* name;    // in the record and in JSON
    const char* title;   // for people
    const char* option;  // on the command line
    const char* help;
    device::Field ZQDEVICEINFO::*member;
};

// All eleven, in the order in which they are shown.
const std::vector<FieldInfo>& Fields();

// Bytes that are no UTF-8 count as the system's code page's, or where it has none as Latin-1, so that every text
// has a form in JSON.
std::string AnyToUtf8(std::string_view text);
Json ToJson(std::string_view text);
Json ToJson(const ZQDEVICEINFO& device);
Json ToJson(const std::vector<ZQDEVICEINFO>& devices);

// The devices one below the other, for a terminal of so many columns (0: for no terminal), and one device in full.
std::string ToTable(const std::vector<ZQDEVICEINFO>& devices, std::size_t terminalColumns);
std::string ToText(const ZQDEVICEINFO& device);

// "1 device", "3 devices"
std::string CountText(std::size_t count);

// The first device with this identifier, or of this name; null when there is none.
const ZQDEVICEINFO* FindById(const std::vector<ZQDEVICEINFO>& devices, std::string_view id);
const ZQDEVICEINFO* FindByName(const std::vector<ZQDEVICEINFO>& devices, std::string_view name);

// The options of the fields that are empty: a list that is saved with such a device can't be loaded again.
std::vector<std::string> EmptyFields(const ZQDEVICEINFO& device);

// The scanner of a number or of a name, the name in any case and without its "SCANNER_" if one likes.
std::optional<device::Scanner> ParseScanner(const std::string& text);
// For the command line: what is wrong with the text, or nothing.
std::string CheckScanner(const std::string& text);

}  // namespace ZQAPI::zqdev
