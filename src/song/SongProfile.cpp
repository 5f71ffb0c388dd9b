// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongProfile.h"

#include "base/EngineRate.h"
#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileObserver.h"
#include "engine/envelope/ImpactPoints.h"
#include "platform/AudioStream.h"
#include "song/BeatListener.h"
#include "song/ListeningReader.h"
#include "song/SongReader.h"

#include <thread>
#include <utility>

namespace {

/// Keeps what the profile has beyond the engine's record, and hands everything on.
class CStageKeeper final : public IProfileObserver {
public:
    CStageKeeper(CSongProfile& profile, CProfileOptions const& options)
        : m_profile(profile),
          m_pNext(options.m_pObserver),
          m_bEnvelopes(options.m_bKeepEnvelopes),
          m_bBeats(options.m_bHearBeats) {}

    void OnNotes(std::int32_t found, std::int32_t kept) override {
        Tell(&IProfileObserver::OnNotes, found, kept);
    }
    void OnThumbnails(CPfPcmThumbnail const& energy, CPfPcmThumbnail const& bass) override {
        Tell(&IProfileObserver::OnThumbnails, energy, bass);
    }
    void OnImpactPoints(CPfImpactPoints const& points) override {
        Tell(&IProfileObserver::OnImpactPoints, points);
    }
    void OnBaseBpm(float bpm) override { Tell(&IProfileObserver::OnBaseBpm, bpm); }
    void OnClassicPoints(CPfImpactPoints const& points) override {
        Tell(&IProfileObserver::OnClassicPoints, points);
    }
    void OnFoldedBpm(float bpm) override {
        m_profile.m_fHeardBpm = bpm;
        Tell(&IProfileObserver::OnFoldedBpm, bpm);
    }
    void OnShortClipBpm(float bpm) override {
        m_profile.m_bByLength = bpm != m_profile.m_fHeardBpm;
        Tell(&IProfileObserver::OnShortClipBpm, bpm);
    }
    void OnBeats(CPfImpactPoints const& beats) override {
        if (m_bBeats) {
            auto const points = beats.Points();
            m_profile.m_beatSource.m_vPoints.assign(points.begin(), points.end());
        }
        Tell(&IProfileObserver::OnBeats, beats);
    }
    void OnDone(CPfPcmThumbnail& energy, CPfPcmThumbnail& bass) override {
        if (m_pNext != nullptr) {
            m_pNext->OnDone(energy, bass);
        }
        if (m_bEnvelopes) {
            m_profile.m_energy = std::move(energy);
            m_profile.m_bass = std::move(bass);
        }
    }

private:
    template <typename... Parameters, typename... Arguments>
    void Tell(void (IProfileObserver::*what)(Parameters...), Arguments const&... arguments) {
        if (m_pNext != nullptr) {
            (m_pNext->*what)(arguments...);
        }
    }

