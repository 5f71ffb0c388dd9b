// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Frame.h"
#include "IDTag/RawTag.h"

/// One frame found in a tag, its header already in the form of version 2.3. The body belongs to
/// the tag.
struct CFoundFrame {
    ID3V2_3_FRAMEHEADER m_header = {};
    std::uint8_t const* m_pBody = nullptr;
    std::uint32_t m_nBodyBytes = 0;
    bool m_bOldPicture = false; // a "PIC" of version 2.2
    bool m_bKnownId = true;     // false: a version 2.2 id without a name in version 2.3
    bool m_bWiderId = false;    // its name in version 2.3 is one of the wider table
    char m_sOldId[4] = {};      // the version 2.2 id, terminated; empty in other versions
};

/// The way through a tag's body from frame to frame. `tag` must outlive it.
class CFrameWalk {
public:
    /// With `everyId`, version 2.2 ids are looked up in the wider table, and a frame whose id isn't
    /// there either is handed out like any other, under its own three characters and a 0.
    explicit CFrameWalk(CRawTag const& tag, bool everyId = false);

    /// Finds the next frame. Without `everyId`, a version 2.2 frame whose id is unknown is handed
    /// out before its size is looked at, without a body; the walk ends there.
    /// Returns: false at the end, at padding, and at a frame that can't be one.
    bool Next(CFoundFrame* found);

    /// True when bytes other than zeros lie where the walk, now at its end, never came: behind its
    /// last frame, or before a start that a broken extended header has put too far. A header of no
    /// bytes behind the last frame is nothing that could be lost.
    [[nodiscard]] bool HasUnreachedData() const;

private:
    [[nodiscard]] std::uint32_t StartOffset() const;
    bool NextOld(CFoundFrame* found);
    bool NextPlain(CFoundFrame* found);
    bool TakeBody(std::uint32_t headerBytes, std::uint64_t size, CFoundFrame* found);
    [[nodiscard]] std::uint32_t PastEmptyFrames() const;
    [[nodiscard]] bool HasData(std::uint32_t begin, std::uint32_t end) const;

    CRawTag const& m_tag;
    bool m_bEveryId;
    std::uint32_t m_nOffset;
};
