// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/Places.h"

#include <cstdlib>
#include <string_view>

namespace {

constexpr char kOwnFolder[] = "/tactus";
constexpr char kNothingKept[] = "TACTUS_NO_RECORDS"; // Fixed: told in the guide.

std::string_view Environment(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string Folder(char const* variable, char const* belowHome) {
    if (!Environment(kNothingKept).empty()) {
        return {};
    }
    std::string_view const named = Environment(variable);
    if (named.starts_with('/')) {
        return std::string(named) + kOwnFolder;
    }
    std::string_view const home = Environment("HOME");
    return home.starts_with('/') ? std::string(home) + belowHome + kOwnFolder : std::string();
}

} // namespace

std::string StateFolder() {
    return Folder("XDG_STATE_HOME", "/.local/state");
}

std::string CacheFolder() {
    return Folder("XDG_CACHE_HOME", "/.cache");
}
