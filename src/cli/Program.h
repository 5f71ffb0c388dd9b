// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// The whole program: reads the arguments, runs the command that they name.
/// Returns: what the process exits with, one of `cli/ExitCode.h`.
int RunProgram(int argc, char const* const* argv);
