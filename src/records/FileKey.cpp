// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/FileKey.h"

#include "records/RealPath.h"

#include <algorithm>
#include <array>
#include <sys/vfs.h>

namespace {

// Standard: linux/magic.h and the file systems' own headers.
constexpr std::array<std::uint32_t, 8> kWithoutInodes = {
    0xFF534D42, // CIFS
    0xFE534D42, // SMB 2 and later
    0x0000517B, // SMB, the first one
    0x65735546, // FUSE
    0x00004D44, // FAT
    0x2011BAB0, // exFAT
    0x01021997, // 9P
    0x786F4256, // VirtualBox's folders
};

/// What follows the last point of the file's name; empty without one.
std::string ExtensionOf(std::string const& path) {
    std::string const name = path.substr(path.rfind('/') + 1);
    std::size_t const point = name.rfind('.');
    return point == std::string::npos ? std::string() : name.substr(point);
}

} // namespace

bool CFileKeys::HasLastingInodes(std::string const& path, CFileIdentity const& identity) {
    auto const known = m_devices.find(identity.m_nDevice);
    if (known != m_devices.end()) {
        return known->second;
    }
    struct statfs info = {};
    bool const isLasting =
        ::statfs(path.c_str(), &info) == 0 &&
        std::ranges::find(kWithoutInodes, static_cast<std::uint32_t>(info.f_type)) ==
            kWithoutInodes.end();
    m_devices.emplace(identity.m_nDevice, isLasting);
    return isLasting;
}

CFileKey CFileKeys::KeyOf(std::string const& path, CFileIdentity const& identity) {
    if (HasLastingInodes(path, identity)) {
        return {std::to_string(identity.m_nDevice) + ":" + std::to_string(identity.m_nInode) +
                    ExtensionOf(path),
                identity};
    }
    CFileIdentity state;
    state.m_nSize = identity.m_nSize;
    state.m_nWrittenTime = identity.m_nWrittenTime;
    return {RealPath(path), state};
}
