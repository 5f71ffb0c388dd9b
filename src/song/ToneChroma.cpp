// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Add
//   FindPeaks    maxima of the spectrum that stand out from their surroundings
//   AddTuning    how far the peaks lie from the notes, as a vector
//   NotesOf      the peaks on the notes of that tuning
//   AddBass      the lowest note to the bass
//   AddTriad     the likeliest triad to the triads

#include "song/ToneChroma.h"

#include "base/EngineRate.h"
#include "base/Rounding.h"
#include "song/PlainMath.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kBinHz = float{kEngineRateHz} / static_cast<float>(kToneFrameSamples);
constexpr float kLowestHz = 55.0f;        // Derived: A1, three octaves below 440 Hz.
constexpr std::size_t kLowestClass = 9;   // Derived: A, when C is 0.
constexpr std::size_t kFirstBin = 38;     // Derived: 51 Hz, more than a semitone below 55.
constexpr std::size_t kMiddleNote = 24;   // Fixed: 220 Hz.
constexpr std::size_t kHighNote = 48;     // Fixed: 880 Hz.
constexpr std::size_t kBassNotes = 29;    // Fixed: to 277 Hz, middle C's upper neighbour.
constexpr float kSilence = 800.0f;        // Derived: a sine of -80 dB has a peak of 800.
constexpr float kSemitonesLn = 17.31234f; // Derived: 12 / ln 2.
constexpr float kStandsOut = 2.0f;        // Tuned: scripts/harmony; times the mean around it.
constexpr std::size_t kFewestAround = 8;  // Tuned: scripts/harmony; bins on either side.
constexpr std::size_t kAroundPart = 8;    // Tuned: scripts/harmony; or an eighth of the frequency.
constexpr float kBassPart = 0.4f;         // Tuned: scripts/harmony; of the loudest low note.
constexpr float kSharpness = 2.0f;        // Tuned: scripts/harmony; a quarter tone off counts 0.
constexpr std::size_t kTuningSteps = 50;  // Fixed: two cents.

/// Semitones above 55 Hz of every bin, and what a bin more adds there.
struct CBinTable {
    std::array<float, kToneBins> m_note{};
    std::array<float, kToneBins> m_slope{};

    CBinTable() {
        for (std::size_t k = kFirstBin; k < kToneBins; ++k) {
            auto const bin = static_cast<float>(k);
            m_note[k] = 12.0f * PlainLog2(bin * kBinHz / kLowestHz);
            m_slope[k] = kSemitonesLn / bin;
        }
    }
};

CBinTable const& Bins() {
    static CBinTable const table;
    return table;
}

/// Direction of each step of the tuning, from half a semitone below on.
struct CTuningTable {
    std::array<float, kTuningSteps> m_turns{};
    std::array<double, kTuningSteps> m_cosine{};
    std::array<double, kTuningSteps> m_sine{};

    CTuningTable() {
        for (std::size_t step = 0; step < kTuningSteps; ++step) {
            double const turns = static_cast<double>(step) / kTuningSteps - 0.5;
            m_turns[step] = static_cast<float>(turns);
            m_cosine[step] = PlainCosTurns(turns);
            m_sine[step] = PlainCosTurns(turns - 0.25);
        }
    }
};

CTuningTable const& Tunings() {
    static CTuningTable const table;
    return table;
}

/// Which bins lie around each, and one over their number.
struct CSurroundings {
    std::array<std::uint16_t, kToneBins> m_first{};
    std::array<std::uint16_t, kToneBins> m_end{};
    std::array<double, kToneBins> m_share{};

    CSurroundings() {
        for (std::size_t k = kFirstBin; k < kToneBins; ++k) {
            std::size_t const reach = std::max(kFewestAround, k / kAroundPart);
            std::size_t const end = std::min(kToneBins, k + reach + 1);
            m_first[k] = static_cast<std::uint16_t>(k - reach);
            m_end[k] = static_cast<std::uint16_t>(end);
            m_share[k] = 1.0 / static_cast<double>(end - (k - reach));
        }
    }
};

/// Of each bin, the mean magnitude of the bins around it.
std::array<float, kToneBins> MeansAround(CToneMagnitudes const& magnitudes) {
    static CSurroundings const around;
    std::array<double, kToneBins + 1> sums;
    sums[0] = 0.0;
    for (std::size_t k = 0; k < kToneBins; ++k) {
        sums[k + 1] = sums[k] + static_cast<double>(magnitudes[k]);
    }
    std::array<float, kToneBins> means;
    for (std::size_t k = kFirstBin; k < kToneBins; ++k) {
        means[k] = static_cast<float>((sums[around.m_end[k]] - sums[around.m_first[k]]) *
                                      around.m_share[k]);
    }
    return means;
}

/// Where between the bins a Hann window's peak lies, from the larger neighbour.
float PeakOffset(float before, float peak, float after) {
    if (after >= before) {
        float const ratio = after / peak;
        return (2.0f * ratio - 1.0f) / (ratio + 1.0f);
    }
    float const ratio = before / peak;
    return -(2.0f * ratio - 1.0f) / (ratio + 1.0f);
}

std::array<float, kToneClasses> Folded(std::array<float, kToneNotes> const& notes,
                                       std::size_t first, std::size_t end) {
    std::array<float, kToneClasses> classes{};
    for (std::size_t n = first; n < end; ++n) {
        classes[(n + kLowestClass) % kToneClasses] += notes[n];
    }
    return classes;
}

template <std::size_t Count>
std::array<float, Count> SharesOf(std::array<float, Count> values) {
    float sum = 0.0f;
    for (float const value : values) {
        sum += value;
    }
    for (float& value : values) {
        value = sum > 0.0f ? value / sum : 0.0f;
    }
    return values;
}

} // namespace

