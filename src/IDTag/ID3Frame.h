// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

constexpr std::size_t kFrameIdBytes = 4;      // Standard: ID3v2.3.0, section 3.3.
constexpr std::size_t kFrameHeaderBytes = 10; // Standard: ID3v2.3.0, section 3.3.

/// Frame header as it stands on disk. Standard: ID3v2.3.0, section 3.3.
struct ID3V2_3_FRAMEHEADER {
    char m_sId[kFrameIdBytes];    // ASCII, not terminated
    std::uint8_t m_nBodyBytes[4]; // big-endian
    std::uint8_t m_nStatusFlags;  // kept as read
    std::uint8_t m_nFormatFlags;  // kept as read, except the mark of `SetData`
};
static_assert(sizeof(ID3V2_3_FRAMEHEADER) == kFrameHeaderBytes);

/// One frame of an ID3v2 tag: its header and its body, with the few body layouts that Tactus
/// reads and writes (text, comment, private data, and the picture of version 2.2).
///
/// Texts are UTF-16 units, one in each wchar_t. Reading goes by the body's first byte: 0 and 3
/// one byte a character, 1 UTF-16 with a mark, 2 UTF-16 big-endian, anything else UTF-16
/// little-endian; a unit FEFF is left out wherever it stands, and so is an odd last byte. Writing
/// always makes encoding 1: FF FE, little-endian units and a terminator of two zero bytes.
/// Thread: one at a time.
class CID3Frame {
public:
    CID3Frame();
    virtual ~CID3Frame();
    CID3Frame(CID3Frame const&) = delete;
    CID3Frame& operator=(CID3Frame const&) = delete;

    /// Takes the first four characters of `id`, or as many as it has.
    CStatus Initialize(char const* id);

    /// Returns: `kStatusOk` when the first four characters are equal, else `kStatusNothing`.
    CStatus IsFrameIdMatch(char const* id) const;

    /// Bytes of header and body.
    CStatus GetTotalLength(std::uint32_t* length) const;

    /// Refreshes the header's size from the body and hands out both. `*data` is valid until the
    /// body changes.
    /// Returns: `kStatusFailure` with an empty body; only `*header` is then set.
    CStatus GetData(ID3V2_3_FRAMEHEADER* header, std::uint8_t** data, std::uint32_t* size);

    /// Takes a header and the `size` bytes behind it. When the format flags say that the body is
    /// unsynchronised (0x02), it is decoded and the flag cleared.
    /// Returns: `kStatusFailure` when there is no memory for the body, which is then unchanged.
    CStatus SetData(ID3V2_3_FRAMEHEADER const* header, std::uint8_t const* data,
                    std::uint32_t size);

    /// Text of a text frame, terminators included; of a comment, what follows its description.
    /// Returns: `kStatusFailure` when the body is empty or can't be converted.
    CStatus GetString(std::wstring& out) const;

    /// Language and short description of a comment.
    /// Returns: `kStatusFailure` for other frames and an empty body; `kStatusNothing` when the
    /// description can't be converted: it is then empty, but the language is given.
    CStatus GetCommentInfo(std::string& language, std::wstring& description) const;

    /// Replaces the body by `text`; a comment becomes English with an empty description. Of each
    /// character the low 16 bits are written.
    CStatus SetString(wchar_t const* text);

    /// Bytes behind the owner of a private frame.
    /// Returns: `kStatusFailure` when there are none; `out` is then empty.
    CStatus GetPrivateData(std::vector<std::uint8_t>& out) const;

    CStatus SetPrivateData(char const* owner, std::uint8_t const* data, std::uint32_t size);

    /// Compares `owner` with the body up to its first 00, over the body's length at the most.
    /// Returns: `kStatusOk` when equal, `kStatusNothing` when not, `kStatusFailure` when the body
    /// is empty.
    CStatus IsPrivateURLMatch(char const* owner) const;

    /// Turns the body of a version 2.2 picture into that of a version 2.3 one.
    /// Returns: `kStatusFailure` for a body under 16 bytes, which stays as it is.
    CStatus ConvertPicToApic();

    /// Returns: false, with `out` empty, when encoding 1 has no known mark.
    static bool ByteArrayToWstring(std::uint8_t encoding, std::vector<std::uint8_t> const& bytes,
                                   std::wstring& out);

    /// Replaces `out` by mark, units and terminator.
    static void WstringToByteArray(wchar_t const* text, std::vector<std::uint8_t>& out);

private:
    bool IsComment() const;

    ID3V2_3_FRAMEHEADER m_header;
    std::vector<std::uint8_t> m_vBody;
};
