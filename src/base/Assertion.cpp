// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/Assertion.h"

#include <cstdio>
#include <cstdlib>

void FailAssertion(char const* label, int line, char const* expression) {
    std::fprintf(stderr, "%s:%d: assertion failed: %s\n", label, line, expression);
    std::fflush(stderr);
    std::abort();
}
