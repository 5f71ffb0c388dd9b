// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"
#include "IDTag/WriteProblem.h"

#include <string>
#include <vector>

/// Why a tag was not written, as a sentence of its own. Empty for `None`.
std::string NotWrittenReason(EWriteProblem problem);

/// The same in words that follow a file's name. Empty for `None`.
std::string WriteReason(EWriteProblem problem);

/// A sentence of `NotWrittenReason`, or another, in words that follow a file's name.
std::string WriteReason(std::string const& reason);

/// What became of ids that only players know, in words that follow a file's name. Empty for none.
std::string ConversionNote(std::vector<CWiderId> const& ids);

/// Why the file at `path` can't be read, in such words: what the system says, or that it is no
/// file or one of over 4 GB. Empty when nothing speaks against it.
std::string OpeningReason(std::string const& path);
