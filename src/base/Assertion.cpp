// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Assertion.h"

#include <cstdio>
#include <cstdlib>
#include <string>

void FailAssertion(char const* label, int line, char const* expression, std::string_view detail) {
    std::string const behind = detail.empty() ? "" : ": " + std::string(detail);
    // One call, so that the messages of two threads don't mix.
    std::fprintf(stderr, "%s:%d: assertion failed: %s%s\n", label, line, expression,
                 behind.c_str());
    std::fflush(stderr);
    std::abort();
}
