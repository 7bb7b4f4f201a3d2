#include "Json.h"

#include <nlohmann/json.hpp>

namespace ZQAPI::zqdev {

namespace {

// In quotes and ASCII.
std::string Escaped(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', true);
}

}  // namespace

Json::Json(std::nullptr_t) : m_text("null") {}

Json::Json(bool value) : m_text(value ? "true" : "false") {}

Json::Json(const char* text) : m_text(Escaped(text)) {}

Json::Json(const std::string& text) : m_text(Escaped(text)) {}

Json::Json(std::initializer_list<std::pair<const char*, Json>> members) : Json(Object()) {
    for (const auto& [name, value] : members) {
        Set(name, value);
    }
}

Json Json::Container(const char* brackets) {
    Json container;
    container.m_text = brackets;
    return container;
}

void Json::Add(const Json& element) {
    m_values.push_back(element);
}

void Json::Set(const std::string& name, const Json& value) {
    m_names.push_back(Escaped(name) + ": ");
    m_values.push_back(value);
}

std::string Json::ToText(std::size_t indentation) const {
    if (m_values.empty()) {
        return m_text;
    }
    constexpr std::size_t kStep = 2;
    const std::string outer = "\n" + std::string(indentation, ' ');
    const std::string inner = "\n" + std::string(indentation + kStep, ' ');
    std::string text(1, m_text.front());
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        text += (i == 0 ? "" : ",") + inner + (m_names.empty() ? "" : m_names[i]) +
                m_values[i].ToText(indentation + kStep);
    }
    return text + outer + m_text.back();
}

}  // namespace ZQAPI::zqdev
