// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/RunLock.h"

#include "cli/Message.h"
#include "records/Places.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr char kFileName[] = "/lock";              // Fixed: told in the manual.
constexpr mode_t kPrivateFile = S_IRUSR | S_IWUSR; // Fixed: as the databases beside it.
constexpr int kUsual = O_CLOEXEC | O_NOFOLLOW | O_NOCTTY;

/// The lock's file, made where it isn't there yet; without the right to write it, to be read.
CDescriptor OpenFile(std::string const& path) {
    CDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | kUsual, kPrivateFile));
    bool const isRefused = !file.IsOpen() && (errno == EACCES || errno == EROFS);
    return isRefused ? CDescriptor(::open(path.c_str(), O_RDONLY | kUsual)) : std::move(file);
}

} // namespace

ERunLock CRunLock::Take(std::string const& folder) {
    if (folder.empty()) {
        m_sReason = "there is no home folder";
        return ERunLock::NoFile;
    }
    (void)MakePrivateFolder(folder); // whether it is there is told by the file
    m_file = OpenFile(folder + kFileName);
    if (!m_file.IsOpen()) {
        m_sReason = folder + kFileName + ": " + SystemReason(errno);
        return ERunLock::NoFile;
    }
    switch (LockFile(m_file.Get())) {
    case ELock::Taken:
        return ERunLock::Taken;
    case ELock::Busy:
        return ERunLock::Held;
    case ELock::OnlyForWriters:
    case ELock::None:
        break;
    }
    m_sReason = folder + kFileName + ": can't be locked there";
    return ERunLock::NoFile;
}
