// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

/// A key as tags have it, in at most three letters: "Am", "Ebm", "F#". `tonic` counts semitones
/// from C, `mode` is 1 for minor and 2 for major. Returns: an empty text when there is no key.
std::string KeyText(std::uint16_t tonic, std::uint16_t mode);
