// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Prints the failed expression with its source label and line to standard error and ends the
/// process. Use it through `TACTUS_ASSERT`.
[[noreturn]] void FailAssertion(char const* label, int line, char const* expression);

/// Checks `condition` in every build. `label` names the source as users report it
/// ("IDTag/ID3Tag"), `text` is the expression as it is printed.
#define TACTUS_ASSERT_TEXT(label, condition, text)                                                 \
    (static_cast<bool>(condition) ? static_cast<void>(0) : FailAssertion((label), __LINE__, (text)))

/// The same with the condition's own text.
#define TACTUS_ASSERT(label, condition) TACTUS_ASSERT_TEXT(label, condition, #condition)
