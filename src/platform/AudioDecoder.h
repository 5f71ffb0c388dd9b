// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "base/Status.h"
#include "platform/DecodeProblem.h"
#include "platform/DecodedAudio.h"

#include <chrono>
#include <string>

/// Decodes an audio file to all of its samples at once, for those who need them so; they are what
/// `CAudioStream` gives.
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
