// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"

#include <cstdint>
#include <span>
#include <string_view>

/// Counts the packets of a stream that could not be decoded.
class CDecodeDamage {
public:
    /// Takes the name of the decoder, by which packets are judged: "mp3float", "pcm_s16le".
    void SetCodec(std::string_view name);

    /// Notes the next packet. What is no audio at all counts only with audio behind it: bytes
    /// that other programs leave at the end of a file harm nobody. A packet shorter than it says
    /// is where the file breaks off.
    void Note(std::span<std::uint8_t const> packet, bool isDecoded);

    /// Enters the counts into `report`.
    void Tell(CDecodeReport& report) const;

private:
    bool m_bMp3 = false;
    bool m_bPcm = false;
    std::int64_t m_nGood = 0;
    std::int64_t m_nBad = 0;
    std::int64_t m_nForeign = 0; // since the last good one
    bool m_bBreaksOff = false;
};
