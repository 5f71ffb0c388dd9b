// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The pass over the audio, BuildSpecEng:
//   CSpectralPass::TakeChunk   up to 24 KiB of floats, cut into frames
//     CSpectralPass::TakeFrame   listeners, energy, progress
// The envelope shapers are in ThumbnailShapes.cpp.

#include "engine/envelope/ThumbnailBuilder.h"

#include "base/Rounding.h"
#include "engine/PcmReader.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/Tempo.h"
#include "engine/notes/NoteDetector.h"
#include "engine/print/Fingerprint.h"
#include "engine/signal/SpecEngBuilder.h"
#include "engine/signal/SpecEngLanes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <span>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

constexpr std::int64_t kReadBytes = 24576; // Fixed: 6144 floats, 24 frames of 256.
constexpr std::uint32_t kPassPercent = 94; // Fixed: where the pass ends on the progress scale.
constexpr std::size_t kFramesHeld = kSpecEngLanes; // Derived: what is transformed side by side.
constexpr std::uint32_t kFramesPerReport = 2000;   // Fixed: 11.6 s of audio in frames of 256.

/// a * b / c with a product that wraps at 64 bits.
std::int64_t ScaleWrapped(std::int64_t a, std::uint32_t b, std::uint32_t c) {
    auto const product = static_cast<std::uint64_t>(a) * b;
    return static_cast<std::int64_t>(product) / std::int64_t{c};
}

/// State of one pass: the frame that is being filled and where it goes.
class CSpectralPass {
public:
    CSpectralPass(CProfiler* profiler, std::uint16_t frameLength, std::uint32_t elementCount,
                  CPfPcmThumbnail* specThumb, CPfNoteDetector* noteDetector,
                  CPfFingerprintBuilder* fingerprintBuilder)
        : m_pProfiler(profiler),
          m_pThumb(specThumb),
          m_pNotes(noteDetector),
          m_pPrint(fingerprintBuilder),
          m_specEng(frameLength),
          m_pFrames(new (std::nothrow) float[kFramesHeld * frameLength]),
          m_nFrameLength(frameLength),
          m_nElementCount(elementCount) {}

    [[nodiscard]] bool IsReady() const { return m_pFrames != nullptr; }

    /// Fills frames from `samples`. Returns: false when cancelled.
    bool TakeChunk(std::span<float const> samples, CCancelFlag const* cancel) {
        while (!samples.empty()) {
            if (cancel != nullptr && cancel->IsSet()) {
                return false;
            }
            std::size_t const piece = std::min(samples.size(), m_nFrameLength - m_nFill);
            float* const frame = m_pFrames.get() + m_nHeld * m_nFrameLength;
            std::ranges::copy(samples.first(piece), frame + m_nFill);
            samples = samples.subspan(piece);
            m_nFill += piece;
            if (m_nFill == m_nFrameLength) {
                TakeFrame(frame);
                m_nFill = 0;
            }
        }
        return true;
    }

    /// Stores the energies of the frames still held; to be called at the end of every pass.
    void StoreEnergies() {
        std::array<float, kFramesHeld> energies;
        m_specEng.GetSpecEnergies(m_pFrames.get(), m_nHeld, energies.data());
        for (std::size_t i = 0; i < m_nHeld; ++i) {
            m_pThumb->SetAt(static_cast<std::int32_t>(m_nFrameIndex - m_nHeld + i), energies[i]);
        }
        m_nHeld = 0;
    }

private:
    // The listeners get every frame at once. Its energy, which nobody reads during the pass, waits
    // until there are enough frames to transform side by side.
    void TakeFrame(float const* frame) {
        auto const length = static_cast<std::uint32_t>(m_nFrameLength);
        if (m_pNotes != nullptr) {
            (void)m_pNotes->PushPcm(frame, length);
        }
        if (m_pPrint != nullptr) {
            (void)m_pPrint->PushPcm(frame, length);
        }
        if (m_nFrameIndex % kFramesPerReport == 0) {
            m_pProfiler->SendProfileProgress(Percent());
        }
        ++m_nFrameIndex;
        ++m_nHeld;
        if (m_nHeld == kFramesHeld) {
            StoreEnergies();
        }
    }

    [[nodiscard]] std::uint8_t Percent() const {
        if (m_nElementCount == 0) {
            return 0;
        }
        return static_cast<std::uint8_t>(m_nFrameIndex * kPassPercent / m_nElementCount);
    }

    CProfiler* m_pProfiler;
    CPfPcmThumbnail* m_pThumb;
    CPfNoteDetector* m_pNotes;
    CPfFingerprintBuilder* m_pPrint;
    CPfSpecEngBuilder m_specEng;
    std::unique_ptr<float[]> m_pFrames; // the frames held, the last of them being filled
    std::size_t m_nFrameLength;
    std::size_t m_nFill = 0;
    std::size_t m_nHeld = 0; // whole frames whose energies are to come
    std::uint32_t m_nFrameIndex = 0;
    std::uint32_t m_nElementCount;
};

} // namespace

