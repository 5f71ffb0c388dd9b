// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagTarget.h"

#include "base/FileUtil.h"

#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

} // namespace

CString FileBehind(CString const& path) {
    std::string const bytes = path.ToPath();
    struct stat info = {};
    if (::lstat(bytes.c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) {
        return path;
    }
    std::unique_ptr<char, decltype(&std::free)> const real(::realpath(bytes.c_str(), nullptr),
                                                           &std::free);
    return real != nullptr ? CString::FromPath(real.get()) : path;
}

bool HasWrittenExtension(CString const& path) {
    CString extension;
    return CFileUtil::GetLowerCaseFileExt(path, extension) == kStatusOk && extension == "mp3";
}

CString TemporaryPathBeside(CString const& path) {
    CString temporary;
    CFileUtil::ChangeFileExt(path, L"MP~", temporary);
    return temporary;
}

bool CTagTarget::MayBeWritten() const {
    return ::faccessat(AT_FDCWD, m_sPath.ToPath().c_str(), W_OK, AT_EACCESS) == 0;
}

EWriteProblem CTagTarget::Open(std::optional<CFileIdentity> const& expected) {
    // Opened for reading, so that nobody takes it for a file that is being written.
    m_file = CDescriptor(::open(m_sPath.ToPath().c_str(), kFlags | O_RDONLY));
    struct stat info = {};
    if (!m_file.IsOpen() || ::fstat(m_file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return EWriteProblem::NotWritable;
    }
    EWriteProblem const locked = Lock();
    if (locked != EWriteProblem::None) {
        return locked;
    }
    if (::fstat(m_file.Get(), &info) != 0) {
        return EWriteProblem::Changed;
    }
    m_identity = IdentityOf(info);
    if (expected && !(m_identity == *expected)) {
        return EWriteProblem::Changed;
    }
    WaitUntilChangesShow(m_identity);
    return LookAgain();
}

EWriteProblem CTagTarget::Lock() {
    ELock lock = LockFile(m_file.Get());
    if (lock == ELock::OnlyForWriters) {
        m_file = CDescriptor(::open(m_sPath.ToPath().c_str(), kFlags | O_RDWR));
        if (!m_file.IsOpen()) {
            return EWriteProblem::NotWritable;
        }
        lock = LockFile(m_file.Get());
    }
    // Where there are no locks, the file's identity must do.
    return lock == ELock::Busy ? EWriteProblem::InUse : EWriteProblem::None;
}

EWriteProblem CTagTarget::OpenForWriting() {
    m_writer = CDescriptor(::open(m_sPath.ToPath().c_str(), kFlags | O_RDWR));
    std::optional<CFileIdentity> const opened = IdentityOf(m_writer.Get());
    if (!opened) {
        return EWriteProblem::NotWritable;
    }
    return opened->IsSameFile(m_identity) ? EWriteProblem::None : EWriteProblem::Changed;
}

EWriteProblem CTagTarget::LookAgain() const {
    std::optional<CFileIdentity> const now = IdentityOf(m_file.Get());
    return now == m_identity && IsNamed() ? EWriteProblem::None : EWriteProblem::Changed;
}

bool CTagTarget::IsNamed() const {
    struct stat named = {};
    return ::lstat(m_sPath.ToPath().c_str(), &named) == 0 &&
           IdentityOf(named).IsSameFile(m_identity);
}
