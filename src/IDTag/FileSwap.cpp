// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/FileSwap.h"

#include "IDTag/FileAttributes.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <new>
#include <strings.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int kAttempts = 4;                       // Fixed: names taken away before we give up.
constexpr std::size_t kCopyBytes = 262'144;        // Fixed: a piece of the copy, of 1 MiB at most.
constexpr mode_t kPrivateMode = S_IRUSR | S_IWUSR; // Fixed: nobody else reads a half-made file.
constexpr std::time_t kAbandonedSeconds = 60;      // Fixed: without locks, a builder is gone then.
constexpr int kFolderWaits = 400;                  // Fixed: with the pause below, 2 seconds.
constexpr std::chrono::milliseconds kFolderPause(5);

/// Lock on a folder while names in it change: held for moments only, hence waited for. Where
/// folders can't be locked, the checks of the names must do.
class CFolderLock {
public:
    explicit CFolderLock(int folder) : m_copy(::openat(folder, ".", O_RDONLY | O_CLOEXEC)) {
        for (int i = 0; m_copy.IsOpen() && i < kFolderWaits; ++i) {
            m_eLock = LockFile(m_copy.Get());
            if (m_eLock != ELock::Busy) {
                break;
            }
            std::this_thread::sleep_for(kFolderPause);
        }
    }

    [[nodiscard]] bool IsBusy() const { return m_eLock == ELock::Busy; }

private:
    CDescriptor m_copy;
    ELock m_eLock = ELock::None;
};

/// The folder part of a path, and "." for a bare name.
std::string FolderOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string NameOf(std::string const& path) {
    return path.substr(path.rfind('/') + 1);
}

} // namespace