CPcmThumbnailBuilder::CPcmThumbnailBuilder(CCancelFlag const* cancel, double sampleRate)
    : m_pCancel(cancel), m_dSampleRate(sampleRate) {
}

bool CPcmThumbnailBuilder::InitThumbnail(IPcmReader* reader, std::uint16_t samplesPerElement,
                                         CPfPcmThumbnail* thumb) {
    std::int64_t sampleCount = 0;
    std::uint32_t rate = 1;
    (void)reader->GetSampleCount(&sampleCount);
    (void)reader->GetSampleRate(&rate);
    if (rate == 0 || samplesPerElement == 0) {
        return false;
    }
    (void)thumb->Initialize(ScaleWrapped(sampleCount, kEngineRateHz, rate), kEngineRateHz,
                            samplesPerElement);
    return true;
}

bool CPcmThumbnailBuilder::BuildPcmThumbnailRange(float const* pcm, std::int32_t n,
                                                  std::int64_t startSample,
                                                  CPfPcmThumbnail* thumb) {
    std::int32_t const group = thumb->GetSamplesPerElement();
    for (std::int32_t i = 0; n - i >= group; i += group) {
        std::int64_t const index = (startSample + i) / group;
        if (index >= 0 && index <= std::numeric_limits<std::int32_t>::max()) {
            thumb->SetAt(static_cast<std::int32_t>(index),
                         GetMaxValue(pcm + i, static_cast<std::uint32_t>(group)));
        }
    }
    return true;
}

float CPcmThumbnailBuilder::GetMaxValue(float const* samples, std::uint32_t n) {
    float result = 0.0f;
    std::uint32_t i = 0;
#if defined(__SSE2__)
    // Four maxima side by side. Where a sample is NaN the instruction gives its second operand, so
    // NaN is passed over as in the plain loop, and the largest of all doesn't depend on the order.
    __m128 const sign = _mm_set1_ps(-0.0f);
    __m128 largest = _mm_setzero_ps();
    for (; n - i >= 4; i += 4) {
        largest = _mm_max_ps(_mm_andnot_ps(sign, _mm_loadu_ps(samples + i)), largest);
    }
    std::array<float, 4> lanes;
    _mm_storeu_ps(lanes.data(), largest);
    result = *std::ranges::max_element(lanes);
#endif
    for (; i < n; ++i) {
        result = std::max(result, std::abs(samples[i]));
    }
    return result;
}

bool CPcmThumbnailBuilder::BuildSpecEng(CProfiler* profiler, IPcmReader* reader,
                                        std::uint16_t frameLength, CPfPcmThumbnail* specThumb,
                                        CPfNoteDetector* noteDetector,
                                        CPfFingerprintBuilder* fingerprintBuilder) {
    constexpr std::size_t kReadFloats = kReadBytes / sizeof(float);
    std::unique_ptr<float[]> const samples(new (std::nothrow) float[kReadFloats]());
    if (samples == nullptr || !CPfSpecEngBuilder::IsFrameLength(frameLength)) {
        return false;
    }
    std::int64_t sampleCount = 0;
    (void)reader->GetSampleCount(&sampleCount);
    auto const elementCount = static_cast<std::uint32_t>(sampleCount / frameLength);
    (void)specThumb->Initialize(sampleCount, WorkingRate(), frameLength);
    if (fingerprintBuilder != nullptr) {
        fingerprintBuilder->SetSampleRate(WorkingRate());
    }

    CSpectralPass pass(profiler, frameLength, elementCount, specThumb, noteDetector,
                       fingerprintBuilder);
    std::int64_t streamBytes = 0;
    (void)reader->GetStreamLength(&streamBytes);
    for (std::int64_t offset = 0; offset < streamBytes && pass.IsReady();) {
        auto const chunk = static_cast<std::uint32_t>(std::min(streamBytes - offset, kReadBytes));
        (void)reader->LoadPcm(reinterpret_cast<std::uint8_t*>(samples.get()), offset, chunk);
        offset += chunk;
        if (!pass.TakeChunk({samples.get(), chunk / sizeof(float)}, m_pCancel)) {
            pass.StoreEnergies();
            return false;
        }
    }
    if (!pass.IsReady()) {
        return false;
    }
    pass.StoreEnergies();
    return !IsCancelled();
}

bool CPcmThumbnailBuilder::IsCancelled() const {
    return m_pCancel != nullptr && m_pCancel->IsSet();
}

std::uint32_t CPcmThumbnailBuilder::WorkingRate() const {
    return TruncateTo<std::uint32_t>(m_dSampleRate);
}
