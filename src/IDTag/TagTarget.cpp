// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagTarget.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <sys/stat.h>

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
