// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/MpegFrame.h"

#include <cstdint>
#include <span>

/// What an MP3 encoder notes about the frames of sound, in a frame of its own before them.
struct CEncoderNote {
    std::int64_t m_nFrames = 0;  // 0 when it doesn't say
    std::int64_t m_nDelay = 0;   // samples that a decoder drops at the start
    std::int64_t m_nPadding = 0; // and at the end, once all the frames have come
};

/// Reads the note in `bytes`, whose header is `frame`; all zeros where there is none, or none that
/// the decoder goes by.
CEncoderNote EncoderNoteIn(std::span<std::uint8_t const> bytes, CMpegFrame const& frame);
