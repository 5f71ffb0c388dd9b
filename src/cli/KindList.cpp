// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/KindList.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

namespace {

/// All extensions: "aac, aif, aifc and wv".
std::string AllKinds() {
    std::vector<std::string_view> names;
    for (CAudioKind const& kind : AudioKinds()) {
        names.push_back(kind.m_sExtension);
    }
    std::ranges::sort(names);
    std::string text;
    for (std::string_view const name : names) {
        text.append(text.empty() ? "" : name == names.back() ? " and " : ", ").append(name);
    }
    return text;
}

/// The extensions as an option takes them.
std::string EveryName() {
    std::string names;
    for (CAudioKind const& kind : AudioKinds()) {
        names.append(names.empty() ? "" : ",").append(kind.m_sExtension);
    }
    return names;
}

} // namespace

CKindChoice KindsOf(char const* option, std::string const& names) {
    CKindChoice kinds;
    std::string const unknown = kinds.Add(names == "all" ? EveryName() : names);
    if (!unknown.empty()) {
        throw CLI::ValidationError(option, "'" + unknown + "' is none of all, " + AllKinds());
    }
    return kinds;
}