float CToneChroma::FindPeaks(CToneMagnitudes const& magnitudes, CPeaks* peaks) {
    std::array<float, kToneBins> const around = MeansAround(magnitudes);
    CBinTable const& bins = Bins();
    float highest = 0.0f;
    float total = 0.0f;
    float tonal = 0.0f;
    for (std::size_t k = kFirstBin; k + 1 < kToneBins; ++k) {
        float const peak = magnitudes[k];
        float const before = magnitudes[k - 1];
        float const after = magnitudes[k + 1];
        total += peak;
        bool const top = peak > before && peak >= after;
        if (top && peak > kStandsOut * around[k] && peak > kSilence) {
            float const note = bins.m_note[k] + bins.m_slope[k] * PeakOffset(before, peak, after);
            peaks->m_list[peaks->m_nCount++] = {note, peak - around[k]};
            highest = std::max(highest, peak);
            tonal += before + peak + after;
        }
    }
    for (std::size_t i = 0; i < peaks->m_nCount; ++i) {
        float& weight = peaks->m_list[i].m_fWeight;
        weight = std::sqrt(weight / highest);
    }
    return total > 0.0f ? tonal / total : 0.0f;
}

void CToneChroma::Add(CToneMagnitudes const& magnitudes) {
    CPeaks peaks;
    float const tonal = FindPeaks(magnitudes, &peaks);
    if (peaks.m_nCount == 0 || !std::isfinite(tonal)) {
        return;
    }
    AddTuning(peaks);
    CNotes notes = NotesOf(peaks);
    float sum = 0.0f;
    for (float const note : notes) {
        sum += note;
    }
    if (!(sum > 0.0f)) {
        return;
    }
    ++m_nFrames;
    for (std::size_t n = 0; n < kToneNotes; ++n) {
        notes[n] *= tonal / sum;
        m_notes[n] += notes[n];
    }
    AddBass(notes, tonal);
    AddTriad(notes);
}

void CToneChroma::AddTuning(CPeaks const& peaks) {
    CTuningTable const& table = Tunings();
    for (std::size_t i = 0; i < peaks.m_nCount; ++i) {
        float const shifted = peaks.m_list[i].m_fNote + 0.5f;
        float const part = shifted - std::floor(shifted);
        std::size_t const step =
            RoundHalfUpToUint32(static_cast<double>(part) * kTuningSteps) % kTuningSteps;
        auto const weight = static_cast<double>(peaks.m_list[i].m_fWeight);
        m_dTuningCosine += weight * table.m_cosine[step];
        m_dTuningSine += weight * table.m_sine[step];
        m_dTuningWeight += weight;
    }
    double furthest = 0.0;
    for (std::size_t step = 0; step < kTuningSteps; ++step) {
        double const along =
            m_dTuningCosine * table.m_cosine[step] + m_dTuningSine * table.m_sine[step];
        if (along > furthest) {
            furthest = along;
            m_fTuning = table.m_turns[step];
        }
    }
}

CToneChroma::CNotes CToneChroma::NotesOf(CPeaks const& peaks) const {
    CNotes notes{};
    for (std::size_t i = 0; i < peaks.m_nCount; ++i) {
        float const place = peaks.m_list[i].m_fNote - m_fTuning;
        float const nearest = std::floor(place + 0.5f);
        if (nearest >= 0.0f && nearest < static_cast<float>(kToneNotes)) {
            float const near = std::max(0.0f, 1.0f - kSharpness * std::abs(place - nearest));
            float& note = notes[static_cast<std::size_t>(nearest)];
            note = std::max(note, near * peaks.m_list[i].m_fWeight);
        }
    }
    return notes;
}

void CToneChroma::AddBass(CNotes const& notes, float weight) {
    auto const end = notes.begin() + kBassNotes;
    float const highest = *std::max_element(notes.begin(), end);
    for (std::size_t n = 0; n < kBassNotes && highest > 0.0f; ++n) {
        if (notes[n] >= kBassPart * highest) {
            m_bass[(n + kLowestClass) % kToneClasses] += weight;
            return;
        }
    }
}

void CToneChroma::AddTriad(CNotes const& notes) {
    std::array<float, kToneClasses> const classes = Folded(notes, 0, kToneNotes);
    std::size_t best = 0;
    float highest = 0.0f;
    for (std::size_t triad = 0; triad < kToneTriads; ++triad) {
        std::size_t const third = triad < kToneClasses ? 4 : 3;
        float const sum = classes[triad % kToneClasses] + classes[(triad + third) % kToneClasses] +
                          classes[(triad + 7) % kToneClasses];
        if (sum > highest) {
            highest = sum;
            best = triad;
        }
    }
    m_triads[best] += highest;
}

CToneShares CToneChroma::Shares() const {
    CToneShares shares;
    shares.m_low = SharesOf(Folded(m_notes, 0, kMiddleNote));
    shares.m_middle = SharesOf(Folded(m_notes, kMiddleNote, kHighNote));
    shares.m_high = SharesOf(Folded(m_notes, kHighNote, kToneNotes));
    shares.m_bass = SharesOf(m_bass);
    shares.m_triads = SharesOf(m_triads);
    return shares;
}

float CToneChroma::TuningCents() const {
    return 100.0f * m_fTuning;
}

float CToneChroma::TuningClarity() const {
    double const square = m_dTuningCosine * m_dTuningCosine + m_dTuningSine * m_dTuningSine;
    return m_dTuningWeight > 0.0 ? static_cast<float>(std::sqrt(square) / m_dTuningWeight) : 0.0f;
}
