// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdarg>
#include <string>

// What the decoding library said last on this thread. A decode runs on one thread alone, so that
// its messages don't mix with another file's.

/// Keeps the message that `format` and `arguments` make, as `vprintf` takes them.
void KeepMessage(char const* format, va_list arguments);

void ForgetMessage();

/// The last message, without a line end; empty when there is none.
std::string LastMessage();
