// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// BuildProfile
//   CProfileRun::Listen        the pass over the audio: energy, notes, prints, key
//   CProfileRun::Analyse
//     FindOnsets               onsets in the held energy, for the tempo and for the grid
//     FindTempo                tempo of the onsets, octave fold, rule for short clips
//     FindBeats                grid and refined tempo, which is the one reported
//     MarkMeasures             first downbeat, then every measure
//     WeighBeats               accent patterns
//     FindIntroAndOutro        intro, outro, fade points
//     FindSprockets            mix points
//     StoreLength              sample count, translation to the reader's rate

#include "engine/ProfileBuilder.h"

#include "base/EngineRate.h"
#include "engine/PcmReader.h"
#include "engine/ProfileObserver.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/beats/BeatBuilder.h"
#include "engine/beats/BeatPattern.h"
#include "engine/envelope/ImpactPoints.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/mix/MixParamGen.h"
#include "engine/notes/KeyDetector.h"
#include "engine/notes/NoteDetector.h"
#include "engine/print/Fingerprint.h"
#include "engine/tempo/BpmDetector.h"
#include "engine/tempo/ImpactFinder.h"
#include "engine/tempo/ShortClip.h"

#include <algorithm>
#include <array>
#include <new>

namespace {

constexpr std::uint16_t kFrameLength = 256;    // Fixed: samples per element of the energy.
constexpr std::uint16_t kPointsPerMeasure = 4; // Fixed: onsets wanted, one a beat.
constexpr std::uint16_t kHoodDivisor = 2;      // Fixed: hoods of half a measure.
constexpr std::uint16_t kFadePoints = 12;      // Fixed: 0 down to -6600.
constexpr std::int32_t kFadeStep = -600;       // Fixed: attenuation from point to point.
constexpr std::int32_t kFadeLimit = -600;      // Fixed: steepest fade in a second.
constexpr std::uint16_t kSprocketMeasures = 8; // Fixed: length of a mix.

// Fixed: progress behind the stages, in per cent.
constexpr std::uint8_t kStartPercent = 0;
constexpr std::uint8_t kPassPercent = 95;
constexpr std::uint8_t kOnsetsPercent = 98;
constexpr std::uint8_t kMeasuresPercent = 99;
constexpr std::uint8_t kDonePercent = 100;

/// Gives the run up for want of memory unless the thumbnail had enough.
void Require(CPfPcmThumbnail const& thumb) {
    if (thumb.LacksMemory()) {
        throw std::bad_alloc();
    }
}

/// A copy to be reshaped. Gives the run up for want of memory. An envelope of six hours takes 15
/// MB, so no stage has more than one copy, and none outlives its stage.
void Copy(CPfPcmThumbnail const& from, CPfPcmThumbnail& to) {
    to = from;
    Require(to);
}

/// What the stages of one run share, and the stages in the order of their calls.
class CProfileRun {
public:
    CProfileRun(CCancelFlag const* cancel, IProfileObserver* observer, CProfiler* profiler,
                CProfileResults* results)
        : m_pCancel(cancel),
          m_pObserver(observer),
          m_pProfiler(profiler),
          m_pResults(results),
          m_builder(cancel, kEngineRateHz) {}

    /// The pass and what comes straight out of it. Returns: false when it was cancelled or failed.
    bool Listen(IPcmReader* reader, CFingerprint* print, CFingerprint* largePrint);

    /// Everything behind the pass. The envelopes may be gone afterwards.
    void Analyse();

private:
    void ReadFormat(IPcmReader* reader);
    void FindOnsets();
    void FindTempo();
    void FoldTempo();
    void FindBeats();
    void MarkMeasures();
    void WeighBeats();
    void FindIntroAndOutro();
    void FindSprockets();
    void StoreLength();

    [[nodiscard]] CPfImpactPoints NewPoints() const {
        return {m_energy.GetSampleRate(), m_energy.GetSampleCount()};
    }

    CCancelFlag const* m_pCancel;
    IProfileObserver* m_pObserver; // may be null
    CProfiler* m_pProfiler;
    CProfileResults* m_pResults;
    CPcmThumbnailBuilder m_builder;

