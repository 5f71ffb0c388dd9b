// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"
#include "base/VectorArray.h"
#include "engine/notes/NoteMap.h"
#include "engine/signal/LaneFilter.h"

#include <cstdint>
#include <deque>
#include <span>

class CPcmThumbnailBuilder;
class CPfPcmThumbnail;
class CProfiler;
class IPcmReader;

/// Listens to the low end of the stream: filters it at 120 Hz, looks behind every upward zero
/// crossing for a stretch that repeats at the period of one of 24 bass notes, and fills a thumbnail
/// with the peaks of the filtered signal.
/// Thread: worker.
class CPfNoteDetector {
public:
    /// Sizes `thumb` for the reader's stream, 256 samples an element. Builder and thumbnail belong
    /// to the caller and must outlive the detector.
    CPfNoteDetector(IPcmReader* reader, CPcmThumbnailBuilder* builder, CPfPcmThumbnail* thumb);
    CPfNoteDetector(CPfNoteDetector const&) = delete;
    CPfNoteDetector& operator=(CPfNoteDetector const&) = delete;
    virtual ~CPfNoteDetector() = default;

    /// Takes the next n samples at 44100 Hz. A block that the buffer can't take is dropped, which
    /// takes one of more than 4096 samples. The filter works on many seconds at once, so map and
    /// thumbnail come later, and in one go.
    /// Returns: `kStatusFailure` without memory for the buffers.
    CStatus PushPcm(float const* pcm, std::uint32_t n);

    /// Adds the notes found at crossings 1 .. scanCount - 1 of buf to `map`.
    /// Units: `basePos` is the stream position of buf[0].
    /// Shape: reads buf[0, dataCount); crossings behind it are not looked at.
    /// Returns: `kStatusOk`.
    CStatus FindPeriodicWaveforms(float const* buf, std::int32_t scanCount, std::int32_t dataCount,
                                  std::int32_t basePos, CPfNoteMap* map) const;

    /// Searches what the buffer still holds and prunes the map.
    /// Returns: `kStatusNothing` when the profiler is cancelled, `kStatusFailure` as `PushPcm`.
    CStatus FinalizeNoteDetection(CProfiler* profiler);

    /// The notes of all that was pushed, as far as strides are complete; stays the detector's.
    [[nodiscard]] CPfNoteMap* GetNoteMap();

    /// How many notes the map held before it was pruned; 0 until then.
    [[nodiscard]] std::uint32_t GetFoundCount() const { return m_nFound; }

    /// The 24 periods in samples, from the lowest note up.
    [[nodiscard]] CVectorArray<std::int32_t> const& GetPeriods() const { return m_vPeriods; }

    /// False when there was none for the filter: it then hears nothing.
    [[nodiscard]] bool HasMemory() const { return m_filter.IsReady(); }

private:
    void TakeFiltered();
    void CatchUp();
    void EndStride(std::span<float const> stride);
    void SearchAndMeasure(std::span<float const> samples, std::int32_t count);
    void ThinNotes();

    CLaneFilter m_filter;
    CPfNoteMap m_noteMap;
    std::int32_t m_nFill = 0;            // samples behind the last stride
    std::deque<std::int32_t> m_vStrides; // lengths of those that are to be searched
    std::int32_t m_nBasePos = 0;         // stream position of the first sample not yet searched
    CVectorArray<std::int32_t> m_vPeriods;
    CPfPcmThumbnail* m_pThumb;
    CPcmThumbnailBuilder* m_pThumbBuilder;
    std::uint32_t m_nFound = 0;
    std::uint32_t m_nThinAbove; // from so many notes on those are dropped that go anyway
};
