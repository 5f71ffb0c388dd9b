// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Writing the tag back. The steps: does the new tag fit into the old one's bytes; open the file,
// lock it and see that it is still the one that was read; make the new tag in memory; then write
// it over the old one, or build a new file that takes the old one's place. A tag that fits is
// written over the old one only when that is one step; otherwise a new file of the same length is
// built, and the old one's bytes are written over only where there can be no new file.

#include "IDTag/FileSwap.h"
#include "IDTag/ID3Tag.h"
#include "IDTag/MacCFile.h"
#include "IDTag/TagTarget.h"
#include "base/FileUtil.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <unistd.h>

namespace {

constexpr wchar_t kTemporaryExtension[] = L"MP~";     // Fixed: song.mp3 is built as song.MP~.
constexpr std::uint64_t kPaddingBytes = 4096;         // Fixed: room for later edits.
constexpr std::uint64_t kTagLimitBytes = 1ULL << 28U; // Standard: ID3v2.3.0, 3.1: 28 size bits.
constexpr std::uint8_t kWrittenVersion[] = {'I', 'D', '3', 3, 0, 0}; // Fixed: 2.3.0, no flags.
constexpr std::size_t kPageBytes = 4096;           // Standard: the smallest page of Linux.
constexpr std::size_t kSizeOffset = 6;             // Standard: ID3v2.3.0, section 3.1.
constexpr std::uint8_t kDiscardWhenAltered = 0x40; // Standard: ID3v2.3.0, section 3.3.1.

using Bytes = std::vector<std::uint8_t>;

/// Where two tags of the same length differ: from the first such byte to the last one.
struct CChange {
    std::size_t m_nOffset = 0;
    std::size_t m_nBytes = 0;
};

CChange ChangeBetween(Bytes const& oldTag, Bytes const& newTag) {
    auto const first = std::ranges::mismatch(oldTag, newTag).in1 - oldTag.begin();
    auto const last = std::mismatch(oldTag.rbegin(), oldTag.rend(), newTag.rbegin()).first.base() -
                      oldTag.begin();
    return {static_cast<std::size_t>(first),
            static_cast<std::size_t>(std::max<std::ptrdiff_t>(last - first, 0))};
}

/// True when no kill can cut the change: the kernel looks for one between two pages of a write, not
/// within a page. A tempo's change is such a one.
bool IsOneStep(CChange const& change) {
    return change.m_nOffset / kPageBytes == (change.m_nOffset + change.m_nBytes - 1) / kPageBytes;
}

/// True when a new file can have all that the old one has: its only name and its owner.
bool IsReplaceable(int file) {
    struct stat info = {};
    bool const isKnown = ::fstat(file, &info) == 0;
    bool const isOwn = info.st_uid == ::geteuid() && info.st_gid == ::getegid();
    return isKnown && info.st_nlink == 1 && (isOwn || ::geteuid() == 0);
}

/// True when a new file couldn't be made, which says nothing against a write in place.
bool IsForWantOfAFile(EWriteProblem problem) {
    return problem == EWriteProblem::NoTemporaryFile || problem == EWriteProblem::DiskFull ||
           problem == EWriteProblem::FileTooLarge || problem == EWriteProblem::FileSizeLimit ||
           problem == EWriteProblem::MayNotReplace || problem == EWriteProblem::NoMemory ||
           problem == EWriteProblem::WriteFailed;
}

/// Writes the change in one call; never a byte behind the tag.
EWriteProblem WriteInPlace(CTagTarget& target, Bytes const& oldTag, Bytes const& newTag,
                           CChange const& change) {
    auto const part = [&change](Bytes const& tag) {
        return std::span(tag).subspan(change.m_nOffset, change.m_nBytes);
    };
    EWriteProblem problem = target.OpenForWriting();
    if (problem == EWriteProblem::None) {
        problem = target.LookAgain();
    }
    if (problem != EWriteProblem::None) {
        return problem;
    }
    int const file = target.GetForWriting();
    problem = WriteAllAt(file, part(newTag), change.m_nOffset);
    if (problem == EWriteProblem::None) {
        problem = ::fsync(file) == 0 ? EWriteProblem::None : ProblemOf(errno);
    }
    if (problem != EWriteProblem::None) {
        (void)WriteAllAt(file, part(oldTag), change.m_nOffset);
    }
    return problem;
}

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
    CString name;
    CFileUtil::ChangeFileExt(m_sPath, kTemporaryExtension, name);
    return name;
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
    return inPlace ? WriteOver(target, oldTag, newTag) : SwapFile(target, newTag, rewritten);
}

/// Puts a tag in the place of one of the same length. What a kill could cut in the middle is done
/// through a new file, where there can be one. To the caller that is an update in place as well:
/// the audio stays where it was.
EWriteProblem CID3Tag::WriteOver(CTagTarget& target, std::vector<std::uint8_t> const& oldTag,
                                 std::vector<std::uint8_t> const& newTag) const {
    CChange const change = ChangeBetween(oldTag, newTag);
    if (change.m_nBytes == 0) {
        return EWriteProblem::None;
    }
    if (!IsOneStep(change) && IsReplaceable(target.Get())) {
        bool rewritten = false;
        EWriteProblem const problem = SwapFile(target, newTag, &rewritten);
        if (!IsForWantOfAFile(problem)) {
            return problem;
        }
    }
    return WriteInPlace(target, oldTag, newTag, change);
}

/// Reads the tag's bytes again, which must be those of `OpenFile`.
EWriteProblem CID3Tag::ReadAgain(int file, std::vector<std::uint8_t>& oldTag) const {
    std::optional<CFileIdentity> const opened = IdentityOf(file);
    if (!opened) {
        return EWriteProblem::TagUnreadable;
    }
    oldTag.resize(DigestedBytes(m_nTagBytes, static_cast<std::uint64_t>(opened->m_nSize)));
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
    WriteSyncsafe(tagBytes - static_cast<std::uint32_t>(kTagHeaderBytes), &tag[kSizeOffset]);
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; m_frames.EnumItems(i, &frame); ++i) {
        ID3V2_3_FRAMEHEADER header = {};
        std::uint8_t* body = nullptr;
        std::uint32_t size = 0;
        if (frame->GetData(&header, &body, &size) < 0 || IsDropped(header)) {
            continue;
        }
        auto const* const bytes = reinterpret_cast<std::uint8_t const*>(&header);
        tag.insert(tag.end(), bytes, bytes + kFrameHeaderBytes);
        tag.insert(tag.end(), body, body + size);
    }
    tag.resize(tagBytes);
    return tag;
}

EWriteProblem CID3Tag::SwapFile(CTagTarget const& target, std::vector<std::uint8_t> const& tag,
                                bool* rewritten) const {
    std::uint64_t const audioBytes =
        static_cast<std::uint64_t>(target.GetIdentity().m_nSize) - m_nTagBytes;
    if (audioBytes + tag.size() > kLargestFileBytes) {
        return EWriteProblem::FileTooLarge;
    }
    CString temporary;
    CFileUtil::ChangeFileExt(target.GetPath(), kTemporaryExtension, temporary);
    CFileSwap swap(target.Get(), target.GetIdentity(), target.GetPath().ToPath(),
                   temporary.ToPath());
    EWriteProblem problem = swap.Begin();
    if (problem == EWriteProblem::None) {
        problem = swap.Write(tag);
    }
    if (problem == EWriteProblem::None) {
        problem = swap.CopyRest(m_nTagBytes);
    }
    if (problem == EWriteProblem::None) {
        problem = swap.Commit();
    }
    *rewritten = *rewritten || problem == EWriteProblem::None;
    return problem;
}
