// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/TagLibVersions.h"

#include <cstdint>
#include <span>
#include <taglib/tiostream.h>

/// A whole open file as TagLib changes it: a private copy that nobody else sees. The first error of
/// the system is kept, and nothing is written after it. For the sources that work with TagLib.
class CTagFile final : public TagLib::IOStream {
public:
    /// `file` stays the caller's.
    explicit CTagFile(int file) : m_nFile(file) {}

    /// The system's number of the first error; 0 as long as there was none.
    [[nodiscard]] int GetError() const { return m_nError; }

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(TagSize length) override;
    void writeBlock(TagLib::ByteVector const& data) override;
    void insert(TagLib::ByteVector const& data, TagStart start, TagSize replace) override;
    void removeBlock(TagStart start, TagSize length) override;
    bool readOnly() const override { return false; }
    bool isOpen() const override { return true; }
    void seek(TagOffset offset, Position position) override;
    TagOffset tell() const override { return m_nPosition; }
    TagOffset length() override;
    void truncate(TagOffset length) override;

private:
    bool Read(std::span<char> room, std::int64_t place);
    void Write(std::span<char const> bytes, std::int64_t place);
    void Move(std::int64_t from, std::int64_t to);
    bool Note(std::int64_t result);

    int m_nFile;
    int m_nError = 0;
    std::int64_t m_nPosition = 0;
};
