// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/FrameWalk.h"

#include "IDTag/FrameIds.h"
#include "IDTag/TagBytes.h"
#include "IDTag/TagLayout.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t kLongestExtendedHeaderBytes = 14; // Standard: ID3v2.3.0, section 3.2.
constexpr std::uint32_t kExtendedSizeBytes = 4;           // Standard: ID3v2.3.0, section 3.2.
constexpr char kOldPictureId[] = "PIC";                   // Standard: ID3v2.2.0, section 4.15.

} // namespace

CFrameWalk::CFrameWalk(CRawTag const& tag, bool everyId)
    : m_tag(tag), m_bEveryId(everyId), m_nOffset(StartOffset()) {
}

std::uint32_t CFrameWalk::StartOffset() const {
    // Deliberate: version 2.4's extended header isn't skipped, and version 2.3's is skipped
    // without the four bytes of its size.
    if ((m_tag.Flags() & kTagHasExtendedHeader) == 0 || m_tag.Version() != 3) {
        return 0;
    }
    std::uint8_t size[kExtendedSizeBytes] = {};
    if (m_tag.m_nBodyBytes > 0) {
        std::memcpy(size, m_tag.m_pBody.get(), std::min(m_tag.m_nBodyBytes, kExtendedSizeBytes));
    }
    return ReadSyncsafe(size);
}

bool CFrameWalk::Next(CFoundFrame* found) {
    return m_tag.Version() == 2 ? NextOld(found) : NextPlain(found);
}

bool CFrameWalk::NextOld(CFoundFrame* found) {
    if (std::uint64_t{m_nOffset} + kOldFrameHeaderBytes >= m_tag.m_nBodyBytes) {
        return false;
    }
    std::uint8_t const* const header = m_tag.m_pBody.get() + m_nOffset;
    if (header[0] == 0) {
        return false;
    }
    *found = CFoundFrame();
    auto const* const oldId = reinterpret_cast<char const*>(header);
    std::memcpy(found->m_sOldId, oldId, kOldFrameIdBytes);
    char const* const id = m_bEveryId ? FindWiderV3FrameId(oldId) : FindV3FrameId(oldId);
    found->m_bKnownId = id != nullptr;
    if (!found->m_bKnownId && !m_bEveryId) {
        return true;
    }
    found->m_bWiderId = found->m_bKnownId && FindV3FrameId(oldId) == nullptr;
    std::memcpy(found->m_header.m_sId, found->m_bKnownId ? id : found->m_sOldId, kFrameIdBytes);
    found->m_bOldPicture = std::strncmp(oldId, kOldPictureId, kOldFrameIdBytes) == 0;
    std::uint8_t const size[4] = {0, header[3], header[4], header[5]};
    return TakeBody(kOldFrameHeaderBytes, ReadBigEndian(size), found);
}

bool CFrameWalk::NextPlain(CFoundFrame* found) {
    if (std::uint64_t{m_nOffset} + kFrameHeaderBytes >= m_tag.m_nBodyBytes) {
        return false;
    }
    std::uint8_t const* const header = m_tag.m_pBody.get() + m_nOffset;
    if (header[0] == 0) {
        return false;
    }
    *found = CFoundFrame();
    std::memcpy(&found->m_header, header, kFrameHeaderBytes);
    std::uint8_t const* const size = found->m_header.m_nBodyBytes;
    return TakeBody(kFrameHeaderBytes,
                    m_tag.Version() == 3 ? ReadBigEndian(size) : ReadSyncsafe(size), found);
}

bool CFrameWalk::TakeBody(std::uint32_t headerBytes, std::uint64_t size, CFoundFrame* found) {
    std::uint64_t const end = m_nOffset + headerBytes + size;
    if (size == 0 || end > m_tag.m_nBodyBytes) {
        return false;
    }
    found->m_pBody = m_tag.m_pBody.get() + m_nOffset + headerBytes;
    found->m_nBodyBytes = static_cast<std::uint32_t>(size);
    m_nOffset = static_cast<std::uint32_t>(end);
    return true;
}

bool CFrameWalk::HasData(std::uint32_t begin, std::uint32_t end) const {
    std::uint8_t const* const body = m_tag.m_pBody.get();
    return begin < end &&
           std::any_of(body + begin, body + end, [](std::uint8_t byte) { return byte != 0; });
}

/// Where the walk ended, behind the headers there that have an id and the size 0.
std::uint32_t CFrameWalk::PastEmptyFrames() const {
    constexpr std::uint32_t kSizeBytes = 4; // Standard: ID3v2.3.0, section 3.3.
    bool const isOld = m_tag.Version() == 2;
    std::uint32_t const idBytes = isOld ? kOldFrameIdBytes : kFrameIdBytes;
    std::uint32_t const headerBytes = isOld ? kOldFrameHeaderBytes : kFrameHeaderBytes;
    std::uint32_t const sizeEnd = isOld ? kOldFrameHeaderBytes : kFrameIdBytes + kSizeBytes;
    std::uint8_t const* const body = m_tag.m_pBody.get();
    auto const isIdCharacter = [](std::uint8_t c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    };
    std::uint32_t offset = m_nOffset;
    while (std::uint64_t{offset} + headerBytes <= m_tag.m_nBodyBytes &&
           std::all_of(body + offset, body + offset + idBytes, isIdCharacter) &&
           !HasData(offset + idBytes, offset + sizeEnd)) {
        offset += headerBytes;
    }
    return offset;
}

bool CFrameWalk::HasUnreachedData() const {
    std::uint32_t const end = m_tag.m_nBodyBytes;
    std::uint32_t const start = StartOffset();
    if (start >= end && start > 0) {
        return HasData(kExtendedSizeBytes, end);
    }
    return HasData(PastEmptyFrames(), end) || HasData(kLongestExtendedHeaderBytes, start);
}
