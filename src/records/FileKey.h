// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/FileIdentity.h"

#include <string>
#include <unordered_map>

/// By what a file is found again, and by what it is told that nobody has changed it.
struct CFileKey {
    std::string m_sKey; // bytes: device and inode, or the path
    CFileIdentity m_state;

    bool operator==(CFileKey const&) const = default;
};

/// Makes keys. Inodes name files where they last; on shares, in user space and on FAT a system may
/// make them up anew each time, and the time of the last change with them: there the path does it,
/// with size and time of the last write. The extension belongs to the key, because tags are looked
/// for by it.
/// Thread: one at a time.
class CFileKeys {
public:
    CFileKey KeyOf(std::string const& path, CFileIdentity const& identity);

private:
    bool HasLastingInodes(std::string const& path, CFileIdentity const& identity);

    std::unordered_map<std::uint64_t, bool> m_devices; // those that were looked at
};
