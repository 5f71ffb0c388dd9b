// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <set>
#include <string>

/// The name of a file that tells of the song at `path`: the song's own with `extension`, and with a
/// number where that is among `taken`, which gets it.
[[nodiscard]] std::string SongFileName(std::string const& path, char const* extension,
                                       std::set<std::string>& taken);
