// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/FileAttributes.h"

#include "IDTag/PosixFile.h"

#include <algorithm>
#include <cerrno>
#include <linux/fs.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

// The steps: owner and group, then the extended attributes, because an access list belongs to
// them and they may change the mode; the mode last.

namespace {

constexpr std::string_view kUserPrefix = "user.";                   // Standard: xattr(7).
constexpr std::string_view kAccessList = "system.posix_acl_access"; // Standard: acl(5).
constexpr mode_t kModeBits = S_ISUID | S_ISGID | S_ISVTX | S_IRWXU | S_IRWXG | S_IRWXO;
// Standard: ioctl_iflags(2): what a person may set on a file, and what forbids another in its
// place.
constexpr int kMarks = FS_SECRM_FL | FS_UNRM_FL | FS_COMPR_FL | FS_SYNC_FL | FS_NODUMP_FL |
                       FS_NOATIME_FL | FS_NOCOMP_FL | FS_JOURNAL_DATA_FL | FS_NOTAIL_FL |
                       FS_NOCOW_FL;
constexpr int kFixedMarks = FS_IMMUTABLE_FL | FS_APPEND_FL | FS_VERITY_FL;
constexpr unsigned kGroupShift = 3; // Standard: POSIX, the group's bits above everybody's.

/// None when the file system knows no attributes; false when it can't tell them.
bool AttributeNames(int file, std::vector<std::string>& names) {
    ssize_t const room = ::flistxattr(file, nullptr, 0);
    if (room <= 0) {
        return room == 0 || errno == ENOTSUP || errno == ENOSYS;
    }
    std::string list(static_cast<std::size_t>(room), '\0');
    ssize_t const length = ::flistxattr(file, list.data(), list.size());
    if (length < 0) {
        return false;
    }
    // Names end in a zero byte each.
    list.resize(static_cast<std::size_t>(length));
    for (std::size_t start = 0; start < list.size();) {
        names.emplace_back(list.c_str() + start);
        start += names.back().size() + 1;
    }
    return true;
}

/// What a person would miss; the rest belongs to the system, which may refuse it.
bool IsNeeded(std::string_view name) {
    return name.starts_with(kUserPrefix) || name == kAccessList;
}

bool CopyAttribute(int from, int to, char const* name) {
    ssize_t const room = ::fgetxattr(from, name, nullptr, 0);
    if (room < 0) {
        return false;
    }
    std::vector<char> value(static_cast<std::size_t>(room));
    ssize_t const length = ::fgetxattr(from, name, value.data(), value.size());
    return length >= 0 &&
           ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
}

EWriteProblem CarryExtendedAttributes(int from, int to) {
    std::vector<std::string> names;
    std::vector<std::string> newNames;
    if (!AttributeNames(from, names) || !AttributeNames(to, newNames)) {
        return ProblemOf(errno);
    }
    // The folder may have given the new file an access list that the old one hasn't.
    for (std::string const& name : newNames) {
        bool const isKept = std::ranges::find(names, name) != names.end();
        if (!isKept && ::fremovexattr(to, name.c_str()) != 0 && IsNeeded(name)) {
            return ProblemOf(errno);
        }
    }
    for (std::string const& name : names) {
        if (!CopyAttribute(from, to, name.c_str()) && IsNeeded(name)) {
            return ProblemOf(errno);
        }
    }
    return EWriteProblem::None;
}

/// The old file's mode as far as the new one's owner and group may have it.
mode_t ModeFor(struct stat const& old, struct stat const& now) {
    mode_t mode = old.st_mode & kModeBits;
    if (now.st_uid != old.st_uid || now.st_gid != old.st_gid) {
        mode &= static_cast<mode_t>(~(S_ISUID | S_ISGID));
    }
    if (now.st_gid != old.st_gid) {
        mode &= static_cast<mode_t>(~S_IRWXG) | ((mode & S_IRWXO) << kGroupShift);
    }
    return mode;
}

} // namespace

EWriteProblem CarryMarks(int from, int to) {
    int old = 0;
    int now = 0;
    if (::ioctl(from, FS_IOC_GETFLAGS, &old) != 0 || ::ioctl(to, FS_IOC_GETFLAGS, &now) != 0) {
        return EWriteProblem::None; // The file system knows no marks.
    }
    if ((old & kFixedMarks) != 0) {
        return EWriteProblem::MayNotReplace;
    }
    if ((old & kMarks) == (now & kMarks)) {
        return EWriteProblem::None;
    }
    int const wanted = (now & ~kMarks) | (old & kMarks);
    (void)::ioctl(to, FS_IOC_SETFLAGS, &wanted);
    bool const isCarried =
        ::ioctl(to, FS_IOC_GETFLAGS, &now) == 0 && (old & kMarks) == (now & kMarks);
    return isCarried ? EWriteProblem::None : EWriteProblem::MayNotReplace;
}

EWriteProblem CarryAttributes(int from, int to) {
    struct stat old = {};
    struct stat now = {};
    if (::fstat(from, &old) != 0) {
        return ProblemOf(errno);
    }
    if (::fchown(to, old.st_uid, old.st_gid) != 0) {
        // Only the superuser may give files away; everybody may choose among their groups.
        (void)!::fchown(to, static_cast<uid_t>(-1), old.st_gid);
    }
    EWriteProblem const problem = CarryExtendedAttributes(from, to);
    if (problem != EWriteProblem::None) {
        return problem;
    }
    if (::fstat(to, &now) != 0) {
        return ProblemOf(errno);
    }
    // Some file systems have one mode for all files and refuse to set it: only the outcome counts.
    mode_t const mode = ModeFor(old, now);
    (void)!::fchmod(to, mode);
    bool const isCarried = ::fstat(to, &now) == 0 && (now.st_mode & kModeBits) == mode;
    return isCarried ? EWriteProblem::None : EWriteProblem::WriteFailed;
}
