// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/MemBuffer.h"
#include "base/SmartPtr.h"
#include "base/Status.h"

#include <cstdint>
#include <vector>

class CPfPcmThumbnail;
class IArchive;

/// Short, coarse excerpt of a signal with its extremes and the time at which it begins, its
/// comparisons and its byte formats. Shared through `CSmartPtr<CFingerprint>`.
/// Thread: one thread at a time; the reference count is safe from any.
class CFingerprint : public CSmartPtrTarget {
public:
    CFingerprint() = default;
    ~CFingerprint() override = default;

    /// Takes data[0, n) as it is; the time is 0, the extremes come from `BuildMinMax`.
    void CaptureRawPrint(float const* data, std::uint32_t n);

    /// Takes data[0], data[4], ... below n, and the rest as given.
    /// Units: `time` in microseconds from the stream's start.
    void CapturePrint(float const* data, std::uint32_t n, std::int64_t time, float min, float max);

    /// Sets the extremes to 0 and widens them over the values: the minimum is thus never above 0
    /// and the maximum never below.
    void BuildMinMax();

    /// Mean of the values, summed in single precision; 0 without values.
    [[nodiscard]] float GetAvgValue() const;

    /// True when this print's range is narrower than max - min.
    [[nodiscard]] bool IsPrintSmaller(float min, float max) const;

    /// Compares the two prints value by value at every lag of up to 344 values either way.
    /// Returns: true when they look alike at some lag and clearly less so on average. The averages
    /// of both are stored; both 0 when they differ too much for a comparison.
    bool IsMatching(CFingerprint const* other, float* avgThis, float* avgOther) const;

    /// Looks for this print at positions from..to, both included, in data[0, count), four samples
    /// a value. Positions at which the print would leave the data are passed over.
    /// Returns: true and the best position; false, `pos` untouched, when none is good enough.
    bool DoesPrintMatch(float const* data, std::uint32_t count, std::int32_t from, std::int32_t to,
                        std::int32_t* pos) const;

    /// Full byte form, big-endian: format byte 4, time (8), values (4 each). With a null `buf`
    /// stores the size needed in `*size`; otherwise writes it and leaves `*size` alone.
    /// Returns: false when `*size` bytes are too few; nothing is then written.
    bool CopyToMemory(std::uint8_t* buf, std::uint32_t* size) const;

    /// Compact byte form, big-endian: format byte 4, low half of the time (4), minimum (4),
    /// maximum (4), values (1 each, 0 for the minimum to 255 for the maximum). As `CopyToMemory`.
    bool CopyToCompactMemory(std::uint8_t* buf, std::uint32_t* size) const;

    /// Reads the full form, whatever its format byte; a last incomplete value is left out.
    /// Returns: false, nothing changed, for 9 bytes or fewer.
    bool BuildFromMemory(std::uint8_t const* buf, std::uint32_t len);

    /// Reads the compact form. Returns: false, nothing changed, for 13 bytes or fewer, a format
    /// byte below 4, or without memory for the values.
    bool BuildFromCompactMemory(std::uint8_t const* buf, std::uint32_t len);

    /// Writes or reads format byte, time, number of values and values as memory images. What an
    /// archive of another format holds is not read; extremes are computed anew after reading.
    void Serialize(IArchive* archive);

    [[nodiscard]] std::vector<float> const& GetValues() const { return m_vValues; }
    [[nodiscard]] float GetMin() const { return m_fMin; }
    [[nodiscard]] float GetMax() const { return m_fMax; }

    /// Microseconds from the stream's start; 0 for a raw print.
    [[nodiscard]] std::int64_t GetTime() const { return m_nTime; }

private:
    std::vector<float> m_vValues;
    float m_fMin = 0.0f;
    float m_fMax = 0.0f;
    std::int64_t m_nTime = 0;
};

/// Is fed the stream piece by piece, keeps the newest 16384 samples, captures the most lively
/// excerpt after the first second, and looks for the excerpt of an earlier run near its time.
/// Thread: worker.
class CPfFingerprintBuilder {
public:
    /// Any of the three may be null. `capture` is the print to fill, `reference` the print to look
    /// for, `offset` takes by how much it has moved.
    /// Units: `*offset` in microseconds, above 0 when the excerpt comes later than recorded.
    CPfFingerprintBuilder(CFingerprint* capture, CFingerprint* reference, std::int64_t* offset);
    CPfFingerprintBuilder(CPfFingerprintBuilder const&) = delete;
    CPfFingerprintBuilder& operator=(CPfFingerprintBuilder const&) = delete;
    virtual ~CPfFingerprintBuilder() = default;

    /// Samples per second; to be set before the first push.
    void SetSampleRate(std::uint32_t rate) { m_nSampleRate = rate; }

    /// Takes the next n samples of the stream.
    /// Returns: `kStatusFailure` without memory for the window, `kStatusNothing` once the window
    /// begins more than 30 s into the stream, else `kStatusOk`.
    CStatus PushPcm(float const* data, std::uint32_t n);

    /// Captures the thumbnail's first 4096 elements, or all when there are fewer, as a raw print.
    /// Nothing happens without a print or without elements.
    void BuildLargePrint(CPfPcmThumbnail* thumb, CFingerprint* print);

private:
    [[nodiscard]] std::int64_t TimeOf(std::int64_t pos) const;
    void Append(float const* data, std::uint32_t n);
    void DropOldest(std::uint32_t count);
    void ScanForPrint();
    void FindMatchingPrints();
    void SearchWindow(std::int64_t recorded);

    CFingerprint* m_pCapture;
    CFingerprint* m_pReference;
    std::int64_t* m_pOffset;
    bool m_bCaptured = false;
    std::uint32_t m_nSampleRate = 0;
    std::int64_t m_nFirstPos = 0; // of the window's first value, in samples
    CMemBuffer m_windowMem;
    float* m_pRoom;                 // start of the room that the window moves in
    float* m_pWindow;               // oldest value held
    std::uint32_t m_nCount = 0;     // values held
    std::int64_t m_nNextSearch = 0; // earliest time of the next search, in microseconds
};
