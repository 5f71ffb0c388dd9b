// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps: read as many of the file's first bytes as the new tag has; when they are that tag,
// exchange it for the old one. When they are the old one, the write never was, or was taken back.
// Otherwise another program has been at the tag: put back the frame's text alone, if it is still
// ours.

#include "records/Undo.h"

#include "IDTag/PosixFile.h"
#include "IDTag/TagExchange.h"
#include "IDTag/TagStore.h"
#include "IDTag/TagTarget.h"
#include "records/TagDelta.h"
#include "song/AudioKinds.h"
#include "song/LibraryStore.h"
#include "song/SongTags.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <new>

namespace {

constexpr std::array<std::uint8_t, 3> kTagMark = {'I', 'D', '3'}; // Standard: ID3v2.3.0, 3.1.

using Bytes = std::vector<std::uint8_t>;

/// The file's first bytes, if it begins with the tag that `mark` tells of, or with none.
std::optional<Bytes> TagThere(std::string const& path, CFileIdentity const& identity,
                              CTagMark const& mark) {
    CDescriptor const file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.IsOpen() || mark.m_nBytes > static_cast<std::uint64_t>(identity.m_nSize)) {
        return std::nullopt;
    }
    Bytes bytes(mark.m_nBytes);
    if (mark.m_nBytes == 0) {
        Bytes start(kTagMark.size());
        bool const hasTag = ReadAllAt(file.Get(), start, 0) &&
                            std::memcmp(start.data(), kTagMark.data(), kTagMark.size()) == 0;
        return hasTag ? std::nullopt : std::optional(std::move(bytes));
    }
    bool const isTag = ReadAllAt(file.Get(), bytes, 0) && MarkOf(bytes) == mark;
    return isTag ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<CString> TextOf(std::optional<std::string> const& utf8) {
    return utf8 ? std::optional(CString::FromUtf8(*utf8)) : std::nullopt;
}

/// One write that is taken back.
class CUndo {
public:
    CUndo(CJournal& journal, CJournalEntry const& entry, std::string const& path,
          CUndoOptions const& options)
        : m_journal(journal), m_entry(entry), m_sPath(path), m_options(options) {}

    CUndoResult Run() {
        std::optional<CFileIdentity> const there = IdentityAt(m_sPath);
        if (!there) {
            return {.m_eUndo = EUndo::Gone};
        }
        m_identity = *there;
        if (IsLibrarys() && !IsAsLongAsWritten()) {
            return PutTextBack();
        }
        std::optional<Bytes> const newTag = TagThere(m_sPath, m_identity, m_entry.m_newTag);
        if (newTag && m_entry.m_way) {
            std::optional<Bytes> const oldTag =
                ApplyDelta(*newTag, *m_entry.m_way, m_entry.m_oldTag.m_nBytes);
            if (oldTag && MarkOf(*oldTag) == m_entry.m_oldTag) {
                return PutTagBack(*newTag, *oldTag);
            }
        }
        if (!newTag && TagThere(m_sPath, m_identity, m_entry.m_oldTag)) {
            return {.m_eUndo = EUndo::AsBefore, .m_textThere = m_entry.m_textBefore};
        }
        return PutTextBack();
    }

private:
    std::unique_ptr<ITagWitness> Witness() {
        return m_journal.Witness(EJournalWriter::Undo, ETextOrigin::Earlier, m_entry.m_nId);
    }

    /// The time that the file is to have afterwards; nothing: the present.
    [[nodiscard]] std::optional<std::int64_t> WrittenTime() const {
        if (!m_options.m_bKeepTime) {
            return std::nullopt;
        }
        bool const isTouched =
            m_entry.m_after && m_entry.m_after->m_nWrittenTime != m_identity.m_nWrittenTime;
        return isTouched ? m_identity.m_nWrittenTime : m_entry.m_before.m_nWrittenTime;
    }

