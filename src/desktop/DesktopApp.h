// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Opens the window, adds and analyses the paths among the arguments, and runs until the window
/// closes or the program is told to end. A file that is being analysed is then given up, a tag
/// that is being written is finished first.
/// Returns: the program's exit code.
int RunDesktop(int argc, char** argv);
