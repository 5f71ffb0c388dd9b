// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// Reads names of files and folders from the file at `path`, or from standard input for "-", to
/// the end: one a line, or one before each zero byte where `endsInZero`. Names are bytes; empty
/// ones are left out. Thread: main.
/// Returns: why it can't be read, for a person; empty when it was, and once the user asks to stop.
std::string ReadNameList(std::string const& path, bool endsInZero, std::vector<std::string>& names);

/// The same of a list that is in memory. What follows the last end counts too.
std::vector<std::string> NamesIn(std::string const& list, char end);
