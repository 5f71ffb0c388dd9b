// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/TagFile.h"

namespace {

TagBytes BigEndian(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value >> 24U), static_cast<std::uint8_t>(value >> 16U),
            static_cast<std::uint8_t>(value >> 8U), static_cast<std::uint8_t>(value)};
}

TagBytes Syncsafe(std::uint32_t value) {
    return {static_cast<std::uint8_t>((value >> 21U) & 0x7FU),
            static_cast<std::uint8_t>((value >> 14U) & 0x7FU),
            static_cast<std::uint8_t>((value >> 7U) & 0x7FU),
            static_cast<std::uint8_t>(value & 0x7FU)};
}

std::uint32_t SizeOf(TagBytes const& bytes) {
    return static_cast<std::uint32_t>(bytes.size());
}

TagBytes Padded(std::string_view text, std::size_t bytes) {
    TagBytes out = Ascii(text);
    out.resize(bytes, ' ');
    return out;
}

} // namespace

TagBytes Joined(std::initializer_list<TagBytes> parts) {
    TagBytes out;
    for (TagBytes const& part : parts) {
        out.insert(out.end(), part.begin(), part.end());
    }
    return out;
}

TagBytes Ascii(std::string_view text) {
    return {text.begin(), text.end()};
}

TagBytes Zeros(std::size_t count) {
    return TagBytes(count, 0);
}

TagBytes TagHeader(std::uint8_t version, std::uint32_t size, std::uint8_t flags) {
    return Joined({Ascii("ID3"), {version, 0, flags}, Syncsafe(size)});
}

TagBytes TagOf(std::uint8_t version, TagBytes const& body, std::uint8_t flags) {
    return Joined({TagHeader(version, SizeOf(body), flags), body});
}

TagBytes Frame22(std::string_view id, TagBytes const& body) {
    TagBytes size = BigEndian(SizeOf(body));
    size.erase(size.begin());
    return Joined({Ascii(id), size, body});
}

TagBytes Frame23(std::string_view id, TagBytes const& body, std::uint8_t statusFlags,
                 std::uint8_t formatFlags) {
    return Joined({Ascii(id), BigEndian(SizeOf(body)), {statusFlags, formatFlags}, body});
}

TagBytes Frame24(std::string_view id, TagBytes const& body, std::uint8_t statusFlags,
                 std::uint8_t formatFlags) {
    return Joined({Ascii(id), Syncsafe(SizeOf(body)), {statusFlags, formatFlags}, body});
}

TagBytes Latin1Text(std::string_view text) {
    return Joined({{0x00}, Ascii(text)});
}

TagBytes WrittenText(std::string_view ascii) {
    TagBytes out = {0x01, 0xFF, 0xFE};
    for (char const c : ascii) {
        out.insert(out.end(), {static_cast<std::uint8_t>(c), 0x00});
    }
    out.insert(out.end(), {0x00, 0x00});
    return out;
}

TagBytes FakeAudio(std::size_t count) {
    TagBytes out(count);
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = static_cast<std::uint8_t>(1 + i % 251);
    }
    return out;
}

TagBytes MpegAudio(std::size_t count) {
    constexpr std::size_t kFrameBytes = 417; // 144 * 128000 / 44100, rounded down
    TagBytes out;
    for (std::size_t i = 0; i < count; ++i) {
        out = Joined({out, {0xFF, 0xFB, 0x90, 0x64}, FakeAudio(kFrameBytes - 4)});
    }
    return out;
}

TagBytes Id3v1Trailer(std::string_view title, std::string_view second, std::string_view third,
                      std::string_view year, std::uint8_t genre) {
    return Joined({Ascii("TAG"),
                   Padded(title, 30),
                   Padded(second, 30),
                   Padded(third, 30),
                   Padded(year, 4),
                   Padded("", 30),
                   {genre}});
}
