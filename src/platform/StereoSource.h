// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Music in stereo at the rate of whoever asked for it, from any place on.
/// Units: frames of two samples, left first; samples in [-1, 1], and a little above where a decoder
/// overshoots.
/// Thread: one thread at a time.
class IStereoSource {
public:
    virtual ~IStereoSource() = default;

    /// Goes to `frame`, from the music's start. Returns: false when there is no way to; what is
    /// read next is then undefined, but harmless.
    virtual bool Seek(std::int64_t frame) = 0;

    /// Fills `stereo`, whose length is even. Returns: frames, fewer than asked for at the end only.
    virtual std::size_t Read(std::span<float> stereo) = 0;
};
