// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/GaplessNote.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace {

/// Takes the next number off the front of `text`.
std::optional<std::int64_t> TakeNumber(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    std::int64_t value = 0;
    constexpr int kHexadecimal = 16;
    char const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), end, value, kHexadecimal);
    if (error != std::errc() || value < 0) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
    return value;
}

} // namespace

std::optional<CGaplessNote> ParseGaplessNote(std::string_view text) {
    auto const unused = TakeNumber(text);
    auto const delay = TakeNumber(text);
    auto const padding = TakeNumber(text);
    auto const frames = TakeNumber(text);
    if (!unused || !delay || !padding || !frames) {
        return std::nullopt;
    }
    return CGaplessNote{*delay, *padding, *frames};
}

std::int64_t CountWithoutPadding(std::int64_t decoded, std::int64_t skippedStart,
                                 CGaplessNote const& note) {
    std::int64_t music = 0;
    bool const isWhole = !__builtin_add_overflow(note.m_nDelay, note.m_nFrames, &music) &&
                         decoded + skippedStart >= music;
    return isWhole ? std::max(decoded - note.m_nPadding, std::int64_t{0}) : decoded;
}
