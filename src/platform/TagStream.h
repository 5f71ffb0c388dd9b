// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SourceFile.h"
#include "platform/TagLibVersions.h"

#include <cstdint>
#include <taglib/tiostream.h>

/// The end of a file, from a place on, as TagLib reads it: nothing can be written, and a file that
/// makes the library read on and on, or deeper and deeper, comes to an end. For the sources that
/// work with TagLib; no header of the room that others include includes this one.
class CTagStream final : public TagLib::IOStream {
public:
    /// `source` must outlive it; `begin` is the place that the library takes for the start.
    CTagStream(CSourceFile& source, std::int64_t begin) : m_source(source), m_nBegin(begin) {}

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(TagSize length) override;
    void writeBlock(TagLib::ByteVector const&) override {}
    void insert(TagLib::ByteVector const&, TagStart, TagSize) override {}
    void removeBlock(TagStart, TagSize) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(TagOffset offset, Position position) override;
    TagOffset tell() const override { return m_nPosition; }
    TagOffset length() override;
    void truncate(TagOffset) override {}

private:
    [[nodiscard]] bool IsUsedUp() const;

    CSourceFile& m_source;
    std::int64_t m_nBegin;
    std::int64_t m_nPosition = 0; // from the start that the library knows
    std::int64_t m_nBytesRead = 0;
    std::int64_t m_nReads = 0;
};
