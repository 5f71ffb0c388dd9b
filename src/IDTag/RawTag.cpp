// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/RawTag.h"

#include "IDTag/MacCFile.h"
#include "IDTag/TagBytes.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::uint64_t kDigestPrime = 0x100000001B3U; // Standard: FNV-1a prime, 64 bits.
constexpr unsigned kDigestShift = 32; // Fixed: lets the upper half of a word reach the lower one.
constexpr char kTagMark[] = "ID3";    // Standard: ID3v2.3.0, section 3.1.
constexpr std::size_t kTagMarkBytes = 3;   // Standard: ID3v2.3.0, section 3.1.
constexpr std::uint8_t kOldestVersion = 2; // Fixed: ID3v2.2.
constexpr std::uint8_t kNewestVersion = 4; // Fixed: ID3v2.4.

} // namespace

void CDigest::Add(std::span<std::uint8_t const> bytes) {
    std::uint64_t word = 0;
    for (; bytes.size() >= sizeof word; bytes = bytes.subspan(sizeof word)) {
        std::memcpy(&word, bytes.data(), sizeof word);
        m_nState = (m_nState ^ word) * kDigestPrime;
        m_nState ^= m_nState >> kDigestShift;
    }
    for (std::uint8_t const byte : bytes) {
        m_nState = (m_nState ^ byte) * kDigestPrime;
    }
}

CDigest DigestOf(std::span<std::uint8_t const> firstBytes) {
    CDigest digest;
    std::size_t const headerBytes = std::min(firstBytes.size(), kTagHeaderBytes);
    digest.Add(firstBytes.first(headerBytes));
    digest.Add(firstBytes.subspan(headerBytes));
    return digest;
}

std::uint64_t DigestedBytes(std::uint64_t tagBytes, std::uint64_t fileBytes) {
    return std::min(std::max<std::uint64_t>(tagBytes, kTagHeaderBytes), fileBytes);
}

CStatus CRawTag::Load(wchar_t const* path) {
    *this = CRawTag();
    CFile file;
    if (!file.Open(path, CFile::modeRead, nullptr)) {
        return kStatusFailure;
    }
    file.Seek(0, CFile::begin);
    std::uint32_t const headerBytes = file.Read(m_header.data(), kTagHeaderBytes);
    m_digest.Add({m_header.data(), headerBytes});
    m_bMarked = headerBytes == kTagHeaderBytes &&
                std::memcmp(m_header.data(), kTagMark, kTagMarkBytes) == 0;
    if (!m_bMarked || Version() < kOldestVersion || Version() > kNewestVersion) {
        return kStatusNothing;
    }
    std::uint32_t const size = ReadSyncsafe(&m_header[kTagSizeOffset]);
    m_nTagBytes = size + static_cast<std::uint32_t>(kTagHeaderBytes);
    if (size > file.GetLength() - kTagHeaderBytes) {
        return kStatusFailure;
    }
    m_pBody.reset(new (std::nothrow) std::uint8_t[size]);
    m_bNoMemory = m_pBody == nullptr;
    if (m_bNoMemory || file.Read(m_pBody.get(), size) != size) {
        return kStatusFailure;
    }
    m_digest.Add({m_pBody.get(), size});
    m_nBodyBytes = size;
    if ((Flags() & kTagUnsynchronized) != 0) {
        RemoveUnsynchronization(m_pBody.get(), &m_nBodyBytes);
    }
    return kStatusOk;
}
