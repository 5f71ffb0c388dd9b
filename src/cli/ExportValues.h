// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/SongFilter.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The values of options of `tactus export`, from their words. What is none throws
/// `CLI::ValidationError` with what is wrong.

CSongFilter FilterOf(std::string const& text);

CSongOrder OrderOf(std::string const& text);

/// At least one column.
std::vector<CColumn const*> ColumnsOf(std::string const& text);

char DelimiterOf(std::string const& text);

/// "HERE=THERE" as its sides.
std::pair<std::string, std::string> BaseOf(std::string const& text);

/// Milliseconds as seconds; nothing for "auto".
std::optional<double> OffsetOf(std::string const& text);
