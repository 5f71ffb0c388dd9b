// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A regular file opened for reading, which remembers what it was like at that moment. Paths are
/// bytes. Nothing but a regular file is ever waited for: a pipe or a device is refused unread.
/// Thread: one thread at a time.
class CSourceFile {
public:
    CSourceFile() = default;
    ~CSourceFile();
    CSourceFile(CSourceFile const&) = delete;
    CSourceFile& operator=(CSourceFile const&) = delete;

    /// Opens the file at `path`, once.
    /// Returns: the reason for a person when it can't be read, else an empty text.
    std::string Open(std::string const& path);

    /// Reads up to `size` bytes at the current position.
    /// Returns: the bytes read, 0 at the end, negative after an error of the system.
    std::int64_t Read(std::uint8_t* buffer, std::size_t size);

    /// Moves to `position` bytes from the start.
    /// Returns: the position, negative when it can't be reached.
    std::int64_t Seek(std::int64_t position);

    /// Length in bytes when the file was opened.
    [[nodiscard]] std::int64_t GetSize() const { return m_nSize; }

    /// What went wrong for a person: an error of `Read`, or that the file no longer is what was
    /// opened (its length, its time of change, or what its path names). When nothing of that kind
    /// did, `reason` as it is.
    [[nodiscard]] std::string Explain(std::string const& reason) const;

private:
    std::string m_sPath;
    int m_nFile = -1;
    int m_nReadError = 0;
    std::int64_t m_nSize = 0;
    std::int64_t m_nChangeTime = 0; // nanoseconds since the epoch
};
