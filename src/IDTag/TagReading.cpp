// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: take the header; undo what keeps players from finding a frame in the tag; go from
// frame to frame, past what stands before a body in its form; keep the bodies that are text.

#include "IDTag/TagReading.h"

#include "IDTag/FrameIds.h"
#include "IDTag/RawTag.h"
#include "IDTag/TagBytes.h"
#include "IDTag/TagLayout.h"
#include "base/Utf16.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr std::size_t kMostTexts = 1000;     // Fixed: far more than any tag has.
constexpr std::size_t kLongestText = 65'536; // Fixed: bytes of a frame; what is behind is left out.
constexpr char kUserTextId[] = "TXXX";       // Standard: ID3v2.3.0, section 4.2.2.

// Standard: ID3v2.3.0, sections 3.1 to 3.3, and ID3v2.4.0 structure, sections 3 and 4.
constexpr std::size_t kFormOffset = 9;

/// What a frame's form flag means in its version.
struct CForm {
    bool m_bCompressed = false;
    bool m_bEncrypted = false;
    bool m_bUnsynchronized = false;
    std::size_t m_nAhead = 0; // bytes that stand before the body
};

CForm FormOf(std::uint8_t version, unsigned flags) {
    auto const has = [flags](unsigned bit) { return (flags & bit) != 0; };
    if (version == 4) {
        return {has(0x08), has(0x04), has(0x02), (has(0x40) ? 1U : 0U) + (has(0x01) ? 4U : 0U)};
    }
    return {has(0x80), has(0x40), false, has(0x20) ? 1U : 0U};
}

std::vector<std::uint8_t> Resynchronized(std::span<std::uint8_t const> bytes) {
    std::vector<std::uint8_t> plain(bytes.begin(), bytes.end());
    auto size = static_cast<std::uint32_t>(plain.size());
    RemoveUnsynchronization(plain.data(), &size);
    plain.resize(size);
    return plain;
}

/// Bytes before the first frame.
std::size_t ExtendedBytes(std::uint8_t version, std::uint8_t flags,
                          std::span<std::uint8_t const> body) {
    constexpr std::size_t kSizeBytes = 4;
    if ((flags & kTagHasExtendedHeader) == 0 || version == 2 || body.size() < kSizeBytes) {
        return 0;
    }
    // Version 2.4 counts the four bytes of the size, version 2.3 doesn't.
    return version == 4 ? ReadSyncsafe(body.data())
                        : std::size_t{ReadBigEndian(body.data())} + kSizeBytes;
}

/// Some programs write plain sizes into version 2.4.
std::size_t FrameSize(std::uint8_t version, std::uint8_t const* header) {
    if (version == 2) {
        std::uint8_t const size[4] = {0, header[3], header[4], header[5]};
        return ReadBigEndian(size);
    }
    std::uint8_t const* const size = header + 4;
    bool const isPlain = version == 3 || ((size[0] | size[1] | size[2] | size[3]) & 0x80) != 0;
    return isPlain ? ReadBigEndian(size) : ReadSyncsafe(size);
}

