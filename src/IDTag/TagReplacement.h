// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagTarget.h"

#include <cstdint>
#include <optional>
#include <span>

/// Gives the file `target`, which is open and locked, `newTag` in the place of its first bytes,
/// which are `oldTag`; the rest of the file follows it unchanged. Tags of one length are written
/// over each other where no kill can cut that in the middle; otherwise a new file takes the old
/// one's place in one step, then `*rewritten` becomes true, unless the lengths are the same.
/// `writtenTime`: what the file's time of the last write becomes, in nanoseconds since the epoch;
/// nothing: the present.
/// Returns: why not; the file is then as it was.
EWriteProblem ReplaceTag(CTagTarget& target, std::span<std::uint8_t const> oldTag,
                         std::span<std::uint8_t const> newTag,
                         std::optional<std::int64_t> writtenTime, bool* rewritten);
