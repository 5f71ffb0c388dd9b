// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Progress.h"
#include "cli/Report.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

constexpr std::size_t kMostJobs = 256; // Fixed: more only cost memory.

/// The values of options of `tactus analyze`, from their words. What is none throws
/// `CLI::ValidationError` with what would be one.

EReportFormat FormatOf(std::string const& name);

/// From 1 to `kMostJobs`.
std::size_t JobsOf(std::string const& text);

/// The value of `option`, a whole number from 1.
std::size_t CountOf(std::string const& option, std::string const& text);

EProgress ProgressOf(std::string const& word);

/// "1%" as 0.01.
double ShareOf(std::string const& text);

/// "70:180" as its ends.
std::pair<double, double> RangeOf(std::string const& text);

/// Names of the fields of a song's record, with commas between them.
std::vector<std::string> FieldsOf(std::string const& names);

/// Of a stored tempo: 0, 1 or 2.
int DecimalsOf(std::string const& text);

/// True for "keep", false for "2.3".
bool KeepsVersion(std::string const& word);
