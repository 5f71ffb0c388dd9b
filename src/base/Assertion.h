// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

/// Prints the failed expression with its source label and line to standard error, `detail` behind
/// it unless that is empty, and ends the process with abort. Use it through `TACTUS_ASSERT`.
[[noreturn]] void FailAssertion(char const* label, int line, char const* expression,
                                std::string_view detail = {});

/// Checks `condition` in every build. `label` names the source as users report it
/// ("IDTag/ID3Tag"), `text` is the expression as it is printed.
#define TACTUS_ASSERT_TEXT(label, condition, text)                                                 \
    (static_cast<bool>(condition) ? static_cast<void>(0) : FailAssertion((label), __LINE__, (text)))

/// The same with the condition's own text.
#define TACTUS_ASSERT(label, condition) TACTUS_ASSERT_TEXT(label, condition, #condition)

/// The same with given text and a detail for the person, such as a file's name.
#define TACTUS_ASSERT_DETAIL(label, condition, text, detail)                                       \
    (static_cast<bool>(condition) ? static_cast<void>(0)                                           \
                                  : FailAssertion((label), __LINE__, (text), (detail)))
