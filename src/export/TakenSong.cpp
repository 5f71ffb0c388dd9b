// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/TakenSong.h"

#include "base/EngineRate.h"
#include "song/KeyText.h"
#include "song/TempoText.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace {

constexpr double kByteBits = 8.0; // Standard.

double SecondsOf(std::int64_t position) {
    return static_cast<double>(position) / kEngineRateHz;
}

/// Those of `positions` that lie in the song: silence may have been added for the engine.
std::vector<double> SecondsOf(std::vector<std::int64_t> const& positions, double length) {
    std::vector<double> seconds;
    for (std::int64_t const position : positions) {
        if (SecondsOf(position) <= length) {
            seconds.push_back(SecondsOf(position));
        }
    }
    return seconds;
}

void TakeTags(CShownTags const& tags, CTakenSong& song) {
    song.m_sTitle = tags.m_sTitle;
    song.m_sArtist = tags.m_sArtist;
    song.m_sAlbum = tags.m_sAlbum;
    song.m_sTagKey = tags.m_sKey;
    song.m_dTagTempo = tags.m_tempo.m_worth == ETagTempo::Unlikely ? 0.0 : tags.m_tempo.m_dBpm;
}

void TakePositions(CSongFacts const& facts, CTakenSong& song) {
    CEnginePositions const& positions = facts.m_positions;
    song.m_dIntroEnd = std::min(SecondsOf(positions.m_nIntroEnd), song.m_dSeconds);
    song.m_dOutroStart = std::min(SecondsOf(positions.m_nOutroStart), song.m_dSeconds);
    song.m_vFades = SecondsOf(positions.m_vFades, song.m_dSeconds);
    song.m_vIntroMixes = SecondsOf(positions.m_vIntroMixes, song.m_dSeconds);
    song.m_vOutroMixes = SecondsOf(positions.m_vOutroMixes, song.m_dSeconds);
    song.m_positions = positions;
}

void TakeFacts(CSongFacts const& facts, CTakenSong& song) {
    CDecodeReport const& report = song.m_outcome.m_report;
    std::uint32_t const rate = report.m_nFileRate > 0 ? report.m_nFileRate : kEngineRateHz;
    song.m_dSeconds = static_cast<double>(facts.m_nFrames) / rate;
    song.m_dBitsPerSecond = BitRateOf(report, song.m_dSeconds);
    song.m_dHeardTempo = static_cast<double>(facts.m_fBpm);
    song.m_key = facts.m_key;
    song.m_harmony = facts.m_harmony;
    song.m_beats = facts.m_beats;
    song.m_vEnergyAccents = facts.m_vEnergyAccents;
    song.m_vBassAccents = facts.m_vBassAccents;
    TakePositions(facts, song);
    song.m_print = facts.m_print;
    song.m_opening = facts.m_opening;
    song.m_energy = facts.m_energy;
    song.m_bass = facts.m_bass;
}

} // namespace

CTakenSong TakenSongOf(std::string path, CShownTags const& tags, CHeardSong const& heard) {
    CTakenSong song;
    song.m_sFolder = FolderOf(path);
    song.m_sPath = std::move(path);
    TakeTags(tags, song);
    song.m_outcome = heard.m_outcome;
    if (heard.m_outcome.m_problem != EAnalysisProblem::None) {
        return song;
    }
    song.m_dHeardTempo = LeadingNumber(CString(heard.m_sTempo.c_str()));
    song.m_candidates = heard.m_candidates.value_or(CTempoCandidates());
    if (heard.m_facts) {
        TakeFacts(*heard.m_facts, song);
    }
    song.m_dTempo = song.m_dHeardTempo;
    song.m_tempoSource = !(song.m_dTempo > 0.0) ? ETempoSource::None
                         : heard.m_bByLength    ? ETempoSource::Length
                                                : ETempoSource::Analysis;
    if (!(song.m_dTempo > 0.0)) {
        song.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    }
    return song;
}

double BitRateOf(CDecodeReport const& report, double seconds) {
    return seconds > 0.0 ? kByteBits * static_cast<double>(report.m_identity.m_nSize) / seconds
                         : 0.0;
}

std::string FolderOf(std::string const& path) {
    return std::filesystem::path(path).parent_path().native();
}

std::string PlainKey(CHarmony const& key) {
    constexpr std::uint16_t kMinor = 1; // Fixed: as the engine counts modes.
    constexpr std::uint16_t kMajor = 2;
    if (key.m_eMode == EKeyMode::None) {
        return {};
    }
    return KeyText(static_cast<std::uint16_t>(key.m_nTonic),
                   key.m_eMode == EKeyMode::Minor ? kMinor : kMajor);
}
