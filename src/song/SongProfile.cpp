// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongProfile.h"

#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileObserver.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/Tempo.h"
#include "platform/AudioDecoder.h"
#include "song/BeatListener.h"
#include "song/ListeningReader.h"
#include "song/SamplePass.h"

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
        if (m_bEnvelopes) {
            m_profile.m_energy = energy;
            m_profile.m_bass = bass;
        }
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
    void OnShortClipBpm(float bpm) override { Tell(&IProfileObserver::OnShortClipBpm, bpm); }
    void OnBeats(CPfImpactPoints const& beats) override {
        if (m_bBeats) {
            auto const points = beats.Points();
            m_profile.m_beatSource.m_vPoints.assign(points.begin(), points.end());
        }
        Tell(&IProfileObserver::OnBeats, beats);
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

void RunEngine(IPcmReader& source, CProfileOptions const& options, CSongProfile& profile) {
    CBeatListener listener;
    std::optional<CHarmonyEar> ear;
    if (options.m_bHarmony) {
        ear.emplace();
    }
    CListeningReader reader(source, [&](std::span<float const> samples) {
        if (options.m_bHearBeats) {
            listener.Add(samples);
        }
        if (ear) {
            ear->Add(samples);
        }
    });
    CProfiler profiler(nullptr);
    profiler.SetSink(options.m_progress ? options.m_progress : [](std::uint8_t) {});
    CStageKeeper keeper(profile, options);
    CProfileBuilder builder(options.m_pCancel);
    builder.SetObserver(&keeper);
    builder.BuildProfile(&profiler, &reader, &profile.m_results, profile.m_pPrint.Get(),
                         profile.m_pLargePrint.Get());
    profile.m_bCancelled = IsCancelled(options);
    // A run over a decoded song that neither came to its end nor was cancelled had no memory.
    if (profile.IsHeard() && !builder.IsComplete() && !profile.m_bCancelled) {
        profile.m_outcome.m_problem = EAnalysisProblem::NoMemory;
    }
    if (ear) {
        profile.m_harmony = ear->Finish();
    }
    if (options.m_bHearBeats && profile.IsHeard() && !profile.m_bCancelled) {
        FindBeats(listener, profile);
    }
}

} // namespace

CSongProfile::CSongProfile() {
    m_pPrint.Create();
    m_pLargePrint.Create();
}

CSongAudio LoadSong(std::string const& path, CCancelFlag const* cancel) {
    CSongAudio song;
    CAudioDecoder decoder(cancel);
    if (decoder.Decode(path, song.m_audio) != kStatusOk) {
        song.m_outcome.m_problem = EAnalysisProblem::NotDecoded;
    }
    song.m_outcome.m_report = decoder.GetReport();
    return song;
}

CSongProfile ProfileAudio(CSongAudio song, CProfileOptions const& options) {
    CSongProfile profile;
    profile.m_outcome = std::move(song.m_outcome);
    CSamplePass reader(song.m_audio);
    RunEngine(reader, options, profile);
    return profile;
}

CSongProfile ProfileSamples(std::span<float const> samples, CProfileOptions const& options) {
    CSongProfile profile;
    CPcmReader reader(samples.data(), static_cast<std::int32_t>(samples.size()));
    RunEngine(reader, options, profile);
    return profile;
}

CSongProfile ProfileSong(std::string const& path, CProfileOptions const& options) {
    return ProfileAudio(LoadSong(path, options.m_pCancel), options);
}
