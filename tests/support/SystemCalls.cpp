// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// In the tests of the tag code the linker sends calls here (--wrap), and ours to the system.

#include "support/SystemCalls.h"

#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <sys/types.h>

namespace {

CSystemCalls* current = nullptr;

/// Asks the function, which may itself make calls, and sets `errno`. Returns: whether to go on.
template <typename... Arguments>
bool IsLetThrough(std::function<int(Arguments...)> CSystemCalls::*member, Arguments... arguments) {
    if (current == nullptr || !(current->*member)) {
        return true;
    }
    CSystemCalls* const asked = current;
    current = nullptr;
    int const error = (asked->*member)(arguments...);
    current = asked;
    errno = error;
    return error == 0;
}

} // namespace

CSystemCalls::CSystemCalls() {
    current = this;
}

CSystemCalls::~CSystemCalls() {
    current = nullptr;
}

extern "C" {
[[gnu::weak]] int __real_flock(int file, int operation); // missing elsewhere
[[gnu::weak]] int __real_open(char const* path, int flags, ...);
[[gnu::weak]] int __real_fsync(int file);
[[gnu::weak]] int __real_renameat(int from, char const* name, int to, char const* newName);
[[gnu::weak]] int __real_unlinkat(int folder, char const* name, int flags);

int __wrap_flock(int file, int operation) {
    return IsLetThrough(&CSystemCalls::m_flock, file) ? __real_flock(file, operation) : -1;
}

int __wrap_open(char const* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    return IsLetThrough(&CSystemCalls::m_open, flags) ? __real_open(path, flags, mode) : -1;
}

int __wrap_fsync(int file) {
    return IsLetThrough(&CSystemCalls::m_fsync) ? __real_fsync(file) : -1;
}

int __wrap_renameat(int from, char const* name, int to, char const* newName) {
    return IsLetThrough(&CSystemCalls::m_rename) ? __real_renameat(from, name, to, newName) : -1;
}

int __wrap_unlinkat(int folder, char const* name, int flags) {
    return IsLetThrough(&CSystemCalls::m_unlink) ? __real_unlinkat(folder, name, flags) : -1;
}
}
