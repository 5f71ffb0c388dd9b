// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>
#include <span>

class CPfFingerprintBuilder;
class CPfNoteDetector;
class CPfPcmThumbnail;
class CProfiler;
class IPcmReader;

/// Turns PCM into thumbnails and reshapes thumbnails in place for the later stages. Operations
/// that poll the cancel flag leave a thumbnail as far as they got when it is set.
/// Thread: worker.
class CPcmThumbnailBuilder {
public:
    /// `cancel` belongs to the run and must outlive the builder; null means never cancelled.
    /// Units: `sampleRate` in samples per second, the rate that the stages work at.
    CPcmThumbnailBuilder(CCancelFlag const* cancel, double sampleRate);

    /// Sizes `thumb` for the reader's length, converted to 44100 Hz.
    /// Returns: false when the reader's rate or `samplesPerElement` is 0; `thumb` is then
    /// unchanged.
    bool InitThumbnail(IPcmReader* reader, std::uint16_t samplesPerElement, CPfPcmThumbnail* thumb);

    /// Peak envelope of one block, written into `thumb`.
    /// Units: `startSample` in samples from the stream's start.
    /// Shape: reads pcm[0, n); writes one element per whole group of samples; the tail is left out.
    /// Returns: true.
    bool BuildPcmThumbnailRange(float const* pcm, std::int32_t n, std::int64_t startSample,
                                CPfPcmThumbnail* thumb);

    /// Largest absolute value of samples[0, n); 0 for none.
    [[nodiscard]] static float GetMaxValue(float const* samples, std::uint32_t n);

    /// The one pass over the audio: cuts it into frames of `frameLength` samples without overlap,
    /// hands each to both listeners, stores its spectral energy as one element of `specThumb` and
    /// reports 0 to 94 per cent. A last incomplete frame is left out. Either listener may be null.
    /// Shape: `frameLength` is a power of two, at least 4.
    /// Returns: true when the whole stream was processed; false on cancel, on any other frame
    /// length, or without memory for the buffers.
    bool BuildSpecEng(CProfiler* profiler, IPcmReader* reader, std::uint16_t frameLength,
                      CPfPcmThumbnail* specThumb, CPfNoteDetector* noteDetector,
                      CPfFingerprintBuilder* fingerprintBuilder);

    /// Moving average of nine elements, in place; fewer elements are all averaged together.
    /// Returns: false when cancelled; `thumb` is then unchanged.
    bool SmoothThumbnail(CPfPcmThumbnail* thumb);

    /// The same average of `source` as `target`, for which no third array is needed.
    /// Returns: false when cancelled, or without memory; `target` is then of no use.
    bool BuildSmoothThumbnail(CPfPcmThumbnail const& source, CPfPcmThumbnail* target) const;

    /// Holds every peak and lets it fall linearly to 0 within a sixteenth of a measure at 164 BPM,
    /// in place. Returns: false when cancelled, or when that time has no whole element and
    /// `thumb` is unchanged.
    bool PeakHoldThumbnail(CPfPcmThumbnail* thumb);

    /// Puts a hood after every peak, p - p * (k / L)^4 at k elements behind peak p, in place, where
    /// L is a measure (of the last `ApplyBpm`) divided by `divisor`.
    /// Returns: false when cancelled, or when `divisor` or L is 0 and `thumb` is unchanged.
    bool ApplyPeakHoods(CPfPcmThumbnail* thumb, std::uint16_t divisor);

    /// First difference: element i of `target` is element i + 1 of `source` less element i. The
    /// last element of a target of the same length keeps its value. Returns: true.
    bool BuildSlopeThumbnail(CPfPcmThumbnail const* source, CPfPcmThumbnail* target);

private:
    [[nodiscard]] bool IsCancelled() const;
    bool Smooth(std::span<float const> elements, std::span<float> smooth) const;
    [[nodiscard]] std::uint32_t WorkingRate() const;

    CCancelFlag const* m_pCancel;
    double m_dSampleRate;
};
