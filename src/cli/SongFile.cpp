// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongFile.h"

#include <cstdlib>
#include <memory>
#include <sys/stat.h>

namespace {

constexpr std::int64_t kSecondNanoseconds = 1'000'000'000;

std::int64_t Nanoseconds(timespec const& time) {
    return time.tv_sec * kSecondNanoseconds + time.tv_nsec;
}

struct CFree {
    void operator()(char* text) const { std::free(text); }
};

} // namespace

std::optional<CFileState> StateOf(std::string const& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        return std::nullopt;
    }
    return CFileState{info.st_dev, info.st_ino, info.st_size, Nanoseconds(info.st_mtim),
                      Nanoseconds(info.st_ctim)};
}

std::string SongKey(std::string const& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        return {};
    }
    // A tag with several names is written in place, so that the inode stays; one with a single
    // name may get a new inode under it.
    if (info.st_nlink > 1) {
        return std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino);
    }
    std::unique_ptr<char, CFree> const real(::realpath(path.c_str(), nullptr));
    return real == nullptr ? path : real.get();
}
