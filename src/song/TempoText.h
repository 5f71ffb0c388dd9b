// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <string>

/// `bpm` with two decimals and a point, whatever the locale: the text goes into tags, which other
/// programs read.
std::string TempoText(double bpm);

/// The tempo with 0 to 2 decimals, halves upwards, from the tempo with two. `bpm` is finite.
std::string RoundedTempo(double bpm, int decimals);

/// The decimal number that `text` begins with, blanks before it skipped and anything behind it
/// ignored, whatever the locale; 0 when there is none.
double LeadingNumber(CString const& text);
