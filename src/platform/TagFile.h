// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

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
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(TagLib::ByteVector const& data) override;
    void insert(TagLib::ByteVector const& data, unsigned long start,
                unsigned long replace) override;
    void removeBlock(unsigned long start, unsigned long length) override;
    bool readOnly() const override { return false; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position position) override;
    long tell() const override { return m_nPosition; }
    long length() override;
    void truncate(long length) override;

private:
    bool Read(std::span<char> room, std::int64_t place);
    void Write(std::span<char const> bytes, std::int64_t place);
    void Move(std::int64_t from, std::int64_t to);
    bool Note(std::int64_t result);

    int m_nFile;
    int m_nError = 0;
    std::int64_t m_nPosition = 0;
};