    CUndoResult PutTagBack(Bytes const& newTag, Bytes const& oldTag) {
        WaitUntilChangesShow(m_identity);
        std::unique_ptr<ITagWitness> const witness = Witness();
        CTagChange const change = {.m_sPath = FileBehind(CString::FromPath(m_sPath)),
                                   .m_before = m_identity,
                                   .m_sFrameId = m_entry.m_sFrameId,
                                   .m_textBefore = TextOf(m_entry.m_textAfter),
                                   .m_textAfter = TextOf(m_entry.m_textBefore),
                                   .m_oldTag = newTag,
                                   .m_newTag = oldTag};
        CFileIdentity after;
        return Told(ExchangeTag(change, WrittenTime(), witness.get(), &after), EUndo::Restored,
                    m_entry.m_textAfter);
    }

    /// True for the kinds whose tags aren't in front of the audio.
    [[nodiscard]] bool IsLibrarys() const {
        CAudioKind const* const kind = FindAudioKind(CString::FromPath(m_sPath));
        return kind != nullptr && kind->m_writing == ETagWriting::Library;
    }

    /// What lies behind a front that is exchanged must be what lay there.
    [[nodiscard]] bool IsAsLongAsWritten() const {
        return m_entry.m_after && m_entry.m_after->m_nSize == m_identity.m_nSize;
    }

    CUndoResult PutTempoBack() {
        CString const path = CString::FromPath(m_sPath);
        std::string const found = ReadShownTags(path).m_sTempo;
        std::optional<std::string> const there =
            found.empty() ? std::nullopt : std::optional(found);
        if (there == m_entry.m_textBefore) {
            return {.m_eUndo = EUndo::AsBefore, .m_textThere = there};
        }
        if (there != m_entry.m_textAfter && !m_options.m_bForce) {
            return {.m_eUndo = EUndo::OtherText, .m_textThere = there};
        }
        std::unique_ptr<ITagWitness> const witness = Witness();
        CTagWish wish;
        wish.m_sTempo = m_entry.m_textBefore.value_or("");
        wish.m_bNoTempo = wish.m_sTempo.empty();
        return Told(StoreByLibrary(path, *FindAudioKind(path), wish,
                                   {.m_expected = m_identity,
                                    .m_writtenTime = WrittenTime(),
                                    .m_pWitness = witness.get()}),
                    EUndo::TextAlone, there);
    }

    CUndoResult PutTextBack() {
        if (IsLibrarys()) {
            return PutTempoBack();
        }
        CString const path = CString::FromPath(m_sPath);
        CString found;
        CStatus const status = ReadTagText(path, m_entry.m_sFrameId.c_str(), found);
        if (status < 0) {
            return {.m_eUndo = EUndo::Unreadable};
        }
        std::optional<std::string> there;
        if (status == kStatusOk) {
            there = found.ToUtf8();
        }
        if (there == m_entry.m_textBefore) {
            return {.m_eUndo = EUndo::AsBefore, .m_textThere = there};
        }
        if (there != m_entry.m_textAfter && !m_options.m_bForce) {
            return {.m_eUndo = EUndo::OtherText, .m_textThere = there};
        }
        std::unique_ptr<ITagWitness> const witness = Witness();
        CTagStoreOptions store;
        store.m_expected = m_identity;
        store.m_bKeepTime = m_options.m_bKeepTime;
        store.m_pWitness = witness.get();
        EWriteProblem const problem =
            m_entry.m_textBefore ? StoreTagText(path, m_entry.m_sFrameId.c_str(),
                                                CString::FromUtf8(*m_entry.m_textBefore), store)
                                 : TakeOutTagText(path, m_entry.m_sFrameId.c_str(), store);
        return Told(problem, EUndo::TextAlone, there);
    }

    static CUndoResult Told(EWriteProblem problem, EUndo success,
                            std::optional<std::string> const& there) {
        return {.m_eUndo = problem == EWriteProblem::None ? success : EUndo::NotWritten,
                .m_eProblem = problem,
                .m_textThere = there};
    }

    CJournal& m_journal;
    CJournalEntry const& m_entry;
    std::string const& m_sPath;
    CUndoOptions const& m_options;
    CFileIdentity m_identity;
};

} // namespace

CUndoResult UndoWrite(CJournal& journal, CJournalEntry const& entry, std::string const& path,
                      CUndoOptions const& options) {
    try {
        return CUndo(journal, entry, path, options).Run();
    } catch (std::bad_alloc const&) {
        return {.m_eUndo = EUndo::NotWritten, .m_eProblem = EWriteProblem::NoMemory};
    }
}
