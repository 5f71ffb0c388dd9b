// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Pieces of JSON text. Numbers are made here, because a library would print the double that is
// nearest to a float.

/// `text` in quotes. Bytes that are not UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);

/// A float with the nine significant digits that restore its bits; null when it is not finite.
std::string JsonNumber(float value);

std::string JsonNumber(std::int64_t value);

/// A float with the fewest digits that restore it: 128.1; null when it is not finite.
std::string JsonShortest(float value);

/// Seconds to the nearest microsecond, with no more decimals than it takes; null when not finite.
std::string JsonSeconds(double seconds);

/// One object, member by member in the order of the calls.
class CJsonObject {
public:
    /// Adds a member whose value is JSON text.
    CJsonObject& Add(std::string_view key, std::string_view json);

    [[nodiscard]] std::string Close() const { return m_sMembers + "}"; }

private:
    std::string m_sMembers = "{";
};

/// The JSON texts of `range`, each made by `make`, as an array.
template <typename Range, typename Make>
std::string JsonArray(Range const& range, Make make) {
    std::string text = "[";
    for (auto const& item : range) {
        text += text.size() > 1 ? "," : "";
        text += make(item);
    }
    return text + "]";
}
