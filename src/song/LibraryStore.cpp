// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: see that the name may be written; lock the file; try on it what would change; hash its
// sound and list its items; copy it; have the copy changed; prove the copy; swap.

#include "song/LibraryStore.h"

#include "IDTag/FileSwap.h"
#include "IDTag/FrameIds.h"
#include "IDTag/MacCFile.h"
#include "IDTag/TagReading.h"
#include "IDTag/TagTarget.h"
#include "platform/AudioHash.h"
#include "platform/OtherTags.h"
#include "song/AudioKinds.h"
#include "song/FileFronts.h"
#include "song/SongTags.h"

#include <algorithm>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <vector>

namespace {

constexpr char kTemporaryEnding[] = ".MP~"; // Fixed: song.flac is built as song.flac.MP~.

/// What must be the same before and after.
struct CProof {
    std::optional<CAudioHash> m_sound;
    std::vector<CTagItem> m_vItems;
    std::vector<CTagItem> m_vFrames; // of the ID3v2 tag in a chunk

    bool operator==(CProof const&) const = default;
};

/// A text at the end of a frame may have a zero behind it.
CTagItem WithoutLastZero(CTagItem item) {
    bool const endsInText = item.first == "COMM" || item.first == "USLT" || item.first[0] == 'W';
    while (endsInText && item.second.ends_with('\0')) {
        item.second.pop_back();
    }
    return item;
}

/// The frames that the wish leaves alone.
std::vector<CTagItem> FramesOf(COtherTags const& tags, CTagWish const& wish) {
    std::vector<CTagItem> frames;
    for (std::vector<std::uint8_t> const& tag : tags.m_vId3) {
        std::vector<CTagItem> const all = CTagReading::Frames(tag);
        std::ranges::copy_if(all, std::back_inserter(frames), [&wish](CTagItem const& item) {
            return !(item.first == kTempoFrameId && wish.IsAboutTempo()) &&
                   !(item.first == kKeyFrameId && !wish.m_sKey.empty());
        });
    }
    std::ranges::transform(frames, frames.begin(), WithoutLastZero);
    std::ranges::sort(frames);
    return frames;
}

CProof ProofOf(int file, CTagWish const& wish) {
    return {HashAudio(file), TagItems(file, wish), FramesOf(ReadOtherTags(file), wish)};
}

std::optional<CString> TextOf(std::string const& utf8) {
    return utf8.empty() ? std::nullopt : std::optional(CString::FromUtf8(utf8));
}

/// One write, step by step.
class CStore {
public:
    CStore(CString const& path, CTagWish const& wish, CLibraryStoreOptions const& options)
        : m_target(path), m_wish(wish), m_options(options) {}

    EWriteProblem Run(CAudioKind const& kind) {
        EWriteProblem problem = LookAtName(kind);
        if (problem == EWriteProblem::None) {
            problem = m_target.Open(m_options.m_expected);
        }
        return problem == EWriteProblem::None ? LookAtTag() : problem;
    }

private:
    EWriteProblem LookAtName(CAudioKind const& kind) const;
    EWriteProblem LookAtTag();
    EWriteProblem Replace();
    EWriteProblem Commit(CFileSwap& swap);
    EWriteProblem ChangeCopy(CFileSwap& swap) const;

