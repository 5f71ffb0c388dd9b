// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"

/// What the user or the system asks of a running program by a signal: to stop. The first request
/// is kept for the program to look at; a second one of the same kind ends it on the spot.
class CInterrupt {
public:
    /// Begins to listen to SIGINT and SIGTERM, and to SIGHUP unless it is ignored. From here on a
    /// reader that has gone away makes writing fail instead of ending the program.
    static void Install();

    /// Set once there is a request.
    static CCancelFlag const& Flag();

    [[nodiscard]] static bool IsSet() { return Flag().IsSet(); }

    /// What to exit with after a request: 128 and the signal's number.
    [[nodiscard]] static int ExitCode();

    /// Ends the program the way a program ends whose reader has gone away: without a word.
    [[noreturn]] static void EndByBrokenPipe();
};
