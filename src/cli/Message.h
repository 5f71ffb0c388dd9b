// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

/// `text` as it may be shown on a terminal: control characters and bytes that are not UTF-8 become
/// U+FFFD, so that neither a file name nor a tag can move the cursor or change colours.
std::string Printable(std::string_view text);

/// What the system says of `error`, a value of errno.
std::string SystemReason(int error);

/// Writes "tactus: name: reason" and a line end to standard error, both made printable.
void ReportProblem(std::string_view name, std::string_view reason);

/// Writes "tactus: text" and a line end to standard error.
void ReportProblem(std::string_view text);
