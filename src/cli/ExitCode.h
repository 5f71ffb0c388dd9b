// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

constexpr int kExitDone = 0;         // Fixed: everything asked for was done.
constexpr int kExitFailed = 1;       // Fixed: something failed or was not found.
constexpr int kExitUsage = 2;        // Fixed: the command line itself was wrong.
constexpr int kExitWarned = 4;       // Fixed: all was answered, something not without a warning.
constexpr int kExitOutput = 5;       // Fixed: the results could not be written.
constexpr int kExitBusy = 75;        // Standard: sysexits.h, EX_TEMPFAIL: try again later.
constexpr int kExitSignalBase = 128; // Standard: POSIX shells add the signal's number.
