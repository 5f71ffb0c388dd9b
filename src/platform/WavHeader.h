// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

class CSourceFile;

/// Frames that a WAV file's header claims: size of its data by the size of a frame. 0 for a file
/// of another kind, or one whose header can't be followed. The decoding library tells the length
/// of a whole file only. Leaves `source` at another position.
std::int64_t ClaimedWavFrames(CSourceFile& source);
