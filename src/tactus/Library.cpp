// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/EngineRate.h"
#include "export/SongJson.h"
#include "export/TakenSong.h"
#include "platform/Resampler.h"
#include "song/SongTags.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"
#include "tactus/SongValue.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tactus {

namespace {

/// The house's flag, set when the caller's token asks for a stop.
class CStopFlag {
public:
    explicit CStopFlag(std::stop_token const& token) : m_callback(token, CSetFlag{m_flag}) {}

    [[nodiscard]] CCancelFlag const* Flag() const { return &m_flag; }

private:
    struct CSetFlag {
        CCancelFlag& m_flag;
        void operator()() const noexcept { m_flag.Set(); }
    };

    CCancelFlag m_flag;
    std::stop_callback<CSetFlag> m_callback;
};

CProfileOptions OptionsOf(Options const& options, CStopFlag const& stop) {
    CProfileOptions house;
    house.m_pCancel = stop.Flag();
    house.m_bKeepEnvelopes = true;
    house.m_bHearBeats = true;
    house.m_bHarmony = true;
    if (options.progress) {
        house.m_progress = [&options](std::uint8_t percent) { options.progress(percent); };
    }
    return house;
}

/// Samples that can't be heard.
Song Failed(EDecodeProblem problem) {
    CAnalysisOutcome outcome{.m_problem = EAnalysisProblem::NotDecoded};
    outcome.m_report.m_problem = problem;
    return SongOf(outcome);
}

CShownTags ShownOf(Tags const& tags) {
    CShownTags shown;
    shown.m_sTitle = tags.title;
    shown.m_sArtist = tags.artist;
    shown.m_sAlbum = tags.album;
    shown.m_sKey = tags.key;
    shown.m_sTempo = tags.tempoText;
    shown.m_tempo = JudgeTagTempo(tags.tempoText);
    return shown;
}

/// What is told on request, and is there.
CSongJsonWishes WishesFor(CHeardSong const& heard) {
    CSongJsonWishes wishes{.m_vMore = {"halfBeats", "fingerprint", "samples"}};
    if (heard.m_facts && !heard.m_facts->m_energy.m_vLevels.empty()) {
        wishes.m_vMore.emplace_back("envelopes");
    }
    return wishes;
}

} // namespace

Song analyze(std::filesystem::path const& path, Options const& options) {
    CStopFlag const stop(options.stop);
    return SongOf(ProfileSong(path.native(), OptionsOf(options, stop)), options.keepEnvelopes);
}

Song analyze(std::span<float const> samples, unsigned rate, Options const& options) {
    if (samples.empty()) {
        return Failed(EDecodeProblem::Empty);
    }
    if (samples.size() > std::size_t{std::numeric_limits<std::int32_t>::max()}) {
        return Failed(EDecodeProblem::TooLong);
    }
    if (!std::ranges::all_of(samples, [](float sample) { return std::isfinite(sample); })) {
        Song song = Failed(EDecodeProblem::Undecodable);
        song.problem = Problem::BadSamples;
        return song;
    }
    CStopFlag const stop(options.stop);
    CDecodedAudio audio;
    if (rate != kEngineRateHz) {
        EDecodeProblem const problem = Resample(samples, rate, audio);
        if (problem != EDecodeProblem::None) {
            return Failed(problem);
        }
        samples = audio.Samples();
    }
    return SongOf(ProfileSamples(samples, OptionsOf(options, stop)), options.keepEnvelopes);
}

Tags readTags(std::filesystem::path const& path) {
    CShownTags const tags = ReadShownTags(CString::FromPath(path.native()));
    return {.title = tags.m_sTitle,
            .artist = tags.m_sArtist,
            .album = tags.m_sAlbum,
            .key = tags.m_sKey,
            .tempoText = tags.m_sTempo,
            .tempo = tags.m_tempo.m_worth == ETagTempo::Unlikely ? 0.0 : tags.m_tempo.m_dBpm};
}

Refusal storeTempo(std::filesystem::path const& path, Song const& song,
                   std::optional<double> tempo) {
    double const bpm = tempo.value_or(song.tempo);
    if (song.evidence == nullptr || !(bpm > 0.0) || !std::isfinite(bpm)) {
        return Refusal::NoTempo;
    }
    CString const text(TempoText(bpm).c_str());
    return RefusalOf(
        StoreTempo(CString::FromPath(path.native()), song.evidence->heard.m_outcome, text, {}));
}

std::string toJson(Song const& song, std::filesystem::path const& path, Tags const& tags) {
    if (song.evidence == nullptr) {
        return {};
    }
    CHeardSong const& heard = song.evidence->heard;
    return SongJson(TakenSongOf(path.native(), ShownOf(tags), heard), WishesFor(heard));
}

} // namespace tactus
