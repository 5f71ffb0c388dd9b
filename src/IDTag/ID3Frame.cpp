// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Frame.h"

#include "IDTag/TagBytes.h"
#include "IDTag/TagLayout.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

namespace {

constexpr std::size_t kLanguageBytes = 3;           // Standard: ID3v2.3.0, section 4.11.
constexpr std::uint8_t kEncodingLatin1 = 0;         // Standard: ID3v2.3.0, section 3.3.
constexpr std::uint8_t kEncodingUtf16 = 1;          // Standard: ID3v2.3.0, section 3.3.
constexpr std::uint8_t kEncodingUtf16BigEndian = 2; // Standard: ID3v2.4.0 structure, section 4.
constexpr std::uint8_t kEncodingUtf8 = 3;           // Standard: ID3v2.4.0 structure, section 4.
constexpr wchar_t kByteOrderMark = 0xFEFF;          // Standard: Unicode.
constexpr std::size_t kSmallestPictureBytes = 16;   // Fixed: a shorter picture body is refused.
constexpr std::size_t kFormatBytes = 3;             // Standard: ID3v2.2.0, section 4.15.

using Bytes = std::vector<std::uint8_t>;

/// The `count` bytes of `body` from `first` on, or as many as there are.
Bytes Slice(Bytes const& body, std::size_t first,
            std::size_t count = std::numeric_limits<std::size_t>::max()) {
    std::size_t const begin = std::min(first, body.size());
    std::size_t const end = begin + std::min(count, body.size() - begin);
    return {body.begin() + static_cast<std::ptrdiff_t>(begin),
            body.begin() + static_cast<std::ptrdiff_t>(end)};
}

void AppendUtf16(Bytes const& bytes, std::size_t first, bool bigEndian, std::wstring& out) {
    for (std::size_t i = first; i + 1 < bytes.size(); i += 2) {
        unsigned const high = bytes[bigEndian ? i : i + 1];
        unsigned const low = bytes[bigEndian ? i + 1 : i];
        auto const unit = static_cast<wchar_t>((high << 8U) | low);
        if (unit != kByteOrderMark) {
            out.push_back(unit);
        }
    }
}

/// FF FE, the low 16 bits of every character, 00 00.
void AppendText(wchar_t const* text, Bytes& out) {
    out.insert(out.end(), {0xFF, 0xFE});
    for (; *text != 0; ++text) {
        // Deliberate: a character above U+FFFF is cut to its low 16 bits, not paired.
        auto const unit = static_cast<std::uint32_t>(*text & 0xFFFF);
        out.push_back(static_cast<std::uint8_t>(unit));
        out.push_back(static_cast<std::uint8_t>(unit >> 8U));
    }
    out.insert(out.end(), {0x00, 0x00});
}

/// The picture formats of version 2.2, case as written. An unknown one has no type.
std::string_view MimeTypeOf(std::string_view format) {
    struct CImageFormat {
        std::string_view m_sFormat;
        std::string_view m_sMimeType;
    };
    static constexpr CImageFormat kFormats[] = {
        {"png", "image/png"},  {"PNG", "image/png"},  {"jpg", "image/jpeg"}, {"JPG", "image/jpeg"},
        {"jpe", "image/jpeg"}, {"JPE", "image/jpeg"}, {"bmp", "image/bmp"},  {"BMP", "image/bmp"},
        {"gif", "image/gif"},  {"GIF", "image/gif"},  {"tif", "image/tiff"}, {"TIF", "image/tiff"}};
    for (auto const& entry : kFormats) {
        if (entry.m_sFormat == format) {
            return entry.m_sMimeType;
        }
    }
    return {};
}

} // namespace

CID3Frame::CID3Frame() : m_header() {
}

CID3Frame::~CID3Frame() = default;

CStatus CID3Frame::Initialize(char const* id) {
    std::memcpy(m_header.m_sId, id, std::min(std::strlen(id), kFrameIdBytes));
    return kStatusOk;
}

CStatus CID3Frame::IsFrameIdMatch(char const* id) const {
    return std::strncmp(m_header.m_sId, id, kFrameIdBytes) == 0 ? kStatusOk : kStatusNothing;
}

bool CID3Frame::IsComment() const {
    return IsFrameIdMatch(kCommentId) == kStatusOk;
}

CStatus CID3Frame::GetTotalLength(std::uint32_t* length) const {
    *length = static_cast<std::uint32_t>(m_vBody.size() + kFrameHeaderBytes);
    return kStatusOk;
}

CStatus CID3Frame::GetData(ID3V2_3_FRAMEHEADER* header, std::uint8_t** data, std::uint32_t* size) {
    auto const length = static_cast<std::uint32_t>(m_vBody.size());
    WriteBigEndian(length, m_header.m_nBodyBytes);
    *header = m_header;
    if (m_vBody.empty()) {
        return kStatusFailure;
    }
    *data = m_vBody.data();
    *size = length;
    return kStatusOk;
}

