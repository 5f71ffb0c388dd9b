// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagWitness.h"
#include "IDTag/WriteProblem.h"

#include <optional>

/// Gives a file whole tags back, byte for byte: `change.m_oldTag` must be what the file at
/// `change.m_sPath`, whose state must be `change.m_before`, begins with; `change.m_newTag` takes
/// its place by the careful way of every write. Texts and frame id are for the witness alone.
/// `writtenTime`: what the file's time of the last write becomes, in nanoseconds since the epoch;
/// nothing: the present. `witness` may be null. `after`: the file's identity when it was written.
/// Returns: why not; the file is then as it was.
/// Thread: any.
EWriteProblem ExchangeTag(CTagChange const& change, std::optional<std::int64_t> writtenTime,
                          ITagWitness* witness, CFileIdentity* after);
