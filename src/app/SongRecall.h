// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "export/TakenSong.h"

#include <optional>
#include <string>

class CRecordStore;

/// The song at `path`, which is bytes, with all that was heard of it, if the file is still the one
/// that was heard and its record has the beats; `withEnvelopes`: and the envelopes.
/// Thread: any.
[[nodiscard]] std::optional<CTakenSong> RecallSong(CRecordStore& store, std::string const& path,
                                                   bool withEnvelopes);

/// Hears that song, and keeps its record for the next time.
/// Returns: nothing when it can't be heard, or `cancel` was set meanwhile.
/// Thread: any; several may be heard at once.
[[nodiscard]] std::optional<CTakenSong> HearSong(CRecordStore& store, std::string const& path,
                                                 bool withEnvelopes, CCancelFlag const& cancel);
