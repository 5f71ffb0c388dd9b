// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"

/// Gives the file open as `to` the owner, group, extended attributes (access lists among them) and
/// mode of the one open as `from`. Owner and group are given as far as the system allows; a group
/// that couldn't be given gets no more rights than everybody.
/// Returns: `WriteFailed` or `DiskFull` when the mode, an attribute of the user's or the access
/// list can't be carried over.
EWriteProblem CarryAttributes(int from, int to);
