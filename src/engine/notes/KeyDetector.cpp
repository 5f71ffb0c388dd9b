// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// DetectKey: count the notes by pitch class (CountNotes), normalise, compare with the minor profile
// at each tonic and then with the major one (TryMode).

#include "engine/notes/KeyDetector.h"

#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/notes/NoteMap.h"

namespace {

/// The best key so far.
struct CBestKey {
    float m_fCorrelation = 0.0f;
    std::uint16_t m_nTonic = 0;
    std::uint16_t m_nMode = CPfKeyDetector::kNoKey;
};

CPfKeyMap CountNotes(CPfNoteMap* notes) {
    CPfKeyMap histogram;
    CPfNoteDetection* detection = nullptr;
    for (std::int32_t i = 0; notes->EnumItems(i, &detection) == kStatusOk; ++i) {
        histogram.AddNote(detection->m_nNote);
    }
    return histogram;
}

void TryMode(CPfKeyMap const& histogram, CKeyProfile const& profile, std::uint16_t mode,
             CBestKey* best) {
    CPfKeyMap key;
    for (std::uint16_t tonic = 0; tonic < kPitchClasses; ++tonic) {
        float correlation = 0.0f;
        key.LoadStandardMap(profile, tonic);
        key.CalcMapCorrelation(&histogram, &correlation);
        if (correlation > best->m_fCorrelation) {
            *best = {correlation, tonic, mode};
        }
    }
}

} // namespace

CStatus CPfKeyMap::AddNote(std::uint16_t note) {
    ++m_nCount;
    m_fBins[note % kPitchClasses] += 1.0f;
    return kStatusOk;
}

CStatus CPfKeyMap::Normalize() {
    if (m_nCount != 0) {
        auto const count = static_cast<float>(m_nCount);
        for (float& bin : m_fBins) {
            bin /= count;
        }
        m_nCount = 1;
    }
    return kStatusOk;
}

CStatus CPfKeyMap::LoadStandardMap(CKeyProfile const& profile, std::uint16_t key) {
    std::size_t const tonic = key % kPitchClasses;
    for (std::size_t i = 0; i < kPitchClasses; ++i) {
        m_fBins[i] = profile[(i + kPitchClasses - tonic) % kPitchClasses];
    }
    m_nCount = 1;
    return kStatusOk;
}

CStatus CPfKeyMap::CalcMapCorrelation(CPfKeyMap const* other, float* out) const {
    float sum = 0.0f;
    for (std::size_t i = 0; i < kPitchClasses; ++i) {
        sum += m_fBins[i] * other->m_fBins[i];
    }
    *out = sum;
    return kStatusOk;
}

CStatus CPfKeyDetector::DetectKey(CProfiler* profiler, CPfNoteMap* notes,
                                  CProfileResults* results) {
    if (profiler->IsCancelled()) {
        return kStatusNothing;
    }
    CPfKeyMap histogram = CountNotes(notes);
    histogram.Normalize();
    histogram.ReportDistribution();
    CBestKey best;
    TryMode(histogram, g_fMinorKeyMap, kMinor, &best);
    TryMode(histogram, g_fMajorKeyMap, kMajor, &best);
    results->SetKey(best.m_nTonic, best.m_nMode);
    return kStatusOk;
}
