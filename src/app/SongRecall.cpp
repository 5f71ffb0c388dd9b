// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/SongRecall.h"

#include "records/RecordStore.h"
#include "song/SongProfile.h"
#include "song/SongTags.h"

#include <utility>

namespace {

/// What people mean by the tags, as they were read before where that is known.
CShownTags TagsOf(CSongRecord const& known, std::string const& path) {
    return known.m_tags ? known.m_tags->m_shown : ReadShownTags(CString::FromPath(path));
}

/// Levels of the whole song that an earlier hearing kept aren't lost by one that didn't.
void TakeEnvelopes(CHeardSong const& before, CSongFacts& facts) {
    if (before.m_facts && facts.m_energy.m_vLevels.empty()) {
        facts.m_energy = before.m_facts->m_energy;
        facts.m_bass = before.m_facts->m_bass;
    }
}

} // namespace

std::optional<CTakenSong> RecallSong(CRecordStore& store, std::string const& path,
                                     bool withEnvelopes) {
    std::optional<CFileIdentity> const identity = IdentityAt(path);
    if (!identity) {
        return std::nullopt;
    }
    CSongRecord const known = store.Find(path, *identity);
    bool const isWhole = known.m_heard && known.m_heard->m_facts &&
                         (!withEnvelopes || !known.m_heard->m_facts->m_energy.m_vLevels.empty());
    return isWhole ? std::optional(TakenSongOf(path, TagsOf(known, path), *known.m_heard))
                   : std::nullopt;
}

std::optional<CTakenSong> HearSong(CRecordStore& store, std::string const& path, bool withEnvelopes,
                                   CCancelFlag const& cancel) {
    std::optional<CFileIdentity> const identity = IdentityAt(path);
    bool const isRested = identity && WouldChangesShow(*identity);
    CSongProfile const profile = ProfileSong(path, {.m_pCancel = &cancel,
                                                    .m_bKeepEnvelopes = true,
                                                    .m_bReadAhead = HasCoresToReadAhead(1),
                                                    .m_bHearBeats = true,
                                                    .m_bHarmony = true});
    if (profile.m_bCancelled || cancel.IsSet() || !profile.IsHeard()) {
        return std::nullopt;
    }
    CHeardSong heard = HeardSongOf(profile, withEnvelopes);
    CSongRecord known = identity ? store.Find(path, *identity) : CSongRecord();
    if (known.m_heard && heard.m_facts) {
        TakeEnvelopes(*known.m_heard, *heard.m_facts);
    }
    CTakenSong song = TakenSongOf(path, TagsOf(known, path), heard);
    if (isRested && heard.m_outcome.m_report.m_identity == *identity) {
        known.m_heard = std::move(heard);
        store.Keep(path, *identity, known);
    }
    return song;
}
