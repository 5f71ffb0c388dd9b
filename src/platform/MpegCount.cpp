// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: pass over the tags in front and read the encoder's note behind them; hop from frame to
// frame; look whether anything behind the last one could be taken for a frame; leave out what the
// note says. At every doubt there is no count.

#include "platform/MpegCount.h"

#include "platform/EncoderNote.h"
#include "platform/FileKind.h"
#include "platform/MpegFrame.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace {

using CBytes = std::span<std::uint8_t const>;

constexpr std::size_t kBlockBytes = 65536;      // Fixed: as many as the decoder reads at once.
constexpr std::size_t kFrameHeaderBytes = 4;    // Standard: ISO/IEC 11172-3, section 2.4.1.3.
constexpr std::size_t kTagHeaderBytes = 10;     // Standard: ID3v2.4.0, section 3.1.
constexpr std::int64_t kFewestFrames = 8;       // Fixed: more than any delay and padding take.
constexpr std::int64_t kLongestRest = 16 << 20; // Fixed: of a tag with pictures at the end.

/// The bytes of a file, a block at a time.
class CBlockReader {
public:
    CBlockReader(CSourceFile& file, CDecodeWatch& watch) : m_file(file), m_watch(watch) {}

    /// `count` bytes from `place` on, a block at most; fewer where the file ends. Good until the
    /// next call.
    CBytes At(std::int64_t place, std::size_t count) {
        if (place < m_nPlace ||
            place + static_cast<std::int64_t>(count) > m_nPlace + std::ssize(m_block)) {
            Load(place);
        }
        CBytes const there = m_block.subspan(static_cast<std::size_t>(place - m_nPlace));
        return there.first(std::min(count, there.size()));
    }

private:
    void Load(std::int64_t place) {
        std::int64_t const done = m_watch.IsCancelled() ? 0 : m_file.ReadAt(place, m_vRoom);
        m_block = CBytes(m_vRoom).first(static_cast<std::size_t>(std::max<std::int64_t>(done, 0)));
        m_nPlace = place;
    }

    CSourceFile& m_file;
    CDecodeWatch& m_watch;
    std::vector<std::uint8_t> m_vRoom = std::vector<std::uint8_t>(kBlockBytes);
    CBytes m_block;
    std::int64_t m_nPlace = 0; // of the block in the file
};

/// The encoder's note between the tags and `start`. Nothing when something else is there.
std::optional<CEncoderNote> NoteBefore(CBlockReader& reader, std::int64_t start) {
    std::int64_t place = 0;
    while (std::int64_t const tag = LeadingTagBytes(reader.At(place, kTagHeaderBytes))) {
        place += tag;
    }
    if (place == start) {
        return CEncoderNote();
    }
    auto const frame = MpegFrameOf(reader.At(place, kFrameHeaderBytes));
    if (!frame || place + static_cast<std::int64_t>(frame->m_nBytes) != start) {
        return std::nullopt;
    }
    return EncoderNoteIn(reader.At(place, frame->m_nBytes), *frame);
}

/// True when no decoder finds a header from `place` to the end of the file, at `end`.
bool IsWithoutFrames(CBlockReader& reader, std::int64_t place, std::int64_t end) {
    if (end - place > kLongestRest) {
        return false;
    }
    // Standard: a header begins with eleven ones. Blocks overlap by a byte.
    constexpr std::int64_t kStep = std::int64_t{kBlockBytes} - 1;
    constexpr std::array<std::uint8_t, 2> kSync = {0xFF, 0xE0};
    for (; end - place > 1; place += kStep) {
        CBytes const bytes = reader.At(place, kBlockBytes);
        if (std::ranges::adjacent_find(bytes, [&](std::uint8_t first, std::uint8_t second) {
                return first == kSync[0] && second >= kSync[1];
            }) != bytes.end()) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<std::int64_t> CountMpegSamples(CSourceFile& file, std::int64_t start,
                                             CDecodeWatch& watch) {
    CBlockReader reader(file, watch);
    auto const note = NoteBefore(reader, start);
    auto const first = MpegFrameOf(reader.At(start, kFrameHeaderBytes));
    std::int64_t place = start;
    std::int64_t frames = 0;
    for (auto frame = note ? first : std::nullopt; frame;
         frame = MpegFrameOf(reader.At(place, kFrameHeaderBytes))) {
        place += static_cast<std::int64_t>(frame->m_nBytes);
        if (frame->m_nSamples != first->m_nSamples ||
            frame->m_nSampleRate != first->m_nSampleRate || place > file.GetSize()) {
            return std::nullopt;
        }
        ++frames;
    }
    bool const isAsNoted = note && (note->m_nFrames == 0 || note->m_nFrames == frames);
    if (!isAsNoted || frames < kFewestFrames || !IsWithoutFrames(reader, place, file.GetSize()) ||
        watch.IsCancelled()) {
        return std::nullopt;
    }
    std::int64_t const padding = note->m_nFrames > 0 ? note->m_nPadding : 0;
    return frames * static_cast<std::int64_t>(first->m_nSamples) - note->m_nDelay - padding;
}
