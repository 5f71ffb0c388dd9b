// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/envelope/Tempo.h"
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
    house.m_bKeepEnvelopes = options.keepEnvelopes;
    if (options.progress) {
        house.m_progress = [&options](std::uint8_t percent) { options.progress(percent); };
    }
    return house;
}

Song Failed(Problem problem) {
    Song song;
    song.problem = problem;
    return song;
}

} // namespace

Song analyze(std::filesystem::path const& path, Options const& options) {
    CStopFlag const stop(options.stop);
    return SongOf(ProfileSong(path.native(), OptionsOf(options, stop)));
}

Song analyze(std::span<float const> samples, unsigned rate, Options const& options) {
    if (samples.empty()) {
        return Failed(Problem::Empty);
    }
    if (samples.size() > std::size_t{std::numeric_limits<std::int32_t>::max()}) {
        return Failed(Problem::TooLong);
    }
    if (!std::ranges::all_of(samples, [](float sample) { return std::isfinite(sample); })) {
        return Failed(Problem::BadSamples);
    }
    CStopFlag const stop(options.stop);
    CDecodedAudio audio;
    if (rate != kEngineRateHz) {
        CAnalysisOutcome outcome{.m_problem = EAnalysisProblem::NotDecoded};
        outcome.m_report.m_problem = Resample(samples, rate, audio);
        if (outcome.m_report.m_problem != EDecodeProblem::None) {
            return Failed(ProblemOf(outcome));
        }
        samples = audio.Samples();
    }
    return SongOf(ProfileSamples(samples, OptionsOf(options, stop)));
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
        StoreTempo(CString::FromPath(path.native()), song.evidence->outcome, text, {}));
}

} // namespace tactus
