// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/Harmony.h"

#include <string>

/// Two ways of writing a key as a number on the circle of fifths, so that neighbours mix well:
/// Camelot, where A minor is 8A and C major 8B, and Open Key, where they are 1m and 1d. Empty for
/// no key. Thread: any.
[[nodiscard]] std::string CamelotCode(CHarmony const& harmony);
[[nodiscard]] std::string OpenKeyCode(CHarmony const& harmony);
