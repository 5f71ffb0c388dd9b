// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/EncoderNote.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace {

using CBytes = std::span<std::uint8_t const>;

constexpr std::size_t kMarkBytes = 4;     // Standard: of a header, a name, a number
constexpr std::size_t kAddedBytes = 3;    // Standard: 12 bits for each end
constexpr std::size_t kNoteBytes = 21;    // Standard: LAME's, from its name to what it added
constexpr std::int64_t kDecoderLag = 529; // Standard: of layer III, in samples

/// Standard: Xing's note, fields that its flags announce: frames, bytes, places, quality.
constexpr std::array<std::size_t, 4> kAnnouncedBytes = {4, 4, 100, 4};

/// Takes `count` bytes off the front of `bytes`, or all when it has fewer.
CBytes Take(CBytes& bytes, std::size_t count) {
    CBytes const taken = bytes.first(std::min(count, bytes.size()));
    bytes = bytes.subspan(taken.size());
    return taken;
}

/// The whole number that `bytes` are, highest first.
std::int64_t NumberOf(CBytes bytes) {
    std::int64_t number = 0;
    for (std::uint8_t const byte : bytes) {
        number = number * 256 + byte;
    }
    return number;
}

bool IsName(CBytes bytes, std::string_view name) {
    return std::equal(name.begin(), name.end(), bytes.begin(), bytes.end());
}

/// Bytes between a frame's header and what it holds.
/// Standard: ISO/IEC 11172-3 and 13818-3, section 2.4.1.7, for two granules and for one.
std::size_t SideBytes(CMpegFrame const& frame) {
    bool const isMpeg1 = frame.m_nSamples == 1152;
    return frame.m_bMono ? (isMpeg1 ? 17 : 9) : (isMpeg1 ? 32 : 17);
}

} // namespace

CEncoderNote EncoderNoteIn(CBytes bytes, CMpegFrame const& frame) {
    CEncoderNote note;
    (void)Take(bytes, kMarkBytes + SideBytes(frame));
    CBytes const name = Take(bytes, kMarkBytes);
    if (!IsName(name, "Xing") && !IsName(name, "Info")) {
        return note;
    }
    std::int64_t const flags = NumberOf(Take(bytes, kMarkBytes));
    for (std::size_t i = 0; i < kAnnouncedBytes.size(); ++i) {
        bool const isAnnounced = (flags >> i & 1) != 0;
        CBytes const field = Take(bytes, isAnnounced ? kAnnouncedBytes[i] : 0);
        note.m_nFrames = i == 0 ? NumberOf(field) : note.m_nFrames;
    }
    CBytes const fields = Take(bytes, kNoteBytes);
    CBytes const added = Take(bytes, kAddedBytes);
    CBytes const encoder = fields.first(std::min(kMarkBytes, fields.size()));
    if (added.size() == kAddedBytes &&
        (IsName(encoder, "LAME") || IsName(encoder, "Lavf") || IsName(encoder, "Lavc"))) {
        std::int64_t const both = NumberOf(added);
        note.m_nDelay = both / 4096 + kDecoderLag;
        note.m_nPadding = std::max<std::int64_t>(both % 4096 - kDecoderLag, 0);
    }
    return note;
}