    CTagTarget m_target;
    std::string m_sTempoBefore; // empty for none
    CTagWish const& m_wish;
    CLibraryStoreOptions const& m_options;
};

EWriteProblem CStore::LookAtName(CAudioKind const& kind) const {
    CAudioKind const* const behind = FindAudioKind(m_target.GetPath());
    if (behind == nullptr || behind->m_sType != kind.m_sType) {
        return EWriteProblem::LinkTarget;
    }
    struct stat info = {};
    if (::stat(m_target.GetPath().ToPath().c_str(), &info) != 0 || !S_ISREG(info.st_mode) ||
        !m_target.MayBeWritten()) {
        return EWriteProblem::NotWritable;
    }
    return info.st_size > off_t{kLargestFileBytes} ? EWriteProblem::FileTooLarge
                                                   : EWriteProblem::None;
}

EWriteProblem CStore::LookAtTag() {
    COtherTags const tags = ReadOtherTags(m_target.Get());
    m_sTempoBefore = ShownTagsOf(tags).m_sTempo;
    bool const isOther = m_options.m_tempoBefore && *m_options.m_tempoBefore != m_sTempoBefore;
    if (isOther) {
        return EWriteProblem::TempoChanged;
    }
    bool const isPlain = std::ranges::all_of(
        tags.m_vId3, [](auto const& tag) { return CTagReading(tag).IsPlain(); });
    if (!isPlain) {
        return EWriteProblem::EncodedFrames;
    }
    int error = 0;
    switch (ChangeTags(m_target.Get(), m_wish, ETagDepth::Trial, error)) {
    case ETagChange::Same:
        return EWriteProblem::None;
    case ETagChange::Changed:
        return Replace();
    case ETagChange::Refused:
    case ETagChange::Failed:
        break;
    }
    return EWriteProblem::OtherContent;
}

EWriteProblem CStore::Replace() {
    CProof const before = ProofOf(m_target.Get(), m_wish);
    if (!before.m_sound) {
        return EWriteProblem::NotProven;
    }
    std::string const path = m_target.GetPath().ToPath();
    CFileSwap swap(m_target.Get(), m_target.GetIdentity(), path, path + kTemporaryEnding);
    EWriteProblem problem = swap.Begin();
    if (problem == EWriteProblem::None) {
        problem = swap.CopyRest(0);
    }
    if (problem == EWriteProblem::None) {
        problem = ChangeCopy(swap);
    }
    if (problem == EWriteProblem::None && !(ProofOf(swap.Get(), m_wish) == before)) {
        problem = EWriteProblem::NotProven;
    }
    return problem == EWriteProblem::None ? Commit(swap) : problem;
}

/// Puts the copy in the file's place, which the witness knows before.
EWriteProblem CStore::Commit(CFileSwap& swap) {
    if (m_options.m_pWitness == nullptr) {
        return swap.Commit();
    }
    CFileFronts const fronts = FrontsOf(m_target.Get(), swap.Get());
    CTagChange change = {.m_sPath = m_target.GetPath(),
                         .m_before = m_target.GetIdentity(),
                         .m_sFrameId = kTempoFrameId,
                         .m_textBefore = TextOf(m_sTempoBefore),
                         // As it is read back: MP4 has whole numbers of its own.
                         .m_textAfter = TextOf(ShownTagsOf(ReadOtherTags(swap.Get())).m_sTempo),
                         .m_oldTag = fronts.m_vOld,
                         .m_newTag = fronts.m_vNew,
                         .m_bHasBytes = fronts.m_bIsKnown};
    m_options.m_pWitness->OnWriting(change);
    EWriteProblem const problem = swap.Commit();
    m_options.m_pWitness->OnWritten(
        problem == EWriteProblem::None ? IdentityAt(m_target.GetPath().ToPath()) : std::nullopt);
    return problem;
}

/// Has the copy changed, and sees that the wish can be read back.
EWriteProblem CStore::ChangeCopy(CFileSwap& swap) const {
    int error = 0;
    ETagChange const change = ChangeTags(swap.Get(), m_wish, ETagDepth::Write, error);
    if (change == ETagChange::Failed) {
        return ProblemOf(error);
    }
    bool const isThere =
        change == ETagChange::Changed &&
        ChangeTags(swap.Get(), m_wish, ETagDepth::Trial, error) == ETagChange::Same;
    if (!isThere) {
        return EWriteProblem::NotProven;
    }
    EWriteProblem const problem = swap.TakeOver();
    swap.SetWrittenTime(m_options.m_writtenTime);
    return problem;
}

} // namespace

EWriteProblem StoreByLibrary(CString const& path, CAudioKind const& kind, CTagWish const& wish,
                             CLibraryStoreOptions const& options) {
    try {
        return CStore(path, wish, options).Run(kind);
    } catch (std::bad_alloc const&) {
        return EWriteProblem::NoMemory;
    }
}
