// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/signal/Decay.h"
#include "engine/signal/IIRLanes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// Sends a stream through three like sections, bit for bit as `FilterLanePlain` would, with several
/// places of the stream under way at once.
///
/// A recurrence waits for itself, but this one forgets: started with empty states somewhere in the
/// music it comes, some 100,000 samples later, to the very bits that the whole stream would have
/// left. So several runners start at places further on, and each goes on until it meets, bit for
/// bit, the states that the runner ahead of it left on the way. From there on what the runner ahead
/// wrote is right, and it is done. The rearmost runner is always the true one; what lies behind it
/// is finished. Runners that never meet cost nothing but their lanes.
/// Shape: a section must be stable, with |b0| + |b1| + |b2| <= 1.
/// Thread: one thread at a time.
class CLaneFilter {
public:
    static constexpr std::int64_t kWindow = 65536; // Fixed: samples that a reader sees at once.

    /// `lanes`: runners under way, 1 to `kMostLanes`. `spacing`: samples from runner to runner,
    /// above 0; rounded up to whole bursts. The filter holds (lanes + 1) * spacing samples, those
    /// that are finished and not yet dropped included.
    CLaneFilter(CIIRSection const& section, std::int32_t lanes, std::int64_t spacing);

    /// False without memory; nothing else may then be called.
    [[nodiscard]] bool IsReady() const { return m_pRoom != nullptr; }

    /// Takes as many samples as there is room for. Returns: their number.
    std::size_t Push(std::span<float const> samples);

    /// Works until at least `spacing` samples are finished or everything taken is.
    void Run();

    /// Finishes everything taken. The stream may go on once no more than `kWindow` finished samples
    /// are left.
    void Finish();

    /// The oldest finished samples in one piece: all of them, or at least `kWindow`. It holds until
    /// the filter works again.
    [[nodiscard]] std::span<float const> GetFinished();

    /// Drops the oldest `count` finished samples.
    void Drop(std::size_t count);

private:
    /// One place under way.
    struct CRunner {
        std::int64_t m_nPos; // in whole bursts but for the end of the stream
        CThreeStates m_states;
        bool m_bSilent = false;                  // its last burst was silence
        std::optional<std::size_t> m_nInDecay{}; // its place in the decay that is known
    };

    /// What a runner left at the start of a burst.
    struct CRecord {
        std::int64_t m_nPos = -1;
        CThreeStates m_states{};
    };

    void StartRunners();
    bool RunBurst();
    void RunQuiet(CRunner& runner);
    bool PassRecord(std::size_t runner);
    void FinishRest();
    void Restart();

    [[nodiscard]] std::size_t At(std::int64_t pos) const {
        return static_cast<std::size_t>(pos % m_nRoom);
    }
    [[nodiscard]] std::size_t BurstAt(std::int64_t pos) const;
    [[nodiscard]] std::int64_t GetRunnable() const;
    [[nodiscard]] std::int64_t GetFinishedEnd() const;
    [[nodiscard]] CIIRLane LaneOf(CRunner& runner);

    CIIRSection m_section;
    std::int32_t m_nLanes;
    std::int64_t m_nSpacing;
    std::int64_t m_nRoom;             // samples held, in and out
    std::unique_ptr<float[]> m_pRoom; // those that came, those that go
    float* m_pOut = nullptr;          // the latter
    CDecay m_decay;                   // of the last runner that came into silence by a new way
    std::vector<CRecord> m_vRecords;  // one a burst
    std::vector<CRunner> m_vRunners;  // from the true one to the one furthest on
    std::int64_t m_nTaken = 0;        // end of what came
    std::int64_t m_nDropped = 0;      // start of what is held
    bool m_bFinished = false;         // everything taken is finished
};
