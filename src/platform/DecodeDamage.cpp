// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodeDamage.h"

#include "platform/MpegFrame.h"

#include <cstddef>
#include <optional>

void CDecodeDamage::SetCodec(std::string_view name) {
    m_bMp3 = name.starts_with("mp3");
    m_bPcm = name.starts_with("pcm_");
}

void CDecodeDamage::Note(std::span<std::uint8_t const> packet, bool isDecoded) {
    std::optional<std::size_t> const wholeBytes = m_bMp3 ? MpegFrameBytes(packet) : std::nullopt;
    if (wholeBytes && packet.size() < *wholeBytes) {
        m_bBreaksOff = true;
    } else if (isDecoded) {
        m_nBad += m_nForeign;
        m_nForeign = 0;
        ++m_nGood;
    } else if (m_bPcm || (m_bMp3 && !wholeBytes)) {
        ++m_nForeign;
    } else {
        ++m_nBad;
    }
}

std::string CDecodeDamage::Describe() const {
    std::string text;
    if (m_nBad > 0) {
        text = "is damaged: " + std::to_string(m_nBad) + " of " + std::to_string(m_nBad + m_nGood) +
               " packets can't be decoded";
    }
    if (m_bBreaksOff) {
        text += text.empty() ? "breaks off in the middle of a frame" : ", and it breaks off";
    }
    return text;
}