std::string FromLatin1(std::string_view bytes) {
    std::u16string units;
    for (char const byte : bytes) {
        units += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return EncodeUtf8(units);
}

/// The pieces of `text` between its zeros.
template <typename Text>
std::vector<Text> SplitAtZeros(Text const& text) {
    std::vector<Text> pieces;
    std::size_t begin = 0;
    while (begin <= text.size()) {
        std::size_t const end =
            std::min(text.find(typename Text::value_type(), begin), text.size());
        pieces.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return pieces;
}

/// UTF-16 units; a mark says how the bytes of what follows it lie, and goes.
std::u16string Units(std::span<std::uint8_t const> bytes, bool isBigEndian) {
    constexpr char16_t kMark = 0xFEFF;
    constexpr char16_t kTurnedMark = 0xFFFE;
    std::u16string units;
    for (; bytes.size() >= 2; bytes = bytes.subspan(2)) {
        auto const unit = static_cast<char16_t>(isBigEndian ? bytes[0] << 8U | bytes[1]
                                                            : bytes[1] << 8U | bytes[0]);
        isBigEndian = unit == kTurnedMark ? !isBigEndian : isBigEndian;
        if (unit != kMark && unit != kTurnedMark) {
            units += unit;
        }
    }
    return units;
}

bool AreEqualWords(std::string_view a, std::string_view b) {
    auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::vector<std::string> WithoutEmpty(std::vector<std::string> texts) {
    std::erase(texts, std::string());
    return texts;
}

std::string JoinedAtZeros(std::vector<std::string> const& texts) {
    std::string joined;
    for (std::string const& text : texts) {
        joined.append(text).append(1, '\0');
    }
    return joined;
}

} // namespace

std::string Utf8OrLatin1(std::string_view bytes) {
    std::optional<std::u16string> const units = DecodeUtf8(bytes);
    return units ? EncodeUtf8(*units) : FromLatin1(bytes);
}

std::vector<std::string> DecodeTexts(std::span<std::uint8_t const> body) {
    enum : std::uint8_t { kLatin1, kUtf16, kUtf16BigEndian, kUtf8 }; // Standard: ID3v2.4.0, 4.
    if (body.empty()) {
        return {};
    }
    std::span<std::uint8_t const> const bytes = body.subspan(1);
    std::vector<std::string> texts;
    if (body[0] == kUtf16 || body[0] == kUtf16BigEndian) {
        for (std::u16string const& piece : SplitAtZeros(Units(bytes, body[0] == kUtf16BigEndian))) {
            texts.push_back(EncodeUtf8(piece));
        }
        return texts;
    }
    std::string const text(bytes.begin(), bytes.end());
    for (std::string const& piece : SplitAtZeros(text)) {
        texts.push_back(body[0] == kUtf8 ? Utf8OrLatin1(piece) : FromLatin1(piece));
    }
    return texts;
}

CTagReading::CTagReading(std::span<std::uint8_t const> tag, bool keepsFrames)
    : m_bKeepsFrames(keepsFrames) {
    if (tag.size() < kTagHeaderBytes || tag[0] != 'I' || tag[1] != 'D' || tag[2] != '3' ||
        tag[kTagVersionOffset] < 2 || tag[kTagVersionOffset] > 4) {
        return;
    }
    std::size_t const size = ReadSyncsafe(&tag[kTagSizeOffset]);
    std::uint8_t const version = tag[kTagVersionOffset];
    std::uint8_t const flags = tag[kTagFlagsOffset];
    std::span<std::uint8_t const> body = tag.subspan(kTagHeaderBytes);
    body = body.first(std::min(size, body.size()));
    std::vector<std::uint8_t> plain;
    bool const isUnsynchronized = (flags & kTagUnsynchronized) != 0;
    if (isUnsynchronized && version < 4) {
        plain = Resynchronized(body);
        body = plain;
    }
    std::size_t const ahead = ExtendedBytes(version, flags, body);
    // In version 2.4 it is done to every frame for itself.
    m_nEveryForm = isUnsynchronized && version == 4 ? kFrameUnsynchronized : std::uint8_t{0};
    Walk(version, body.subspan(std::min(ahead, body.size())));
}

void CTagReading::Walk(std::uint8_t version, std::span<std::uint8_t const> body) {
    bool const isOld = version == 2;
    std::size_t const headerBytes = isOld ? kOldFrameHeaderBytes : kTagHeaderBytes;
    while (body.size() > headerBytes && body[0] != 0) {
        std::size_t const size = FrameSize(version, body.data());
        if (size > body.size() - headerBytes) {
            return;
        }
        auto const* const name = reinterpret_cast<char const*>(body.data());
        char const* const id = isOld ? FindWiderV3FrameId(name) : name;
        if (id != nullptr) {
            Take(version, {id, 4}, isOld ? 0U : body[kFormOffset] | m_nEveryForm,
                 body.subspan(headerBytes, size));
        }
        body = body.subspan(headerBytes + size);
    }
}

/// Takes one frame, its body as it stands in the tag.
void CTagReading::Take(std::uint8_t version, std::string_view id, unsigned flags,
                       std::span<std::uint8_t const> body) {
    CForm const form = FormOf(version, flags);
    bool const isUnreadable = form.m_bCompressed || form.m_bEncrypted;
    m_bPlain = m_bPlain && !isUnreadable && id != "CHAP" && id != "CTOC";
    bool const isText = id.front() == 'T' && !isUnreadable && m_vTexts.size() < kMostTexts;
    if ((!isText && !m_bKeepsFrames) || body.size() < form.m_nAhead) {
        return;
    }
    body = body.subspan(form.m_nAhead);
    body = body.first(isText ? std::min(body.size(), kLongestText) : body.size());
    std::vector<std::uint8_t> plain(body.begin(), body.end());
    if (form.m_bUnsynchronized) {
        plain = Resynchronized(plain);
    }
    if (isText) {
        m_vTexts.push_back({std::string(id), DecodeTexts(plain)});
    }
    if (m_bKeepsFrames) {
        m_vFrames.emplace_back(id, isText ? JoinedAtZeros(WithoutEmpty(m_vTexts.back().m_vTexts))
                                          : std::string(plain.begin(), plain.end()));
    }
}

std::vector<std::string> CTagReading::Texts(std::string_view id) const {
    auto const found = std::ranges::find(m_vTexts, id, &CText::m_sId);
    return found != m_vTexts.end() ? WithoutEmpty(found->m_vTexts) : std::vector<std::string>();
}

std::vector<std::string> CTagReading::UserTexts(std::string_view description) const {
    for (CText const& text : m_vTexts) {
        if (text.m_sId == kUserTextId && !text.m_vTexts.empty() &&
            AreEqualWords(text.m_vTexts.front(), description)) {
            return WithoutEmpty({text.m_vTexts.begin() + 1, text.m_vTexts.end()});
        }
    }
    return {};
}
