// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Where the programs keep what they remember, by the XDG Base Directory Specification: the
/// environment's folder when it is an absolute path, else the home folder's own.
/// Returns: the folder's path, which need not be there yet; empty when there is no home folder, or
/// when `TACTUS_NO_RECORDS` is set and not empty: nothing is to be kept then.
/// Thread: any, as long as none changes the environment.

/// For what can't be had again: `$XDG_STATE_HOME/tactus`, else `~/.local/state/tactus`.
std::string StateFolder();

/// For what can be had again: `$XDG_CACHE_HOME/tactus`, else `~/.cache/tactus`.
std::string CacheFolder();

/// For a lock, which tells nothing of anybody's music: as `StateFolder`, also where nothing is to
/// be kept.
std::string LockFolder();

/// Makes `folder` and what is above it; others may not look into it.
/// Returns: whether it is there.
bool MakePrivateFolder(std::string const& folder);
