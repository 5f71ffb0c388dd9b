// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "base/Status.h"
#include "platform/DecodeProblem.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

/// Decodes an audio file to mono samples at 44100 Hz, which are taken from it one block after the
/// other, so that no more than a packet of the file is ever held. The content decides about the
/// format, not the name; only the file itself is ever opened. Channels are averaged, 16-bit samples
/// divided by 32767. There are as many samples as the file has frames at its own rate.
///
/// How many, it says before the first: by the file's packets, or by its data where that is PCM,
/// never by a header. Damage shows in the decoding only, so the count may turn out to be wrong.
/// Everything taken is void then, and `Restart` begins anew with the right one.
///
/// Every operation that gives a status gives `kStatusOk`, `kStatusNothing` when cancelled, or
/// `kStatusFailure` with a problem in the report, or without one when the count was wrong. Once one
/// fails, only `Restart` and `Open` may follow.
/// Thread: one thread at a time; several streams may run at once.
class CAudioStream {
public:
    /// `cancel` may be null; when it gets set, every operation ends soon.
    CAudioStream() : CAudioStream(nullptr) {}
    explicit CAudioStream(CCancelFlag const* cancel);
    ~CAudioStream();
    CAudioStream(CAudioStream&& other) noexcept;
    CAudioStream& operator=(CAudioStream&& other) noexcept;

    /// How long a file may go on without giving a single sample; half a minute unless set.
    void SetPatience(std::chrono::milliseconds patience) { m_patience = patience; }

    /// Opens the file at `path`, which is bytes and need not be UTF-8, and counts its samples.
    CStatus Open(std::string const& path);

    /// How many samples there are; above 0 while the stream is open.
    [[nodiscard]] std::int32_t GetCount() const;

    /// Fills `samples` with the next ones. Behind the last come zeros.
    CStatus Read(std::span<float> samples);

    /// The same in steps of 1 / 32767, for whoever widens them elsewhere (`WidenPcm`).
    CStatus Read(std::span<std::int16_t> samples);

    /// Decodes the rest of the file, whether its samples were wanted or not, and looks whether the
    /// count was right and the file is still the same. To be called behind the last sample: only
    /// then are report and samples good.
    CStatus Finish();

    /// True after a failure that comes from a wrong count.
    [[nodiscard]] bool MustRestart() const;

    /// Begins again with the count that the decoding has shown.
    CStatus Restart();

    /// What there is to tell of the file so far.
    [[nodiscard]] CDecodeReport const& GetReport() const { return m_report; }

private:
    class CSource;
    enum class EWork { Open, Step, Block };

    template <typename Work>
    CStatus Do(EWork kind, Work work);

    CCancelFlag const* m_pCancel;
    std::chrono::milliseconds m_patience{30'000};
    std::unique_ptr<CSource> m_pSource; // null before a file was opened
    CDecodeReport m_report;
};
