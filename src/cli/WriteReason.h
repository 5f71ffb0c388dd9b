// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"

#include <string>

/// Why a tag was not written, in words that follow a file's name. Empty for `None`.
std::string WriteReason(EWriteProblem problem);

/// Why the file at `path` can't be read, in such words: what the system says, or that it is no
/// file or one of over 4 GB. Empty when nothing speaks against it.
std::string OpeningReason(std::string const& path);