CFileSwap::CFileSwap(int old, CFileIdentity const& state, std::string const& path,
                     std::string const& temporaryPath)
    : m_nOld(old),
      m_sName(NameOf(path)),
      m_sTemporaryName(NameOf(temporaryPath)),
      m_folder(::open(FolderOf(path).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
      m_state(state) {
}

CFileSwap::~CFileSwap() {
    if (m_bRemove) {
        CFolderLock const lock(m_folder.Get());
        if (IsNameOf(m_sTemporaryName, m_temporary.Get()) &&
            ::unlinkat(m_folder.Get(), m_sTemporaryName.c_str(), 0) != 0) {
            (void)!::ftruncate(m_temporary.Get(), 0);
        }
    }
}

EWriteProblem CFileSwap::Begin() {
    EWriteProblem const problem = LookAround();
    if (problem != EWriteProblem::None) {
        return problem;
    }
    CFolderLock const lock(m_folder.Get());
    if (lock.IsBusy()) {
        return EWriteProblem::InUse;
    }
    for (int i = 0; i < kAttempts; ++i) {
        std::optional<EWriteProblem> const outcome = TryToBegin();
        if (outcome) {
            return *outcome;
        }
        // A second name of some file, or a file that isn't ours: only the name goes.
        m_temporary = CDescriptor();
        ::unlinkat(m_folder.Get(), m_sTemporaryName.c_str(), 0);
    }
    return EWriteProblem::NoTemporaryFile;
}

/// What speaks against a new file before one is made.
EWriteProblem CFileSwap::LookAround() const {
    if (!m_folder.IsOpen() || ::strcasecmp(m_sName.c_str(), m_sTemporaryName.c_str()) == 0) {
        return EWriteProblem::NoTemporaryFile;
    }
    if (IsBeingWritten(m_nOld)) {
        return EWriteProblem::InUse;
    }
    // In a folder that only takes names, the new file couldn't be given the old one's, nor removed.
    struct statx info = {};
    bool const isFixed = ::statx(m_folder.Get(), "", AT_EMPTY_PATH, STATX_TYPE, &info) == 0 &&
                         (info.stx_attributes & (STATX_ATTR_APPEND | STATX_ATTR_IMMUTABLE)) != 0;
    return isFixed ? EWriteProblem::MayNotReplace : EWriteProblem::None;
}

/// Returns: nothing when what lies under the temporary name must lose it.
std::optional<EWriteProblem> CFileSwap::TryToBegin() {
    EWriteProblem const problem = ClearName();
    if (problem != EWriteProblem::None) {
        return problem;
    }
    bool isNew = false;
    if (!OpenTemporary(&isNew)) {
        bool const isFull = errno == ENOSPC || errno == EDQUOT;
        return errno == EACCES ? std::nullopt
                               : std::optional(isFull ? EWriteProblem::DiskFull
                                                      : EWriteProblem::NoTemporaryFile);
    }
    if (IsNameOf(m_sTemporaryName, m_nOld)) {
        GiveUpSecondName();
        return std::nullopt;
    }
    ELock const lock = LockFile(m_temporary.Get());
    bool const isOthers = lock != ELock::Taken && !isNew && !IsAbandoned();
    if (lock == ELock::Busy || isOthers) {
        return EWriteProblem::InUse;
    }
    // Without a lock only a file of our own making is safe to write.
    if (!IsOurs(isNew) || (lock != ELock::Taken && !isNew)) {
        return std::nullopt;
    }
    m_bRemove = true;
    return ::ftruncate(m_temporary.Get(), 0) == 0 ? CarryMarks(m_nOld, m_temporary.Get())
                                                  : ProblemOf(errno);
}

/// Takes the temporary name from the old file, of which it is a second one. That changes the old
/// file's state, but not its bytes.
void CFileSwap::GiveUpSecondName() {
    bool const wasUnchanged = IdentityOf(m_nOld) == m_state;
    ::unlinkat(m_folder.Get(), m_sTemporaryName.c_str(), 0);
    std::optional<CFileIdentity> const now = IdentityOf(m_nOld);
    if (wasUnchanged && now && now->m_nSize == m_state.m_nSize &&
        now->m_nWrittenTime == m_state.m_nWrittenTime) {
        m_state = *now;
    }
}

/// True when nobody has written the temporary file for so long that its maker must be gone.
bool CFileSwap::IsAbandoned() const {
    struct stat info = {};
    return ::fstat(m_temporary.Get(), &info) == 0 &&
           info.st_mtim.tv_sec < std::time(nullptr) - kAbandonedSeconds;
}

/// Takes away what lies under the temporary name and is no plain file.
EWriteProblem CFileSwap::ClearName() {
    struct stat info = {};
    if (::fstatat(m_folder.Get(), m_sTemporaryName.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0 ||
        S_ISREG(info.st_mode)) {
        return EWriteProblem::None;
    }
    bool const isGone =
        !S_ISDIR(info.st_mode) && ::unlinkat(m_folder.Get(), m_sTemporaryName.c_str(), 0) == 0;
    return isGone ? EWriteProblem::None : EWriteProblem::NoTemporaryFile;
}

/// Makes the file, or opens the one that lies there from an earlier attempt, without cutting it.
bool CFileSwap::OpenTemporary(bool* isNew) {
    constexpr int kTemporaryFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    char const* const name = m_sTemporaryName.c_str();
    m_temporary = CDescriptor(
        ::openat(m_folder.Get(), name, kTemporaryFlags | O_CREAT | O_EXCL, kPrivateMode));
    *isNew = m_temporary.IsOpen();
    if (!*isNew && errno == EEXIST) {
        m_temporary = CDescriptor(::openat(m_folder.Get(), name, kTemporaryFlags));
    }
    return m_temporary.IsOpen();
}

/// A plain file with this one name, and of this user.
bool CFileSwap::IsOurs(bool isNew) const {
    struct stat info = {};
    return ::fstat(m_temporary.Get(), &info) == 0 && S_ISREG(info.st_mode) && info.st_nlink == 1 &&
           (isNew || info.st_uid == ::geteuid()) && IsNameOf(m_sTemporaryName, m_temporary.Get());
}

bool CFileSwap::IsNameOf(std::string const& name, int file) const {
    struct stat named = {};
    struct stat opened = {};
    return ::fstatat(m_folder.Get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstat(file, &opened) == 0 && IsSameFile(named, opened);
}

EWriteProblem CFileSwap::Write(std::span<std::uint8_t const> bytes) {
    EWriteProblem const problem = WriteAllAt(m_temporary.Get(), bytes, m_nWritten);
    m_nWritten += bytes.size();
    return problem;
}

EWriteProblem CFileSwap::CopyRest(std::uint64_t offset) {
    auto const end = static_cast<std::uint64_t>(m_state.m_nSize);
    std::unique_ptr<std::uint8_t[]> const buffer(new (std::nothrow) std::uint8_t[kCopyBytes]);
    if (buffer == nullptr) {
        return EWriteProblem::NoMemory;
    }
    while (offset < end) {
        auto const count =
            static_cast<std::size_t>(std::min<std::uint64_t>(kCopyBytes, end - offset));
        if (!ReadAllAt(m_nOld, {buffer.get(), count}, offset)) {
            return EWriteProblem::WriteFailed;
        }
        EWriteProblem const problem = Write({buffer.get(), count});
        if (problem != EWriteProblem::None) {
            return problem;
        }
        offset += count;
    }
    return EWriteProblem::None;
}

EWriteProblem CFileSwap::TakeOver() {
    struct stat info = {};
    if (::fstat(m_temporary.Get(), &info) != 0) {
        return ProblemOf(errno);
    }
    m_nWritten = static_cast<std::uint64_t>(info.st_size);
    return EWriteProblem::None;
}

/// Everything that must be true of the new file before it gets the name.
EWriteProblem CFileSwap::Finish() {
    if (::ftruncate(m_temporary.Get(), static_cast<off_t>(m_nWritten)) != 0) {
        return ProblemOf(errno);
    }
    EWriteProblem const problem = CarryAttributes(m_nOld, m_temporary.Get());
    if (problem != EWriteProblem::None) {
        return problem;
    }
    ::SetWrittenTime(m_temporary.Get(), m_writtenTime);
    if (::fsync(m_temporary.Get()) != 0) {
        return ProblemOf(errno);
    }
    struct stat info = {};
    if (::fstat(m_temporary.Get(), &info) != 0 ||
        static_cast<std::uint64_t>(info.st_size) != m_nWritten) {
        return EWriteProblem::WriteFailed;
    }
    if (!(IdentityOf(m_nOld) == m_state)) {
        return EWriteProblem::Changed;
    }
    return IsBeingWritten(m_nOld) ? EWriteProblem::InUse : EWriteProblem::None;
}

EWriteProblem CFileSwap::Commit() {
    EWriteProblem const problem = Finish();
    if (problem != EWriteProblem::None) {
        return problem;
    }
    {
        CFolderLock const lock(m_folder.Get());
        if (lock.IsBusy()) {
            return EWriteProblem::InUse;
        }
        if (!IsNameOf(m_sName, m_nOld) || !IsNameOf(m_sTemporaryName, m_temporary.Get())) {
            return EWriteProblem::Changed;
        }
        if (::renameat(m_folder.Get(), m_sTemporaryName.c_str(), m_folder.Get(), m_sName.c_str()) !=
            0) {
            return ProblemOf(errno);
        }
        m_bRemove = false;
    }
    // The swap is done; this only brings the name to the disk as soon as may be.
    CDescriptor const folder(::openat(m_folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen()) {
        (void)::fsync(folder.Get());
    }
    return EWriteProblem::None;
}
