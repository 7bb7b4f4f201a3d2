#include "Json.h"

#include <nlohmann/json.hpp>

#include "Records.h"

namespace ZQAPI::zqdev {

Json::Json(Value&& value) : m_value(std::make_shared<Value>(std::move(value))) {}

Json::Json(std::nullptr_t) : Json(Value()) {}

Json::Json(bool value) : Json(Value(value)) {}

Json::Json(const char* text) : Json(Value(text)) {}

Json::Json(const std::string& text) : Json(Value(AnyToUtf8(text))) {}

Json::Json(Integer number) : Json(Value(number.value)) {}

Json::Json(std::initializer_list<std::pair<const char*, Json>> members) : Json(Object()) {
    for (const auto& [name, value] : members) {
        Set(name, value);
    }
}

Json Json::Array() {
    return Json(Value::array());
}

Json Json::Object() {
    return Json(Value::object());
}

Json::Value& Json::Own() {
    if (m_value.use_count() > 1) {
        m_value = std::make_shared<Value>(*m_value);
    }
    return *m_value;
}

void Json::Add(const Json& element) {
    Own().push_back(*element.m_value);
}

void Json::Set(const std::string& name, const Json& value) {
    Own()[AnyToUtf8(name)] = *value.m_value;
}

bool Json::IsEmpty() const {
    return m_value->empty();
}

std::string Json::ToText() const {
    constexpr int kIndentation = 2;
    return m_value->dump(kIndentation, ' ', true);
}

}  // namespace ZQAPI::zqdev
