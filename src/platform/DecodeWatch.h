// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "platform/DecodeProblem.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <optional>

/// Tells when a decode has to end before its time: it was cancelled, or the file has kept it busy
/// for too long, or with too many bytes, without giving a sample.
class CDecodeWatch {
public:
    /// `cancel` may be null.
    CDecodeWatch(CCancelFlag const* cancel, std::chrono::milliseconds patience)
        : m_pCancel(cancel), m_patience(patience) {}

    [[nodiscard]] bool IsCancelled() const { return m_pCancel != nullptr && m_pCancel->IsSet(); }

    [[nodiscard]] bool MustEnd() {
        return IsCancelled() || m_nSilentBytes > kMostSilentBytes || IsTooBusy();
    }

    /// Why it had to end; `problem` when it didn't have to.
    [[nodiscard]] EDecodeProblem Explain(EDecodeProblem problem) {
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
        m_workAtFirstLook.reset();
    }

private:
    using CClock = std::chrono::steady_clock;

    /// The thread's own work counts, not the time that goes by: neither a slow disk nor a program
    /// that is stopped for a while uses up patience.
    bool IsTooBusy() {
        // The thread's clock is dear, so nobody looks at it as long as samples come.
        if (CClock::now() - m_lastYield < std::min(m_patience, kFirstLook)) {
            return false;
        }
        std::chrono::nanoseconds const work = WorkOfThread();
        m_workAtFirstLook = m_workAtFirstLook.value_or(work);
        return work - *m_workAtFirstLook >= m_patience;
    }

    static std::chrono::nanoseconds WorkOfThread() {
        timespec time{};
        (void)clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    // Fixed: more than any cover picture or padding, less than a minute of reading.
    static constexpr std::int64_t kMostSilentBytes = std::int64_t{256} << 20U;

    static constexpr std::chrono::milliseconds kFirstLook{1000}; // Fixed: short beside patience.

    CCancelFlag const* m_pCancel;
    std::chrono::milliseconds m_patience;
    std::optional<std::chrono::nanoseconds> m_workAtFirstLook; // since the last samples
    CClock::time_point m_lastYield = CClock::now();
    std::int64_t m_nSilentBytes = 0;
};
