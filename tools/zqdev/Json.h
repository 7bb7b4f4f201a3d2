// Results for programs. Json.cpp alone knows the library behind it, which takes long to compile.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>

namespace ZQAPI::zqdev {

// A JSON value to be printed, whatever bytes its texts have (AnyToUtf8); members of an object stay in the order in which
// they are added.
class Json {
public:
    Json(std::nullptr_t = nullptr);
    Json(bool value);
    Json(const char* text);
    Json(const std::string& text);
    template <std::integral Number>
    Json(Number value) : Json(Integer{static_cast<std::int64_t>(value)}) {}
    // An object.
    Json(std::initializer_list<std::pair<const char*, Json>> members);

    static Json Array();
    static Json Object();

    void Add(const Json& element);                         // to an array
    void Set(const std::string& name, const Json& value);  // in an object
    bool IsEmpty() const;

    // In ASCII, one value per line.
    std::string ToText() const;

private:
    using Value = nlohmann::ordered_json;
    struct Integer {
        std::int64_t value;
    };

    explicit Json(Integer number);
    explicit Json(Value&& value);
    Value& Own();

    std::shared_ptr<Value> m_value;  // shared by copies until one of them changes
};

}  // namespace ZQAPI::zqdev
