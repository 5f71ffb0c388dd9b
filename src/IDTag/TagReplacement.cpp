// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A tag that fits is written over the old one only when that is one step; otherwise a new file of
// the same length is built, and the old one's bytes are written over only where there can be no new
// file. A tag of another length always comes with a new file.

#include "IDTag/TagReplacement.h"

#include "IDTag/FileSwap.h"
#include "IDTag/MacCFile.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace {

constexpr std::size_t kPageBytes = 4096; // Standard: the smallest page of Linux.

using ByteView = std::span<std::uint8_t const>;
using Time = std::optional<std::int64_t>;

/// Where two tags of the same length differ: from the first such byte to the last one.
struct CChange {
    std::size_t m_nOffset = 0;
    std::size_t m_nBytes = 0;
};

CChange ChangeBetween(ByteView oldTag, ByteView newTag) {
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
EWriteProblem WriteInPlace(CTagTarget& target, ByteView oldTag, ByteView newTag,
                           CChange const& change, Time writtenTime) {
    auto const part = [&change](ByteView tag) {
        return tag.subspan(change.m_nOffset, change.m_nBytes);
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
        SetWrittenTime(file, writtenTime);
        problem = ::fsync(file) == 0 ? EWriteProblem::None : ProblemOf(errno);
    }
    if (problem != EWriteProblem::None) {
        (void)WriteAllAt(file, part(oldTag), change.m_nOffset);
    }
    return problem;
}

EWriteProblem SwapFile(CTagTarget const& target, std::uint64_t oldTagBytes, ByteView newTag,
                       Time writtenTime) {
    std::uint64_t const audioBytes =
        static_cast<std::uint64_t>(target.GetIdentity().m_nSize) - oldTagBytes;
    if (audioBytes + newTag.size() > kLargestFileBytes) {
        return EWriteProblem::FileTooLarge;
    }
    CFileSwap swap(target.Get(), target.GetIdentity(), target.GetPath().ToPath(),
                   TemporaryPathBeside(target.GetPath()).ToPath());
    swap.SetWrittenTime(writtenTime);
    EWriteProblem problem = swap.Begin();
    if (problem == EWriteProblem::None) {
        problem = swap.Write(newTag);
    }
    if (problem == EWriteProblem::None) {
        problem = swap.CopyRest(oldTagBytes);
    }
    return problem == EWriteProblem::None ? swap.Commit() : problem;
}

/// Puts a tag in the place of one of the same length. What a kill could cut in the middle is done
/// through a new file, where there can be one. To the caller that is an update in place as well:
/// the audio stays where it was.
EWriteProblem WriteOver(CTagTarget& target, ByteView oldTag, ByteView newTag, Time writtenTime) {
    CChange const change = ChangeBetween(oldTag, newTag);
    if (change.m_nBytes == 0) {
        return EWriteProblem::None;
    }
    if (!IsOneStep(change) && IsReplaceable(target.Get())) {
        EWriteProblem const problem = SwapFile(target, oldTag.size(), newTag, writtenTime);
        if (!IsForWantOfAFile(problem)) {
            return problem;
        }
    }
    return WriteInPlace(target, oldTag, newTag, change, writtenTime);
}

} // namespace

EWriteProblem ReplaceTag(CTagTarget& target, std::span<std::uint8_t const> oldTag,
                         std::span<std::uint8_t const> newTag,
                         std::optional<std::int64_t> writtenTime, bool* rewritten) {
    if (oldTag.size() == newTag.size()) {
        return WriteOver(target, oldTag, newTag, writtenTime);
    }
    EWriteProblem const problem = SwapFile(target, oldTag.size(), newTag, writtenTime);
    *rewritten = *rewritten || problem == EWriteProblem::None;
    return problem;
}
