// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The pass over the audio, CPcmThumbnailBuilder::BuildSpecEng:
//   CSpectralPass::TakeChunk   up to 24 KiB of floats, cut into frames, where they lie if it goes
//     CSpectralPass::TakeFrame   listeners, energy, progress
// It stands above the rooms because it feeds listeners of two of them.

#include "engine/PcmReader.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/envelope/ThumbnailBuilder.h"
#include "engine/notes/NoteDetector.h"
#include "engine/print/Fingerprint.h"
#include "engine/signal/SpecEngBuilder.h"
#include "engine/signal/SpecEngLanes.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <span>

namespace {

constexpr std::int64_t kReadBytes = 24576; // Fixed: 6144 floats, 24 frames of 256.
constexpr std::uint32_t kPassPercent = 94; // Fixed: where the pass ends on the progress scale.
constexpr std::size_t kFramesHeld = kSpecEngLanes; // Derived: what is transformed side by side.
constexpr std::uint32_t kFramesPerReport = 2000;   // Fixed: 11.6 s of audio in frames of 256.

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

    /// Cuts `samples`, which stay until all is done, into frames. Returns: false when cancelled.
    bool TakeChunk(std::span<float const> samples, CCancelFlag const* cancel) {
        while (!samples.empty()) {
            if (cancel != nullptr && cancel->IsSet()) {
                return false;
            }
            if (m_nHeld == 0 && m_nFill == 0) {
                // Frames that are transformed side by side may as well stay where they lie.
                m_bInPlace = samples.size() >= kFramesHeld * m_nFrameLength;
                m_pHeld = m_bInPlace ? samples.data() : m_pFrames.get();
            }
            samples = samples.subspan(TakePiece(samples));
        }
        return true;
    }

    /// Stores the energies of the frames still held; to be called at the end of every pass.
    void StoreEnergies() {
        std::array<float, kFramesHeld> energies;
        m_specEng.GetSpecEnergies(m_pHeld, m_nHeld, energies.data());
        for (std::size_t i = 0; i < m_nHeld; ++i) {
            m_pThumb->SetAt(static_cast<std::int32_t>(m_nFrameIndex - m_nHeld + i), energies[i]);
        }
        m_nHeld = 0;
    }

private:
    /// Up to the end of a frame. Returns: the samples taken.
    std::size_t TakePiece(std::span<float const> samples) {
        std::size_t const piece = std::min(samples.size(), m_nFrameLength - m_nFill);
        std::size_t const start = m_nHeld * m_nFrameLength;
        if (!m_bInPlace) {
            std::ranges::copy(samples.first(piece), m_pFrames.get() + start + m_nFill);
        }
        m_nFill += piece;
        if (m_nFill == m_nFrameLength) {
            m_nFill = 0;
            TakeFrame(m_pHeld + start);
        }
        return piece;
    }

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
    std::unique_ptr<float[]> m_pFrames; // room for the frames held, the last of them being filled
    float const* m_pHeld = nullptr;     // the frames held, there or in the chunk
    bool m_bInPlace = false;            // in the chunk
    std::size_t m_nFrameLength;
    std::size_t m_nFill = 0;
    std::size_t m_nHeld = 0; // whole frames whose energies are to come
    std::uint32_t m_nFrameIndex = 0;
    std::uint32_t m_nElementCount;
};

} // namespace

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
        bool const isLoaded = reader->LoadPcm(reinterpret_cast<std::uint8_t*>(samples.get()),
                                              offset, chunk) == kStatusOk;
        offset += chunk;
        if (!isLoaded || !pass.TakeChunk({samples.get(), chunk / sizeof(float)}, m_pCancel)) {
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
