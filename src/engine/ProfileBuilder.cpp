// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// BuildProfile
//   CProfileRun::Listen            the pass over the audio: energy, notes, prints, key
//   CProfileRun::Analyse
//     FindTempo                    the rule for short clips
//     StoreLength                  sample count, translation to the reader's rate

#include "engine/ProfileBuilder.h"

#include "engine/Fingerprint.h"
#include "engine/KeyDetector.h"
#include "engine/NoteDetector.h"
#include "engine/PcmReader.h"
#include "engine/PcmThumbnail.h"
#include "engine/ProfileObserver.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/ThumbnailBuilder.h"

#include <array>
#include <new>

namespace {

constexpr double kWorkingRate = 44100.0;    // Fixed: rate of the stages, in samples per second.
constexpr std::uint16_t kFrameLength = 256; // Fixed: samples per element of the energy.

// Fixed: progress behind the stages, in per cent.
constexpr std::uint8_t kStartPercent = 0;
constexpr std::uint8_t kPassPercent = 95;
constexpr std::uint8_t kOnsetsPercent = 98;
constexpr std::uint8_t kMeasuresPercent = 99;
constexpr std::uint8_t kDonePercent = 100;

/// What the stages of one run share, and the stages in the order of their calls.
class CProfileRun {
public:
    CProfileRun(CCancelFlag const* cancel, IProfileObserver* observer, CProfiler* profiler,
                CProfileResults* results)
        : m_pObserver(observer),
          m_pProfiler(profiler),
          m_pResults(results),
          m_builder(cancel, kWorkingRate) {}

    /// The pass and what comes straight out of it. Returns: false when it was cancelled or failed.
    bool Listen(IPcmReader* reader, CFingerprint* print, CFingerprint* largePrint);

    /// Everything behind the pass.
    void Analyse();

private:
    void ReadFormat(IPcmReader* reader);
    void FindTempo();
    void StoreLength();

    IProfileObserver* m_pObserver;
    CProfiler* m_pProfiler;
    CProfileResults* m_pResults;
    CPcmThumbnailBuilder m_builder;

    std::int64_t m_nReaderCount = 0; // of the reader, in its own samples
    std::uint32_t m_nReaderRate = 1;
    CPfPcmThumbnail m_energy; // spectral energy
    CPfPcmThumbnail m_bass;   // peaks of the signal below 120 Hz
    float m_fBpm = 0.0f;
};

bool CProfileRun::Listen(IPcmReader* reader, CFingerprint* print, CFingerprint* largePrint) {
    ReadFormat(reader);
    CPfNoteDetector notes(reader, &m_builder, &m_bass);
    CPfFingerprintBuilder prints(print, nullptr, nullptr);
    bool const complete =
        m_builder.BuildSpecEng(m_pProfiler, reader, kFrameLength, &m_energy, &notes, &prints);
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
    m_pProfiler->SendProfileProgress(kOnsetsPercent);
    FindTempo();
    m_pResults->SetBpm(m_fBpm);
    m_pProfiler->SendProfileProgress(kMeasuresPercent);
    StoreLength();
    m_pProfiler->SendProfileProgress(kDonePercent);
}

void CProfileRun::FindTempo() {
    CProfileBuilder::ShortClipBpmUpdate(m_energy.GetSampleCount(), m_energy.GetSampleRate(),
                                        &m_fBpm);
    if (m_pObserver != nullptr) {
        m_pObserver->OnShortClipBpm(m_fBpm);
    }
}

void CProfileRun::StoreLength() {
    m_pResults->SetSampleCount(m_nReaderCount);
    m_pResults->SetSampleRate(m_nReaderRate, m_energy.GetSampleRate());
}

} // namespace

std::int32_t CProfileBuilder::BuildProfile(CProfiler* profiler, IPcmReader* reader,
                                           CProfileResults* results, CFingerprint* print,
                                           CFingerprint* largePrint) {
    try {
        CProfileRun run(&m_cancel, m_pObserver, profiler, results);
        profiler->SendProfileProgress(kStartPercent);
        if (reader->IsValid() == kStatusOk && run.Listen(reader, print, largePrint)) {
            run.Analyse();
        }
    } catch (std::bad_alloc const&) {
        // Without memory the record keeps what it has; nothing is thrown out of the engine.
    }
    return 0;
}

bool CProfileBuilder::CancelProfiling() {
    m_cancel.Set();
    return true;
}
