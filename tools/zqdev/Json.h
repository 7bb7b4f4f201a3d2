// Results for programs.
#pragma once

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace ZQAPI::zqdev {

// A JSON value to be printed. Its texts are UTF-8; members of an object stay in the order in which they are added.
class Json {
public:
    Json(std::nullptr_t = nullptr);
    Json(bool value);
    Json(const char* text);
    Json(const std::string& text);
    template <std::integral Number>
    Json(Number value) : m_text(std::to_string(value)) {}
    // An object.
    Json(std::initializer_list<std::pair<const char*, Json>> members);

    static Json Array() { return Container("[]"); }
    static Json Object() { return Container("{}"); }

    void Add(const Json& element);                         // to an array
    void Set(const std::string& name, const Json& value);  // in an object, which has no such member yet

    bool IsEmpty() const { return m_values.empty(); }

    // In ASCII, one value per line. Lines but for the first are indented by so many columns.
    std::string ToText(std::size_t indentation = 0) const;

private:
    static Json Container(const char* brackets);

    std::string m_text;  // a container's are its brackets
    std::vector<std::string> m_names;
    std::vector<Json> m_values;
};

}  // namespace ZQAPI::zqdev
