// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <sys/stat.h>
#include <utility>

/// Owner of one file descriptor.
class CDescriptor {
public:
    CDescriptor() = default;
    explicit CDescriptor(int number) : m_nNumber(number) {}
    CDescriptor(CDescriptor&& other) noexcept : m_nNumber(std::exchange(other.m_nNumber, -1)) {}
    CDescriptor& operator=(CDescriptor&& other) noexcept;
    ~CDescriptor();

    [[nodiscard]] int Get() const { return m_nNumber; }
    [[nodiscard]] bool IsOpen() const { return m_nNumber >= 0; }

private:
    int m_nNumber = -1;
};

/// True when both describe the same file of the same file system.
bool IsSameFile(struct stat const& one, struct stat const& other);

/// What came of asking for a lock.
enum class ELock {
    Taken,
    Busy,           // somebody else holds it
    OnlyForWriters, // this file system locks only what is open for writing
    None,           // this file system has no locks
};

/// Takes the exclusive advisory lock without waiting.
ELock LockFile(int file);

/// True when somebody has the file, which is open here for reading alone, open for writing. False
/// also where the system doesn't tell.
bool IsBeingWritten(int file);

/// Reads exactly `room.size()` bytes at `offset`; false when there are fewer or on an error.
bool ReadAllAt(int file, std::span<std::uint8_t> room, std::uint64_t offset);

/// Writes all of `bytes` at `offset`.
EWriteProblem WriteAllAt(int file, std::span<std::uint8_t const> bytes, std::uint64_t offset);

/// Gives the file this time of the last write, in nanoseconds since the epoch, where the system
/// allows it; with nothing, it stays as it is.
void SetWrittenTime(int file, std::optional<std::int64_t> time);

/// The problem that the system's error number stands for, `WriteFailed` for any other.
EWriteProblem ProblemOf(int error);
