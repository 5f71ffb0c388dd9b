// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "platform/DecodeProblem.h"

#include <chrono>
#include <cstdint>

/// Tells when a decode has to end before its time: it was cancelled, or the file has kept it busy
/// for too long, or with too many bytes, without giving a sample.
class CDecodeWatch {
public:
    /// `cancel` may be null.
    CDecodeWatch(CCancelFlag const* cancel, std::chrono::milliseconds patience)
        : m_pCancel(cancel), m_patience(patience) {}

    [[nodiscard]] bool IsCancelled() const { return m_pCancel != nullptr && m_pCancel->IsSet(); }

    [[nodiscard]] bool MustEnd() const {
        return IsCancelled() || m_nSilentBytes > kMostSilentBytes ||
               CClock::now() - m_lastYield >= m_patience;
    }

    /// Why it had to end; `problem` when it didn't have to.
    [[nodiscard]] EDecodeProblem Explain(EDecodeProblem problem) const {
        if (IsCancelled()) {
            return EDecodeProblem::Cancelled;
        }
        return MustEnd() ? EDecodeProblem::NoAudioForTooLong : problem;
    }

    /// Notes that `bytes` of the file were read.
    void NoteRead(std::int64_t bytes) { m_nSilentBytes += bytes; }

    /// Notes that there were samples: the waiting starts anew.
    void NoteYield() {
        m_nSilentBytes = 0;
        m_lastYield = CClock::now();
    }

private:
    using CClock = std::chrono::steady_clock;

    // Fixed: more than any cover picture or padding, less than a minute of reading.
    static constexpr std::int64_t kMostSilentBytes = std::int64_t{256} << 20U;

    CCancelFlag const* m_pCancel;
    std::chrono::milliseconds m_patience;
    CClock::time_point m_lastYield = CClock::now();
    std::int64_t m_nSilentBytes = 0;
};
