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

    /// Notes the next packet. What is no audio at all counts with audio behind it, or when more of
    /// it follows than there was audio: the bytes that other programs leave at the end of a file
    /// harm nobody. A packet shorter than it says is where the file breaks off.
    void Note(std::span<std::uint8_t const> packet, bool isDecoded);

    /// Enters the counts into `report`. Foreign bytes in a row may come as one packet; they count
    /// as many as audio of their length would have.
    void Tell(CDecodeReport& report) const;

private:
    bool m_bMp3 = false;
    bool m_bPcm = false;
    std::int64_t m_nGood = 0;
    std::int64_t m_nBad = 0;
    std::int64_t m_nForeign = 0; // since the last good one
    std::int64_t m_nGoodBytes = 0;
    std::int64_t m_nBadBytes = 0;     // of foreign packets among m_nBad
    std::int64_t m_nForeignBytes = 0; // of those in m_nForeign
    bool m_bBreaksOff = false;
};
