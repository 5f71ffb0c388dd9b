// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The header of a Windows Media file: objects of a GUID, a size and a body, some of which hold
// texts in UTF-16, the low byte first. Standard: Advanced Systems Format Specification, section 3.

#include "base/Utf16.h"
#include "platform/TagReaders.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace {

constexpr std::size_t kGuidBytes = 16;
constexpr std::size_t kObjectBytes = 24; // GUID and size
constexpr std::int64_t kAsfHeaderBytes = 30;
constexpr std::int64_t kMostHeaderBytes = std::int64_t{16}
                                          << 20U; // Fixed: of the header, with a cover.
constexpr unsigned kTextType = 0;                 // of an attribute
constexpr unsigned kNumberType = 3;               // likewise, of four bytes

using namespace std::string_view_literals;
constexpr std::string_view kDescription =
    "\x33\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C"sv;
constexpr std::string_view kAttributes =
    "\x40\xA4\xD0\xD2\x07\xE3\xD2\x11\x97\xF0\x00\xA0\xC9\x5E\xA8\x50"sv;

/// Bytes that are taken off the front; none when there aren't as many.
class CFront {
public:
    explicit CFront(std::span<std::uint8_t const> bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool IsEmpty() const { return m_bytes.empty(); }

    std::span<std::uint8_t const> Take(std::uint64_t count) {
        std::span<std::uint8_t const> const taken =
            m_bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(count, m_bytes.size())));
        m_bytes = m_bytes.subspan(taken.size());
        return taken;
    }

    std::uint64_t Number(std::size_t count) {
        std::uint64_t value = 0;
        std::span<std::uint8_t const> const bytes = Take(count);
        for (std::size_t i = bytes.size(); i > 0; --i) {
            value = value << 8U | bytes[i - 1];
        }
        return value;
    }

private:
    std::span<std::uint8_t const> m_bytes;
};

/// A text up to its first zero.
std::string WideText(std::span<std::uint8_t const> bytes) {
    std::u16string units;
    for (; bytes.size() >= 2; bytes = bytes.subspan(2)) {
        auto const unit = static_cast<char16_t>(bytes[0] | bytes[1] << 8);
        if (unit == 0) {
            break;
        }
        units += unit;
    }
    return EncodeUtf8(units);
}

void TakeDescription(CFront body, COtherTags& tags) {
    constexpr std::size_t kTexts = 5; // title, author, copyright, description, rating
    std::array<std::uint64_t, kTexts> sizes{};
    for (std::uint64_t& size : sizes) {
        size = body.Number(2);
    }
    tags.m_sTitle = WideText(body.Take(sizes[0]));
    tags.m_sArtist = WideText(body.Take(sizes[1]));
}

void TakeAttribute(std::string const& name, std::string const& text, COtherTags& tags) {
    if (name == "WM/AlbumTitle") {
        tags.m_sAlbum = text;
    } else if (name == "WM/InitialKey") {
        tags.m_sKey = text;
    } else if ((name == "WM/BeatsPerMinute" || name == "BPM") && !text.empty()) {
        tags.m_vTempos.push_back(text);
    }
}

void TakeAttributes(CFront body, COtherTags& tags) {
    std::uint64_t const count = body.Number(2);
    for (std::uint64_t i = 0; i < count && !body.IsEmpty(); ++i) {
        std::string const name = WideText(body.Take(body.Number(2)));
        std::uint64_t const type = body.Number(2);
        CFront value(body.Take(body.Number(2)));
        if (type == kTextType) {
            TakeAttribute(name, WideText(value.Take(UINT64_MAX)), tags);
        } else if (type == kNumberType) {
            TakeAttribute(name, std::to_string(value.Number(4)), tags);
        }
    }
}

} // namespace

void ReadAsfTags(CSourceFile& source, std::int64_t begin, COtherTags& tags) {
    std::vector<std::uint8_t> const head = ReadPiece(source, begin, kAsfHeaderBytes);
    CFront front(head);
    (void)front.Take(kGuidBytes);
    auto const size = static_cast<std::int64_t>(
        std::min<std::uint64_t>(front.Number(8), static_cast<std::uint64_t>(kMostHeaderBytes)));
    std::vector<std::uint8_t> const bytes =
        ReadPiece(source, begin + kAsfHeaderBytes, size - kAsfHeaderBytes);
    CFront objects(bytes);
    while (!objects.IsEmpty()) {
        std::span<std::uint8_t const> const guid = objects.Take(kGuidBytes);
        std::string_view const name(reinterpret_cast<char const*>(guid.data()), guid.size());
        std::uint64_t const length = objects.Number(8);
        CFront const body(objects.Take(length - std::min<std::uint64_t>(length, kObjectBytes)));
        if (name == kDescription) {
            TakeDescription(body, tags);
        } else if (name == kAttributes) {
            TakeAttributes(body, tags);
        }
    }
}