    std::int64_t m_nReaderCount = 0; // of the reader, in its own samples
    std::uint32_t m_nReaderRate = 1;
    CPfPcmThumbnail m_energy; // spectral energy
    CPfPcmThumbnail m_bass;   // peaks of the signal below 120 Hz
    CPfImpactPoints m_onsets{0, 0};
    CPfImpactPoints m_candidates{0, 0}; // more of them, for the grid
    CPfImpactPoints m_beats{0, 0};
    float m_fBpm = 0.0f;
};

bool CProfileRun::Listen(IPcmReader* reader, CFingerprint* print, CFingerprint* largePrint) {
    ReadFormat(reader);
    CPfNoteDetector notes(reader, &m_builder, &m_bass);
    CPfFingerprintBuilder prints(print, nullptr, nullptr);
    bool const complete =
        m_builder.BuildSpecEng(m_pProfiler, reader, kFrameLength, &m_energy, &notes, &prints) &&
        notes.HasMemory() && !m_energy.LacksMemory() && !m_bass.LacksMemory();
    (void)notes.FinalizeNoteDetection(m_pProfiler);
    prints.BuildLargePrint(&m_energy, largePrint);
    (void)CPfKeyDetector::DetectKey(m_pProfiler, notes.GetNoteMap(), m_pResults);
    if (m_pObserver != nullptr) {
        m_pObserver->OnNotes(static_cast<std::int32_t>(notes.GetFoundCount()),
                             static_cast<std::int32_t>(notes.GetNoteMap()->GetCount()));
    }
    return complete;
}

void CProfileRun::ReadFormat(IPcmReader* reader) {
    (void)reader->GetSampleCount(&m_nReaderCount);
    (void)reader->GetSampleRate(&m_nReaderRate);
    std::array<std::uint8_t, kFormatRecordBytes> record{};
    std::uint32_t bitRate = 0;
    (void)reader->GetFormatInfo(record.data(), &bitRate);
    if (bitRate != 0) {
        m_pResults->SetBitRate(bitRate);
    }
}

void CProfileRun::Analyse() {
    m_pProfiler->SendProfileProgress(kPassPercent);
    if (m_pObserver != nullptr) {
        m_pObserver->OnThumbnails(m_energy, m_bass);
    }
    FindOnsets();
    m_pProfiler->SendProfileProgress(kOnsetsPercent);
    FindTempo();
    FindBeats();
    MarkMeasures();
    m_pProfiler->SendProfileProgress(kMeasuresPercent);
    WeighBeats();
    FindIntroAndOutro();
    FindSprockets();
    StoreLength();
    m_pProfiler->SendProfileProgress(kDonePercent);
    if (m_pObserver != nullptr) {
        m_pObserver->OnDone(m_energy, m_bass);
    }
}

void CProfileRun::FindOnsets() {
    CPfPcmThumbnail held;
    Copy(m_energy, held);
    (void)m_builder.PeakHoldThumbnail(&held);
    m_onsets = NewPoints();
    CPfImpactFinder const finder(m_pCancel);
    (void)finder.BuildImpactPoints(&held, kPointsPerMeasure, &m_onsets);
    m_candidates = CPfBeatBuilder(m_pCancel).FindCandidates(held);
    if (m_pObserver != nullptr) {
        m_pObserver->OnImpactPoints(m_onsets);
    }
}

void CProfileRun::FindTempo() {
    CPfBpmDetector const detector(m_pCancel);
    m_fBpm = detector.DetectBaseBpm(&m_onsets);
    if (m_pObserver != nullptr) {
        m_pObserver->OnBaseBpm(m_fBpm);
    }
    FoldTempo();
    CProfileBuilder::ShortClipBpmUpdate(m_energy.GetSampleCount(), m_energy.GetSampleRate(),
                                        &m_fBpm);
    if (m_pObserver != nullptr) {
        m_pObserver->OnShortClipBpm(m_fBpm);
    }
}

void CProfileRun::FoldTempo() {
    CPfPcmThumbnail smooth;
    (void)m_builder.BuildSmoothThumbnail(m_bass, &smooth);
    Require(smooth);
    CPfImpactPoints classic = NewPoints();
    CPfImpactFinder const finder(m_pCancel);
    (void)finder.BuildImpactPointsClassic(&smooth, kPointsPerMeasure, &classic);
    m_fBpm = CPfBpmDetector::FoldUpBpm(&classic, m_fBpm);
    if (m_pObserver != nullptr) {
        m_pObserver->OnClassicPoints(classic);
        m_pObserver->OnFoldedBpm(m_fBpm);
    }
}

void CProfileRun::FindBeats() {
    m_beats = NewPoints();
    CPfBeatBuilder const beats(m_pCancel);
    beats.BuildGrid(m_energy, m_candidates, &m_fBpm, &m_beats);
    m_pResults->SetBpm(m_fBpm);
    if (m_pObserver != nullptr) {
        m_pObserver->OnBeats(m_beats);
    }
}

void CProfileRun::MarkMeasures() {
    CPfPcmThumbnail attacks;
    Copy(m_bass, attacks);
    (void)m_builder.PeakHoldThumbnail(&attacks);
    // Deliberate: the hoods come before the tempo that they take their length from and so change
    // nothing.
    (void)m_builder.ApplyPeakHoods(&attacks, kHoodDivisor);
    attacks.ApplyBpm(m_fBpm);
    (void)CPfBeatBuilder::BuildMeasStartMarks(&m_bass, &attacks, &m_beats);

    CPfImpactPoints measures = NewPoints();
    measures = m_beats;
    (void)CPfBeatBuilder::BuildExtMeasStartMarks(&measures);
    m_pResults->AddMeasMarks(&measures);
}

void CProfileRun::WeighBeats() {
    CPfBeatPattern energyPattern;
    CPfBeatPattern bassPattern;
    (void)CPfBeatBuilder::BuildBeatPattern(&m_energy, &m_beats, &energyPattern);
    (void)CPfBeatBuilder::BuildBeatPattern(&m_bass, &m_beats, &bassPattern);
    m_pResults->AddBeatPatterns(&energyPattern, &bassPattern);
}

void CProfileRun::FindIntroAndOutro() {
    CPfPcmThumbnail smooth;
    (void)m_builder.BuildSmoothThumbnail(m_energy, &smooth);
    Require(smooth);
    smooth.ApplyBpm(m_fBpm);
    std::int64_t const introEnd = CPfMixParamGen::FindIntroEnd(&smooth);
    std::int64_t const outroStart = CPfMixParamGen::FindOutroStart(&smooth);
    m_pResults->SetIntroEnd(introEnd);
    m_pResults->SetOutroStart(std::max(introEnd, outroStart));
    m_pResults->SetPeakLevel(smooth.GetMaxRunningMeasAvg());

    std::array<std::uint64_t, kFadePoints> points{};
    (void)CPfMixParamGen::BuildIntroFadePoints(points.data(), kFadePoints, kFadeStep, kFadeLimit,
                                               &smooth, introEnd);
    for (std::uint64_t const point : points) {
        m_pResults->AddIntroFadePoint(point);
    }
}

void CProfileRun::FindSprockets() {
    CPfPcmThumbnail envelope;
    Copy(m_energy, envelope);
    // Deliberate: without a tempo yet, as for the measures; and the peaks are not held.
    (void)m_builder.ApplyPeakHoods(&envelope, kHoodDivisor);
    envelope.ApplyBpm(m_fBpm);
    (void)CPfMixParamGen::BuildBeatMixSprockets(&envelope, &m_beats, kSprocketMeasures, m_pCancel,
                                                m_pResults);
}

void CProfileRun::StoreLength() {
    m_pResults->SetSampleCount(m_nReaderCount);
    m_pResults->SetSampleRate(m_nReaderRate, m_energy.GetSampleRate());
}

} // namespace

std::int32_t CProfileBuilder::BuildProfile(CProfiler* profiler, IPcmReader* reader,
                                           CProfileResults* results, CFingerprint* print,
                                           CFingerprint* largePrint) {
    m_bComplete = false;
    CProfiler silent(nullptr);
    silent.SetSink([](std::uint8_t) {});
    profiler = profiler != nullptr ? profiler : &silent;
    try {
        CProfileRun run(m_pCancel, m_pObserver, profiler, results);
        profiler->SendProfileProgress(kStartPercent);
        if (reader->IsValid() == kStatusOk && run.Listen(reader, print, largePrint)) {
            run.Analyse();
            m_bComplete = true;
        }
    } catch (std::bad_alloc const&) {
        // Without memory the record keeps what it has; nothing is thrown out of the engine.
        return 0;
    }
    return 0;
}

bool CProfileBuilder::CancelProfiling() {
    m_cancel.Set();
    return true;
}

void CProfileBuilder::ShortClipBpmUpdate(std::int64_t sampleCount, std::uint32_t sampleRate,
                                         float* bpm) {
    UpdateShortClipBpm(sampleCount, sampleRate, bpm);
}
