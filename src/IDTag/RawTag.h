// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagLayout.h"
#include "base/Status.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// Fingerprint of a file's first bytes, to tell whether they have changed since: FNV-1a over words
/// of eight bytes, the rest byte by byte, because covers of megabytes are read for every row of a
/// list.
class CDigest {
public:
    void Add(std::span<std::uint8_t const> bytes);
    [[nodiscard]] std::uint64_t Value() const { return m_nState; }
    bool operator==(CDigest const&) const = default;

private:
    std::uint64_t m_nState = 0xCBF29CE484222325U; // Standard: FNV-1a offset basis, 64 bits.
};

/// The tag at a file's start as bytes: header and body, the body decoded when the whole tag is
/// unsynchronised.
struct CRawTag {
    std::array<std::uint8_t, kTagHeaderBytes> m_header = {};
    bool m_bMarked = false; // the header is one of a tag, be its version known or not
    std::unique_ptr<std::uint8_t[]> m_pBody;
    std::uint32_t m_nBodyBytes = 0; // after decoding
    std::uint32_t m_nTagBytes = 0;  // as claimed, header included; 0 without a known tag
    bool m_bNoMemory = false;       // there was none for the body
    CDigest m_digest;               // of the tag, or of the first bytes of a file without one

    [[nodiscard]] std::uint8_t Version() const { return m_header[3]; }
    [[nodiscard]] std::uint8_t Revision() const { return m_header[4]; }
    [[nodiscard]] std::uint8_t Flags() const { return m_header[5]; }

    /// Reads the tag of the file at `path`. Nothing is taken from memory before the file is known
    /// to hold as many bytes as the header claims.
    /// Returns: `kStatusOk`; `kStatusNothing` for a file without a tag of version 2, 3 or 4;
    /// `kStatusFailure` when the file doesn't open, ends within the tag or the body gets no memory.
    CStatus Load(wchar_t const* path);
};

/// Digest of a file's first bytes as `CRawTag::Load` takes it: header and body apart.
CDigest DigestOf(std::span<std::uint8_t const> firstBytes);

/// Number of a file's first bytes that its digest covers.
std::uint64_t DigestedBytes(std::uint64_t tagBytes, std::uint64_t fileBytes);
