// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/DecodeDamage.h"

#include "platform/MpegFrame.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

void CDecodeDamage::SetCodec(std::string_view name) {
    m_bMp3 = name.starts_with("mp3");
    m_bPcm = name.starts_with("pcm_");
}

void CDecodeDamage::Note(std::span<std::uint8_t const> packet, bool isDecoded) {
    std::optional<CMpegFrame> const frame = m_bMp3 ? MpegFrameOf(packet) : std::nullopt;
    if (frame && packet.size() < frame->m_nBytes) {
        m_bBreaksOff = true;
    } else if (isDecoded) {
        m_nBad += std::exchange(m_nForeign, 0);
        m_nBadBytes += std::exchange(m_nForeignBytes, 0);
        m_nGoodBytes += static_cast<std::int64_t>(packet.size());
        ++m_nGood;
    } else if (m_bPcm || (m_bMp3 && !frame)) {
        m_nForeignBytes += static_cast<std::int64_t>(packet.size());
        ++m_nForeign;
    } else {
        ++m_nBad;
    }
}

void CDecodeDamage::Tell(CDecodeReport& report) const {
    bool const isMoreForeign = m_nForeign > m_nGood;
    std::int64_t const bytes = m_nBadBytes + (isMoreForeign ? m_nForeignBytes : 0);
    std::int64_t const packetBytes = m_nGood > 0 ? std::max<std::int64_t>(m_nGoodBytes / m_nGood, 1)
                                                 : std::numeric_limits<std::int64_t>::max();
    std::int64_t const bad = m_nBad + (isMoreForeign ? m_nForeign : 0);
    report.m_nBadPackets = std::max(bad, bytes / packetBytes);
    report.m_nPackets = report.m_nBadPackets + m_nGood;
    report.m_bBreaksOff = m_bBreaksOff;
}
