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

std::string JsonShortest(float value) {
    if (!std::isfinite(value)) {
        return "null";
    }
    std::array<char, 32> text{};
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

std::string JsonSeconds(double seconds) {
    constexpr int kDecimals = 6;
    if (!std::isfinite(seconds)) {
        return "null";
    }
    std::array<char, 320> text{}; // Derived: the largest double has 309 digits before the point.
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size(), seconds,
                                            std::chars_format::fixed, kDecimals);
    std::string number(text.data(), end);
    number.resize(number.find_last_not_of('0') + 1);
    return number.ends_with('.') ? number.substr(0, number.size() - 1) : number;
}

CJsonObject& CJsonObject::Add(std::string_view key, std::string_view json) {
    m_sMembers += m_sMembers.size() > 1 ? "," : "";
    m_sMembers += JsonText(key);
    m_sMembers += ':';
    m_sMembers += json;
    return *this;
}
