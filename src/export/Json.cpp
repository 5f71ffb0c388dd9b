// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

std::string JsonText(std::string_view text) {
    using Json = nlohmann::json;
    return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string JsonNumber(float value) {
    constexpr int kDigits = 9; // Standard: IEEE 754, enough to restore every single.
    // JSON has no word for infinity and NaN.
    if (!std::isfinite(value)) {
        return "null";
    }
    std::array<char, 32> text{};
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::general, kDigits);
    return {text.data(), end};
}

std::string JsonNumber(std::int64_t value) {
    return std::to_string(value);
}

CJsonObject& CJsonObject::Add(std::string_view key, std::string_view json) {
    m_sMembers += m_sMembers.size() > 1 ? "," : "";
    m_sMembers += JsonText(key);
    m_sMembers += ':';
    m_sMembers += json;
    return *this;
}
