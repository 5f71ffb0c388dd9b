// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "base/Status.h"
#include "platform/DecodeProblem.h"
#include "platform/DecodedAudio.h"

#include <chrono>
#include <string>

/// Decodes an audio file to mono samples at 44100 Hz. The content decides about the format, not
/// the name; only the file itself is ever opened. Channels are averaged, 16-bit samples divided by
/// 32767. The buffer is as long as the file has frames at its own rate.
/// Thread: one thread at a time; several decoders may run at once.
class CAudioDecoder {
public:
    /// `cancel` may be null; when it gets set, a running decode ends soon.
    explicit CAudioDecoder(CCancelFlag const* cancel = nullptr) : m_pCancel(cancel) {}

    /// How long a file may go on without giving a single sample; half a minute unless set.
    void SetPatience(std::chrono::milliseconds patience) { m_patience = patience; }

    /// Decodes the file at `path`, which is bytes and need not be UTF-8.
    /// Returns: `kStatusOk` with at least one sample in `audio`, `kStatusNothing` when cancelled,
    /// `kStatusFailure` with a problem in the report. `audio` is empty unless the status is
    /// `kStatusOk`.
    CStatus Decode(std::string const& path, CDecodedAudio& audio);

    /// What there is to tell of the last decode.
    [[nodiscard]] CDecodeReport const& GetReport() const { return m_report; }

private:
    CCancelFlag const* m_pCancel;
    std::chrono::milliseconds m_patience{30'000};
    CDecodeReport m_report;
};
