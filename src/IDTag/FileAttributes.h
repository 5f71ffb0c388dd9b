// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"

/// Gives the empty file open as `to` the marks of the one open as `from` that a person sets on a
/// file: not dumped, not compressed, not copied on write and the like. Some can only be set while
/// a file is empty.
/// Returns: `MayNotReplace` when one can't be given, and for files that may not be replaced at all.
EWriteProblem CarryMarks(int from, int to);

/// Gives the file open as `to` the owner, group, extended attributes (access lists among them) and
/// mode of the one open as `from`. Owner and group are given as far as the system allows; a group
/// that couldn't be given gets no more rights than everybody.
/// Returns: `WriteFailed`, `MayNotReplace` or `DiskFull` when the mode, an attribute of the user's
/// or the access list can't be carried over.
EWriteProblem CarryAttributes(int from, int to);
