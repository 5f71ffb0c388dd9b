// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// A file that holds what standard input delivers: standard input itself when it is a file, else
/// a nameless one in the folder for temporary files, into which all of it was copied.
/// Returns: its descriptor, which is the caller's; negative, with the reason in `error`, when there
/// is none.
int SpoolStandardInput(std::string& error);
