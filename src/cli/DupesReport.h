// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/TakenSong.h"
#include "song/SameSongs.h"

#include <span>
#include <string>
#include <vector>

constexpr char kDupesHeading[] = "Group  Keep"; // Fixed: begins the table.

/// True when `a` is the better copy to keep: whole rather than damaged, without loss rather than
/// with, longer rather than cut by a fifth of a second, then by bit rate, sample rate and whether
/// tags name it.
[[nodiscard]] bool IsBetterCopy(CTakenSong const& a, CTakenSong const& b);

/// Groups of `songs` with their members' places in that list, for a person: a line a file.
[[nodiscard]] std::string DupesTable(std::span<CTakenSong const> songs,
                                     std::vector<std::vector<CSameSong>> const& groups);

/// The same as one JSON object on one line, "tactus-dupes-1".
[[nodiscard]] std::string DupesJson(std::span<CTakenSong const> songs,
                                    std::vector<std::vector<CSameSong>> const& groups);
