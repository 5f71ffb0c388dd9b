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

void CDecodeDamage::Tell(CDecodeReport& report) const {
    report.m_nBadPackets = m_nBad;
    report.m_nPackets = m_nBad + m_nGood;
    report.m_bBreaksOff = m_bBreaksOff;
}
