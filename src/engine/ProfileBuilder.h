// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

#include <cstdint>

class CFingerprint;
class CProfiler;
class CProfileResults;
class IPcmReader;
class IProfileObserver;

/// Driver of one analysis: runs every stage of the engine in a fixed order over one PCM source and
/// fills the record. Make a fresh one for each file: its cancel flag is never cleared.
/// Thread: `BuildProfile` on one worker, `CancelProfiling` from any.
class CProfileBuilder {
public:
    CProfileBuilder() = default;

    /// With a flag of the caller's, which must outlive it; that one alone counts. Null: its own.
    explicit CProfileBuilder(CCancelFlag const* cancel)
        : m_pCancel(cancel != nullptr ? cancel : &m_cancel) {}
    CProfileBuilder(CProfileBuilder const&) = delete;
    CProfileBuilder& operator=(CProfileBuilder const&) = delete;
    virtual ~CProfileBuilder() = default;

    /// Profiles `reader` into `results`, which should be empty. `print` and `largePrint` receive
    /// the fingerprints and may be null, as may `profiler`. Nothing is taken over. Progress: 0,
    /// then 0 to 94 from the pass, 95, 98, 99, 100. A source that is not valid, or a cancelled
    /// pass, ends after what was sent so far; the results then keep their defaults but for bit rate
    /// and key. Returns: 0.
    std::int32_t BuildProfile(CProfiler* profiler, IPcmReader* reader, CProfileResults* results,
                              CFingerprint* print, CFingerprint* largePrint);

    /// Makes every stage return early, unless the flag is the caller's. Returns: true.
    bool CancelProfiling();

    /// True when the last run came to its end; false after a cancel that came during the pass, and
    /// when the source failed or there was no memory. Thread: the run's.
    [[nodiscard]] bool IsComplete() const { return m_bComplete; }

    /// Hears the intermediate results of `BuildProfile`; null for none. Not owned.
    void SetObserver(IProfileObserver* observer) { m_pObserver = observer; }

    /// The rule for short clips, `UpdateShortClipBpm` of the tempo room.
    static void ShortClipBpmUpdate(std::int64_t sampleCount, std::uint32_t sampleRate, float* bpm);

private:
    CCancelFlag m_cancel;
    CCancelFlag const* m_pCancel = &m_cancel;
    IProfileObserver* m_pObserver = nullptr;
    bool m_bComplete = false;
};
