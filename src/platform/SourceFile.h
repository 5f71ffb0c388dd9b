// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/FileIdentity.h"
#include "platform/DecodeProblem.h"

#include <cstddef>
#include <cstdint>
#include <span>
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
    /// Returns: why it can't be read; `None` when it can.
    EDecodeProblem Open(std::string const& path);

    /// Takes a descriptor that is open for reading, which stays the caller's but for its position.
    /// `Explain` can't tell anything about it.
    EDecodeProblem Adopt(int descriptor);

    /// Lets the file end at `size` bytes if it is longer.
    void EndAt(std::int64_t size);

    /// Reads up to `size` bytes at the current position.
    /// Returns: the bytes read, 0 at the end, negative after an error of the system.
    std::int64_t Read(std::uint8_t* buffer, std::size_t size);

    /// Fills `bytes` from `place` on, as far as the file goes; the current position stays.
    /// Returns: the bytes read, negative after an error of the system.
    std::int64_t ReadAt(std::int64_t place, std::span<std::uint8_t> bytes) const;

    /// Moves to `position` bytes from the start.
    /// Returns: the position, negative when it can't be reached.
    std::int64_t Seek(std::int64_t position);

    /// What was opened, as it was then.
    [[nodiscard]] CFileIdentity const& GetIdentity() const { return m_identity; }

    /// Length in bytes when the file was opened.
    [[nodiscard]] std::int64_t GetSize() const { return m_identity.m_nSize; }

    /// What went wrong: an error of `Read`, or that the file no longer is what was opened (its
    /// length, its times, or what its path names). When nothing of that kind did, `problem`.
    [[nodiscard]] EDecodeProblem Explain(EDecodeProblem problem);

    /// The number that belongs to `SystemError`; 0 before there was one.
    [[nodiscard]] int GetError() const { return m_nError; }

private:
    EDecodeProblem Fail(int error);
    EDecodeProblem LookAtFile();

    std::string m_sPath;
    int m_nFile = -1;
    int m_nReadError = 0;
    int m_nError = 0;
    CFileIdentity m_identity;
    bool m_bEndsEarly = false; // before the file does
};
