// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct stat;

/// Which file it is, and in which state: two that are equal hold the same bytes, as far as the
/// system can tell without reading them. A program may set the time of the last write back, but
/// not the time of the last change.
struct CFileIdentity {
    std::uint64_t m_nDevice = 0;
    std::uint64_t m_nInode = 0;
    std::int64_t m_nSize = 0;        // bytes
    std::int64_t m_nWrittenTime = 0; // last write (mtime), nanoseconds since the epoch
    std::int64_t m_nChangedTime = 0; // last change of bytes, names or rights (ctime), likewise

    bool operator==(CFileIdentity const&) const = default;

    /// True for the same file, in whatever state.
    [[nodiscard]] bool IsSameFile(CFileIdentity const& other) const {
        return m_nDevice == other.m_nDevice && m_nInode == other.m_nInode;
    }
};

CFileIdentity IdentityOf(struct stat const& status);

/// Identity of an open file. Returns: nothing, with `errno` set, when the system refuses.
std::optional<CFileIdentity> IdentityOf(int descriptor);

/// Identity of what `path`, which is bytes, names once links are followed. Returns: as above.
std::optional<CFileIdentity> IdentityAt(std::string const& path);

/// True when a change made from now on would show in the file's identity.
bool WouldChangesShow(CFileIdentity const& identity);

/// Waits until a change made from now on would show in the file's identity: a moment, and only when
/// the last change is not older than a step of the file system's clock.
void WaitUntilChangesShow(CFileIdentity const& identity);