CStatus CID3Frame::SetData(ID3V2_3_FRAMEHEADER const* header, std::uint8_t const* data,
                           std::uint32_t size) {
    try {
        Bytes body(data, data + size);
        m_vBody.swap(body);
    } catch (std::bad_alloc const&) {
        return kStatusFailure;
    }
    m_header = *header;
    if ((m_header.m_nFormatFlags & kFrameUnsynchronized) != 0) {
        RemoveUnsynchronization(m_vBody.data(), &size);
        m_vBody.resize(size);
        m_header.m_nFormatFlags &= static_cast<std::uint8_t>(~kFrameUnsynchronized);
    }
    return kStatusOk;
}

CStatus CID3Frame::GetString(std::wstring& out) const {
    if (m_vBody.empty()) {
        return kStatusFailure;
    }
    std::size_t const start = IsComment() ? 1 + kLanguageBytes : 1;
    std::wstring text;
    if (!ByteArrayToWstring(m_vBody.front(), Slice(m_vBody, start), text)) {
        return kStatusFailure;
    }
    if (IsComment()) {
        std::size_t const end = text.find(L'\0');
        text.erase(0, end == std::wstring::npos ? end : end + 1);
    }
    out = std::move(text);
    return kStatusOk;
}

CStatus CID3Frame::GetCommentInfo(std::string& language, std::wstring& description) const {
    if (!IsComment() || m_vBody.empty()) {
        return kStatusFailure;
    }
    Bytes const code = Slice(m_vBody, 1, kLanguageBytes);
    language.assign(code.begin(), code.end());
    if (!ByteArrayToWstring(m_vBody.front(), Slice(m_vBody, 1 + kLanguageBytes), description)) {
        return kStatusNothing;
    }
    description.resize(std::min(description.find(L'\0'), description.size()));
    return kStatusOk;
}

CStatus CID3Frame::SetString(wchar_t const* text) {
    Bytes body = {kEncodingUtf16};
    if (IsComment()) {
        body.insert(body.end(), kCommentLanguage, kCommentLanguage + kLanguageBytes);
        AppendText(L"", body);
    }
    AppendText(text, body);
    m_vBody.swap(body);
    return kStatusOk;
}

CStatus CID3Frame::GetPrivateData(std::vector<std::uint8_t>& out) const {
    out.clear();
    auto const end = std::find(m_vBody.begin(), m_vBody.end(), std::uint8_t{0});
    if (end == m_vBody.end() || end + 1 == m_vBody.end()) {
        return kStatusFailure;
    }
    out.assign(end + 1, m_vBody.end());
    return kStatusOk;
}

CStatus CID3Frame::SetPrivateData(char const* owner, std::uint8_t const* data, std::uint32_t size) {
    Bytes body(owner, owner + std::strlen(owner) + 1);
    body.insert(body.end(), data, data + size);
    m_vBody.swap(body);
    return kStatusOk;
}

CStatus CID3Frame::IsPrivateURLMatch(char const* owner) const {
    if (m_vBody.empty()) {
        return kStatusFailure;
    }
    // Deliberate: an owner that isn't terminated within the body matches any name that begins
    // with the whole body.
    auto const* body = reinterpret_cast<char const*>(m_vBody.data());
    return std::strncmp(owner, body, m_vBody.size()) == 0 ? kStatusOk : kStatusNothing;
}

CStatus CID3Frame::ConvertPicToApic() {
    if (m_vBody.size() < kSmallestPictureBytes) {
        return kStatusFailure;
    }
    // 2.2: encoding, format, picture type, the rest; 2.3: encoding, MIME type, 00, type, the rest.
    Bytes const format = Slice(m_vBody, 1, kFormatBytes);
    std::string_view const mimeType = MimeTypeOf(std::string(format.begin(), format.end()));
    Bytes body = {m_vBody.front()};
    body.insert(body.end(), mimeType.begin(), mimeType.end());
    body.push_back(0);
    Bytes const rest = Slice(m_vBody, 1 + kFormatBytes);
    body.insert(body.end(), rest.begin(), rest.end());
    ID3V2_3_FRAMEHEADER const header = m_header;
    return SetData(&header, body.data(), static_cast<std::uint32_t>(body.size()));
}

bool CID3Frame::ByteArrayToWstring(std::uint8_t encoding, std::vector<std::uint8_t> const& bytes,
                                   std::wstring& out) {
    out.clear();
    // Deliberate: UTF-8 bodies are read one byte a character, like ISO-8859-1.
    if (encoding == kEncodingLatin1 || encoding == kEncodingUtf8) {
        out.assign(bytes.begin(), bytes.end());
        return true;
    }
    if (encoding != kEncodingUtf16) {
        AppendUtf16(bytes, 0, encoding == kEncodingUtf16BigEndian, out);
        return true;
    }
    if (bytes.size() < 2) {
        return false;
    }
    bool const bigEndian = bytes[0] == 0xFE && bytes[1] == 0xFF;
    bool const littleEndian = bytes[0] == 0xFF && bytes[1] == 0xFE;
    if (bigEndian || littleEndian) {
        AppendUtf16(bytes, 2, bigEndian, out);
    }
    return bigEndian || littleEndian;
}

void CID3Frame::WstringToByteArray(wchar_t const* text, std::vector<std::uint8_t>& out) {
    out.clear();
    AppendText(text, out);
}