    CSongProfile& m_profile;
    IProfileObserver* m_pNext;
    bool m_bEnvelopes;
    bool m_bBeats;
};

bool IsCancelled(CProfileOptions const& options) {
    return options.m_pCancel != nullptr && options.m_pCancel->IsSet();
}

/// Finds the beats of a song that was heard, whose grid is in the source already.
void FindBeats(CBeatListener& listener, CSongProfile& profile) {
    CBeatSource& source = profile.m_beatSource;
    source.m_curves = listener.Take();
    std::int64_t mark = 0;
    for (std::int32_t i = 0; profile.m_results.EnumMeasMarks(i, &mark); ++i) {
        source.m_vMarks.push_back(mark);
    }
    source.m_fBpm = profile.m_results.GetBpm();
    // The count is of the file's own frames.
    std::uint32_t const rate = profile.m_outcome.m_report.m_nFileRate;
    source.m_dSeconds = static_cast<double>(profile.m_results.GetSampleCount()) /
                        static_cast<double>(rate > 0 ? rate : kEngineRateHz);
    profile.m_beats = FindBeatTimes(source);
}

/// Those who hear the samples besides the engine.
struct CEars {
    CBeatListener m_beats;
    std::optional<CHarmonyEar> m_harmony;
};

/// Runs the engine over `source`. Returns: true when it came to its end.
bool RunEngine(IPcmReader& source, CProfileOptions const& options, CSongProfile& profile,
               CEars& ears) {
    if (options.m_bHarmony) {
        ears.m_harmony.emplace();
    }
    CListeningReader reader(source, [&](std::span<float const> samples) {
        if (options.m_bHearBeats) {
            ears.m_beats.Add(samples);
        }
        if (ears.m_harmony) {
            ears.m_harmony->Add(samples);
        }
    });
    CProfiler profiler(nullptr);
    profiler.SetSink([&](std::uint8_t percent) {
        profile.m_vPercents.push_back(percent);
        if (options.m_progress) {
            options.m_progress(percent);
        }
    });
    CStageKeeper keeper(profile, options);
    CProfileBuilder builder(options.m_pCancel);
    builder.SetObserver(&keeper);
    builder.BuildProfile(&profiler, &reader, &profile.m_results, profile.m_pPrint.Get(),
                         profile.m_pLargePrint.Get());
    return builder.IsComplete();
}

/// What is to be done when the engine has run, to its end or not.
void Conclude(bool isComplete, CProfileOptions const& options, CSongProfile& profile, CEars& ears) {
    profile.m_bCancelled = IsCancelled(options);
    if (profile.m_bCancelled || !profile.IsHeard()) {
        return;
    }
    if (!isComplete) {
        // A run over a decoded song that neither came to its end nor was cancelled had no memory.
        profile.m_outcome.m_problem = EAnalysisProblem::NoMemory;
        return;
    }
    if (ears.m_harmony) {
        profile.m_harmony = ears.m_harmony->Finish();
    }
    if (options.m_bHearBeats) {
        FindBeats(ears.m_beats, profile);
    }
}

/// One run of the engine over the song. What it brings is void when the stream must restart.
CSongProfile HearOnce(CSongAudio& song, CProfileOptions const& options) {
    CSongProfile profile;
    CEars ears;
    bool isComplete = false;
    {
        bool const isOpen =
            song.m_outcome.m_problem == EAnalysisProblem::None && song.m_stream.GetCount() > 0;
        CSongReader reader(isOpen ? &song.m_stream : nullptr, options.m_bReadAhead);
        isComplete = RunEngine(reader, options, profile, ears);
    }
    // Nobody reads the stream any more.
    profile.m_outcome.m_report = song.m_stream.GetReport();
    if (profile.m_outcome.m_report.m_problem != EDecodeProblem::None) {
        profile.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    }
    Conclude(isComplete, options, profile, ears);
    return profile;
}

} // namespace

bool HasCoresToReadAhead(std::size_t songs) {
    return 2 * songs <= std::thread::hardware_concurrency();
}

CSongProfile::CSongProfile() {
    m_pPrint.Create();
    m_pLargePrint.Create();
}

CSongAudio LoadSong(std::string const& path, CCancelFlag const* cancel) {
    CSongAudio song{.m_stream = CAudioStream(cancel), .m_outcome = {}};
    if (song.m_stream.Open(path) != kStatusOk) {
        song.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    }
    song.m_outcome.m_report = song.m_stream.GetReport();
    return song;
}

CSongProfile ProfileAudio(CSongAudio song, CProfileOptions const& options) {
    CSongProfile profile = HearOnce(song, options);
    while (song.m_stream.MustRestart() && !profile.m_bCancelled) {
        if (song.m_stream.Restart() != kStatusOk) {
            song.m_outcome = {EAnalysisProblem::NotDecoded, song.m_stream.GetReport()};
        }
        profile = HearOnce(song, options);
    }
    return profile;
}

CSongProfile ProfileSamples(std::span<float const> samples, CProfileOptions const& options) {
    CSongProfile profile;
    CEars ears;
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    bool const isComplete = RunEngine(reader, options, profile, ears);
    Conclude(isComplete, options, profile, ears);
    return profile;
}

CSongProfile ProfileSong(std::string const& path, CProfileOptions const& options) {
    return ProfileAudio(LoadSong(path, options.m_pCancel), options);
}
