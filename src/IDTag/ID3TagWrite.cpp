// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Writing the tag back. The steps: does the new tag fit into the old one's bytes; open the file,
// lock it and see that it is still the one that was read; make the new tag in memory; then put it
// in the old one's place.

#include "IDTag/ID3Tag.h"
#include "IDTag/TagReplacement.h"

#include <cstring>
#include <new>

namespace {

constexpr std::uint64_t kPaddingBytes = 4096;         // Fixed: room for later edits.
constexpr std::uint64_t kTagLimitBytes = 1ULL << 28U; // Standard: ID3v2.3.0, 3.1: 28 size bits.
constexpr std::uint8_t kWrittenVersion[] = {'I', 'D', '3', 3, 0, 0}; // Fixed: 2.3.0, no flags.
constexpr std::uint8_t kRecentVersion = 4; // Standard: ID3v2.4.0, the last one.
// Standard: ID3v2.3.0, section 3.3.1, flag b, "file alter preservation", which speaks of the audio.
constexpr std::uint8_t kDiscardWhenAltered = 0x40;

using Bytes = std::vector<std::uint8_t>;

} // namespace

bool CID3Tag::WouldDrop(char const* id) const {
    CID3Frame* frame = nullptr;
    ID3V2_3_FRAMEHEADER header = {};
    std::uint8_t* body = nullptr;
    std::uint32_t size = 0;
    return GetExistingFrame(id, &frame) && frame->GetData(&header, &body, &size) == kStatusOk &&
           IsDropped(header);
}

bool CID3Tag::IsDropped(ID3V2_3_FRAMEHEADER const& header) const {
    return !m_rules.m_bKeepMarked && (header.m_nStatusFlags & kDiscardWhenAltered) != 0;
}

std::uint64_t CID3Tag::PendingBytes() const {
    std::uint64_t sum = 0;
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; m_frames.EnumItems(i, &frame); ++i) {
        std::uint32_t length = 0;
        frame->GetTotalLength(&length);
        sum += length;
    }
    return sum;
}

std::uint32_t CID3Tag::GetPendingBodySize() const {
    return static_cast<std::uint32_t>(PendingBytes());
}

CString CID3Tag::CreateTempFileName() const {
    return TemporaryPathBeside(m_sPath);
}

CStatus CID3Tag::UpdateFile(bool* rewritten) {
    m_eProblem = EWriteProblem::None;
    if (!m_bModified) {
        return kStatusNothing;
    }
    try {
        m_eProblem = WriteTag(rewritten);
    } catch (std::bad_alloc const&) {
        m_eProblem = EWriteProblem::NoMemory;
    }
    return m_eProblem == EWriteProblem::None ? kStatusOk : kStatusFailure;
}

EWriteProblem CID3Tag::WriteTag(bool* rewritten) {
    if (!m_bReadable) {
        return EWriteProblem::TagUnreadable;
    }
    if (m_bUnknownIds) {
        return EWriteProblem::UnknownFrameId;
    }
    std::uint64_t const needed = PendingBytes() + kTagHeaderBytes;
    bool const inPlace = m_nTagBytes >= needed;
    std::uint64_t const newTagBytes = inPlace ? m_nTagBytes : needed + kPaddingBytes;
    if (newTagBytes >= kTagLimitBytes || m_frames.GetCount() > kMostFrames) {
        return EWriteProblem::TagTooLarge;
    }
    CTagTarget target(m_sPath);
    if (inPlace && !target.MayBeWritten()) {
        return EWriteProblem::NotWritable;
    }
    EWriteProblem problem = target.Open(m_rules.m_expected);
    Bytes oldTag;
    if (problem == EWriteProblem::None) {
        problem = ReadAgain(target.Get(), oldTag);
    }
    if (problem != EWriteProblem::None) {
        return problem;
    }
    Bytes const newTag = MakeTag(static_cast<std::uint32_t>(newTagBytes));
    std::span<std::uint8_t const> const giveWay = std::span(oldTag).first(m_nTagBytes);
    if (m_rules.m_onWriting) {
        m_rules.m_onWriting(target.GetIdentity(), giveWay, newTag);
    }
    std::optional<std::int64_t> const time =
        m_rules.m_bKeepTime ? std::optional(target.GetIdentity().m_nWrittenTime) : std::nullopt;
    return ReplaceTag(target, giveWay, newTag, time, rewritten);
}

/// Reads the tag's bytes again, which must be those of `OpenFile`.
EWriteProblem CID3Tag::ReadAgain(int file, std::vector<std::uint8_t>& oldTag) const {
    std::optional<CFileIdentity> const opened = IdentityOf(file);
    if (!opened) {
        return EWriteProblem::TagUnreadable;
    }
    oldTag.resize(static_cast<std::size_t>(
        DigestedBytes(m_nTagBytes, static_cast<std::uint64_t>(opened->m_nSize))));
    if (!ReadAllAt(file, oldTag, 0)) {
        return EWriteProblem::TagUnreadable;
    }
    bool const isSame = oldTag.size() >= m_nTagBytes && DigestOf(oldTag) == m_digest;
    return isSame ? EWriteProblem::None : EWriteProblem::Changed;
}

/// Header, frames and zeros: exactly `tagBytes` bytes, so that the header tells the truth also when
/// frames are dropped.
std::vector<std::uint8_t> CID3Tag::MakeTag(std::uint32_t tagBytes) const {
    Bytes tag;
    tag.reserve(tagBytes);
    tag.assign(std::begin(kWrittenVersion), std::end(kWrittenVersion));
    tag.resize(kTagHeaderBytes);
    bool const isRecent = m_rules.m_bKeepVersion && m_nVersion == kRecentVersion;
    tag[kTagVersionOffset] = isRecent ? kRecentVersion : tag[kTagVersionOffset];
    WriteSyncsafe(tagBytes - static_cast<std::uint32_t>(kTagHeaderBytes), &tag[kTagSizeOffset]);
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; m_frames.EnumItems(i, &frame); ++i) {
        ID3V2_3_FRAMEHEADER header = {};
        std::uint8_t* body = nullptr;
        std::uint32_t size = 0;
        bool const isKept = frame != m_pTakenOut && frame->GetData(&header, &body, &size) >= 0 &&
                            !IsDropped(header);
        if (!isKept) {
            continue;
        }
        if (isRecent) {
            WriteSyncsafe(size, header.m_nBodyBytes);
        }
        auto const* const bytes = reinterpret_cast<std::uint8_t const*>(&header);
        tag.insert(tag.end(), bytes, bytes + kFrameHeaderBytes);
        tag.insert(tag.end(), body, body + size);
    }
    tag.resize(tagBytes);
    return tag;
}
