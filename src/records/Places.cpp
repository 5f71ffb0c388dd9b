// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Places.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>

namespace {

constexpr char kOwnFolder[] = "/tactus";
constexpr mode_t kPrivateFolder = S_IRWXU;           // Standard: XDG Base Directory, mode 0700.
constexpr char kNothingKept[] = "TACTUS_NO_RECORDS"; // Fixed: told in the guide.

std::string_view Environment(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string Folder(char const* variable, char const* belowHome) {
    std::string_view const named = Environment(variable);
    if (named.starts_with('/')) {
        return std::string(named) + kOwnFolder;
    }
    std::string_view const home = Environment("HOME");
    return home.starts_with('/') ? std::string(home) + belowHome + kOwnFolder : std::string();
}

bool IsAnythingKept() {
    return Environment(kNothingKept).empty();
}

} // namespace

std::string StateFolder() {
    return IsAnythingKept() ? LockFolder() : std::string();
}

std::string CacheFolder() {
    return IsAnythingKept() ? Folder("XDG_CACHE_HOME", "/.cache") : std::string();
}

std::string LockFolder() {
    return Folder("XDG_STATE_HOME", "/.local/state");
}

bool MakePrivateFolder(std::string const& folder) {
    std::error_code error;
    std::filesystem::path const path(folder);
    if (std::filesystem::is_directory(path, error)) {
        return true;
    }
    std::filesystem::create_directories(path.parent_path(), error);
    return ::mkdir(folder.c_str(), kPrivateFolder) == 0 ||
           std::filesystem::is_directory(path, error);
}
