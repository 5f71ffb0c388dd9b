// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Assertion.h"

#include <cstdio>
#include <cstdlib>

void FailAssertion(char const* label, int line, char const* expression, std::string_view detail) {
    // One call, so that the messages of two threads don't mix.
    std::fprintf(stderr, "%s:%d: assertion failed: %s%s%.*s\n", label, line, expression,
                 detail.empty() ? "" : ": ", static_cast<int>(detail.size()), detail.data());
    std::fflush(stderr);
    std::abort();
}
